#include "ui/form.h"

#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/pick_panel.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace molven {

void showDataError(Prompt& prompt, const DataError& error) {
    const QString text = QStringLiteral("L'erreur suivante s'est produite:\r\n\r\n%1\r\nNuméro d'erreur: %2")
                             .arg(error.description)
                             .arg(error.number);
    QApplication::beep();
    const bool listed = !error.records.isEmpty() && error.records.first().number == error.number;
    if (!listed) {
        prompt.tell(text, {}, Icon::Warning);
        return;
    }
    if (!prompt.ask(text + QStringLiteral("\r\n\r\nAfficher la liste des erreurs d'accès aux données?"))) return;
    QStringList lines;
    for (const EngineError& record : error.records)
        lines.append(QStringLiteral("%1 : %2").arg(record.number).arg(record.description));
    prompt.tell(lines.join(u'\n'), QStringLiteral("Erreurs d'accès aux données"));
}

Form::Form(Desk& desk, const QString& name)
    : desk_(desk), mode_(desk.session.mode_ecran), noticeLine_(new QLabel(this)) {
    setObjectName(name);
    noticeLine_->setObjectName(QStringLiteral("Notices"));
    noticeLine_->setTextFormat(Qt::PlainText);
    noticeLine_->setMargin(4);
    setContentsMargins(0, 0, 0, noticeLine_->sizeHint().height());
}

Form::~Form() = default;

void Form::applyTitle(const QString& caption, Qt::WindowStates state) {
    setWindowTitle(caption);
    resize(sizeHint().expandedTo(this->size()));
    settleOnScreen();
    setWindowState(state);
}

/// Keeps the window, its frame included, on the screen, and in the middle of it.
void Form::settleOnScreen() {
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    QSize frame = frameGeometry().size() - size();
    if (!isVisible() || frame.isEmpty()) // not known before the window is shown
        frame = {2 * style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth),
                 style()->pixelMetric(QStyle::PM_TitleBarHeight) + 8};
    resize(size().boundedTo(screen.size() - frame));
    const QSize whole = size() + frame;
    move(screen.left() + (screen.width() - whole.width()) / 2, screen.top() + (screen.height() - whole.height()) / 2);
}

void Form::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) settleOnScreen();
}

bool Form::guarded(const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const Refusal& refusal) {
        prompt().tell(refusal.text);
        focusField(refusal.field);
    } catch (const DataError& error) {
        showDataError(prompt(), error);
    } catch (const std::exception& fault) {
        prompt().tell(QStringLiteral("Erreur inattendue, l'opération est abandonnée : ") +
                          QString::fromUtf8(fault.what()),
                      {}, Icon::Stop);
    }
    return false;
}

void Form::focusField(const QString& field) {
    QWidget* control = bound_.value(field);
    if (!control && !field.isEmpty()) control = findChild<QWidget*>(field);
    if (!control || !control->isVisible()) return;
    control->setFocus(Qt::OtherFocusReason);
    if (auto* edit = qobject_cast<QLineEdit*>(control)) edit->selectAll();
}

QPushButton* Form::button(const QString& name, const QString& caption, const std::function<void()>& handler) {
    return leaveButton(name, caption, [this, handler] {
        if (settle()) handler();
    });
}

QPushButton* Form::leaveButton(const QString& name, const QString& caption, const std::function<void()>& handler) {
    auto* made = new QPushButton(caption, this);
    made->setObjectName(name);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, [this, handler] {
        noticeLine_->clear();
        guarded(handler);
    });
    return made;
}

bool Form::settle(const QWidget* except) {
    QList<Edit*> boxes;
    for (QLineEdit* child : findChildren<QLineEdit*>()) {
        auto* edit = dynamic_cast<Edit*>(child);
        if (!edit || edit == except || !edit->isUnsettled() || !edit->isVisible() || !edit->isEnabled()) continue;
        // Told once, a refused value is left to the checks of the deed; a refused key never is.
        if (edit->isKey || !edit->isRefused()) boxes.append(edit);
    }
    // The box with the cursor was typed into last.
    std::stable_partition(boxes.begin(), boxes.end(), [](const Edit* edit) { return edit->hasFocus(); });
    return std::all_of(boxes.begin(), boxes.end(), [](Edit* edit) { return edit->leave(); });
}

void Form::setDefaultButton(QPushButton* button) { defaultButton_ = button; }

QPushButton* Form::validation() const {
    return defaultButton_ ? defaultButton_.data() : findChild<QPushButton*>(QStringLiteral("cmdvalide"));
}

void Form::setCancelButton(QPushButton* button) { cancelButton_ = button; }

Prompt& Form::prompt() {
    if (isVisible() && !isActiveWindow()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        raise();
        activateWindow();
    }
    return desk_.prompt();
}

void Form::onLeft(Edit* edit, const std::function<void()>& handler) {
    edit->left = [this, handler] { return guarded(handler); };
}

void Form::onPick(QWidget* control, const std::function<void()>& handler, QAbstractButton* listButton) {
    pickers_.insert(control, handler);
    control->setToolTip(QStringLiteral("F2 : liste"));
    if (!listButton) return;
    connect(listButton, &QAbstractButton::clicked, this, [this, control, handler] {
        if (settle(control)) guarded(handler);
    });
}

bool Form::openPicker(QWidget* control) {
    const auto picker = pickers_.constFind(control);
    if (picker == pickers_.constEnd()) return false;
    if (const auto* edit = qobject_cast<QLineEdit*>(control); edit && (edit->isReadOnly() || !edit->isEnabled()))
        return true; // a closed box has no list
    guarded(*picker);
    return true;
}

void Form::pick(const PickList& list) {
    if (!pickPanel_) pickPanel_ = new PickPanel(this);
    pickPanel_->open(list);
}

namespace {

bool isUsable(const QWidget* control) { return control && control->isVisible() && control->isEnabled(); }

/// The names that the buttons behind a key bear on every screen; the first that can be pressed is meant.
QStringList buttonsBehind(int key) {
    switch (key) {
    case Qt::Key_N:
        return {QStringLiteral("CmdAjout")};
    case Qt::Key_P:
        return {QStringLiteral("Cmdimp"), QStringLiteral("Cmdvisu"), QStringLiteral("cmdedt"),
                QStringLiteral("Cmdetiq")};
    default:
        return {};
    }
}

} // namespace

/// False for a key that means nothing on this screen.
bool Form::answersStandardKey(int key) {
    if (pickPanel_ && pickPanel_->isVisible()) return false;
    QPushButton* meant = key == Qt::Key_S ? validation() : nullptr;
    for (const QString& name : buttonsBehind(key)) {
        if (isUsable(meant)) break;
        meant = findChild<QPushButton*>(name);
    }
    if (isUsable(meant))
        meant->click();
    else if (key == Qt::Key_F)
        startFilter();
    else
        return false;
    return true;
}

/// Typing filters the list the user is in, or the first that can be.
void Form::startFilter() {
    QList<Grid*> lists;
    for (QTableView* view : findChildren<QTableView*>())
        if (auto* list = dynamic_cast<Grid*>(view); list && isUsable(list)) lists.append(list);
    std::stable_partition(lists.begin(), lists.end(), [](const Grid* list) { return list->hasFocus(); });
    if (!lists.isEmpty() && settle()) lists.first()->startFilter();
}

void Form::pressReturn() {
    if (auto* focused = qobject_cast<QAbstractButton*>(focusWidget())) {
        focused->click();
        return;
    }
    if (auto* edit = dynamic_cast<Edit*>(focusWidget()); edit && !edit->leave()) return;
    if (isUsable(defaultButton_))
        defaultButton_->click();
    else
        focusNextChild();
}

void Form::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressReturn();
        return;
    case Qt::Key_Escape:
        if (pickPanel_ && pickPanel_->isVisible())
            pickPanel_->leave();
        else if (isUsable(cancelButton_))
            cancelButton_->click();
        else
            close();
        return;
    case Qt::Key_F2:
        if (openPicker(focusWidget())) return;
        break;
    case Qt::Key_F8:
        pick(pick_lists::notices(desk_.notices()));
        return;
    default:
        if (event->modifiers() == Qt::ControlModifier && answersStandardKey(event->key())) return;
        break;
    }
    QWidget::keyPressEvent(event);
}

bool Form::mayLoseWork() {
    return !hasUnsavedWork() ||
           prompt().confirm(QStringLiteral("Abandonner les modifications en cours ?"), windowTitle());
}

void Form::closeEvent(QCloseEvent* event) { event->setAccepted(mayLoseWork()); }

void Form::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeNoticeLine();
    if (pickPanel_) pickPanel_->settle();
}

/// The foot that the window's margin keeps free of its layout.
void Form::placeNoticeLine() {
    const int high = contentsMargins().bottom();
    noticeLine_->setGeometry(0, height() - high, width(), high);
}

void Form::showNotices(const QStringList& texts) {
    const QString more = texts.size() > 1 ? QStringLiteral("  (%1 avis, F8 : liste)").arg(texts.size()) : QString();
    noticeLine_->setText(texts.last().simplified() + more);
    noticeLine_->setToolTip(texts.join(u'\n'));
    for (const auto change : {QAccessible::NameChanged, QAccessible::Alert}) {
        QAccessibleEvent told(noticeLine_, change);
        QAccessible::updateAccessibility(&told);
    }
}

} // namespace molven

#include "ui/form.h"

#include "shell/guide.h"
#include "ui/access_keys.h"
#include "ui/accessible_names.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/icons.h"
#include "ui/pick_lists.h"
#include "ui/pick_panel.h"
#include "ui/style.h"

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
    style::keepFoot(*this, *noticeLine_);
}

Form::~Form() = default;

Form* Form::of(QWidget* part) {
    while (part && !dynamic_cast<Form*>(part)) part = part->parentWidget();
    return dynamic_cast<Form*>(part);
}

namespace {

/// Under which a window's place is kept.
QString placeOf(const Form& form) { return form.habit() + QStringLiteral("/place"); }

constexpr Qt::WindowStates FillsTheScreen = Qt::WindowMaximized | Qt::WindowFullScreen;

/// A window of which a part stood on a screen that is gone comes back whole.
void bringOntoScreen(QWidget& window) {
    if (window.windowState() & FillsTheScreen) return;
    const QRect left = window.geometry();
    const QScreen* found = QApplication::screenAt(left.center());
    const QRect screen = (found ? found : QApplication::primaryScreen())->availableGeometry();
    QRect whole(left.topLeft(), left.size().boundedTo(screen.size()));
    whole.moveLeft(std::clamp(whole.left(), screen.left(), screen.right() + 1 - whole.width()));
    whole.moveTop(std::clamp(whole.top(), screen.top(), screen.bottom() + 1 - whole.height()));
    window.setGeometry(whole);
}

} // namespace

void Form::applyTitle(const QString& caption, Qt::WindowStates state) {
    setWindowTitle(caption);
    if (!isWindow()) return; // a tab has its place
    if (!isVisible()) standsAsLeft_ = restoreGeometry(desk_.habits.value(placeOf(*this)).toByteArray());
    if (standsAsLeft_) return bringOntoScreen(*this);
    resize(sizeHint().expandedTo(this->size()));
    settleOnScreen();
    setWindowState(state);
}

QString Form::habit() const { return mode_.isEmpty() ? objectName() : objectName() + u' ' + mode_; }

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
    nameControls(*this);
    giveAccessKeys(*this);
    if (!isWindow() || standsAsLeft_ || windowState() & FillsTheScreen) return;
    settleOnScreen();
}

void Form::hideEvent(QHideEvent* event) {
    if (isWindow() && !event->spontaneous()) desk_.habits.set(placeOf(*this), saveGeometry());
    QWidget::hideEvent(event);
}

bool Form::guarded(const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const Refusal& refusal) {
        markRefused(refusal);
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

bool Form::written(const std::function<void()>& write, const std::function<QString()>& changes,
                   const std::function<void()>& reread) {
    try {
        write();
        return true;
    } catch (const DataError& error) {
        if (error.number != DataError::RecordChanged) throw;
    }
    const QString told = QStringLiteral("Cette fiche a été modifiée par un autre poste :\n") + changes();
    const QString offer = QStringLiteral("\n\nRelire la fiche ? Votre saisie reste à l'écran.");
    if (prompt().ask(told + offer, {}, Icon::Warning)) reread();
    return false;
}

QWidget* Form::controlOf(const QString& field) const {
    QWidget* control = bound_.value(field);
    return control || field.isEmpty() ? control : findChild<QWidget*>(field);
}

/// The box says what was refused until it is typed into, or the next attempt.
void Form::markRefused(const Refusal& refusal) {
    auto* box = qobject_cast<QLineEdit*>(controlOf(refusal.field));
    if (!box) return;
    style::markRefused(*box, refusal.text);
    connect(
        box, &QLineEdit::textChanged, box, [box] { style::markMended(*box); }, Qt::SingleShotConnection);
}

void Form::mendBoxes() {
    for (QLineEdit* box : findChildren<QLineEdit*>())
        if (const auto* edit = dynamic_cast<Edit*>(box); !edit || !edit->isRefused()) style::markMended(*box);
}

void Form::allow(QPushButton* button, bool allowed, const QString& why) {
    button->setEnabled(allowed);
    button->setToolTip(allowed ? QString() : why);
}

void Form::focusField(const QString& field) {
    QWidget* control = controlOf(field);
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
    made->setIcon(icons::ofButton(name));
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, [this, handler] {
        mendBoxes();
        clearNotices();
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

void Form::setDefaultButton(QPushButton* button) {
    if (defaultButton_) defaultButton_->setDefault(false);
    defaultButton_ = button;
    if (button) button->setDefault(true); // shown and announced as such
}

void Form::setCancelButton(QPushButton* button, bool asks) {
    cancelButton_ = button;
    cancelAsks_ = asks;
}

QPushButton* Form::validation() const {
    return defaultButton_ ? defaultButton_.data() : findChild<QPushButton*>(QStringLiteral("cmdvalide"));
}

Prompt& Form::prompt() {
    if (Desk::isOpen(*this) && !(isVisible() && isActiveWindow())) desk_.bringForward(*this);
    return desk_.prompt();
}

void Form::onLeft(Edit* edit, const std::function<void()>& handler) {
    edit->left = [this, handler] { return guarded(handler); };
}

void Form::onPick(QWidget* control, const std::function<void()>& handler, QAbstractButton* listButton) {
    pickers_.insert(control, handler);
    control->setToolTip(QStringLiteral("F2 : liste"));
    if (!listButton) return;
    connect(listButton, &QAbstractButton::clicked, this, [this, control] {
        if (settle(control)) openPicker(control);
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
    case Qt::Key_H:
        return {QStringLiteral("Cmdhisto")};
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

void Form::escape() {
    if (pickPanel_ && pickPanel_->isVisible())
        pickPanel_->leave();
    else if (!isUsable(cancelButton_))
        close();
    else if (!cancelAsks_ || mayLoseWork())
        cancelButton_->click();
}

void Form::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressReturn();
        return;
    case Qt::Key_Escape:
        escape();
        return;
    case Qt::Key_F1:
        desk_.open(QStringLiteral("T_guide"), guide::pageOf(objectName(), mode_));
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
    // What a screen in a tab has no use for is not the main window's, but for the key that leaves the tab.
    if (isWindow() || event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) QWidget::keyPressEvent(event);
}

bool Form::givesUp(const QString& about) {
    return prompt().confirm(QStringLiteral("Abandonner les modifications en cours ?"), about);
}

bool Form::mayLoseWork() { return !hasUnsavedWork() || givesUp(windowTitle()); }

void Form::closeEvent(QCloseEvent* event) { event->setAccepted(mayClose()); }

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

void Form::clearNotices() {
    noticeLine_->clear();
    noticeLine_->setToolTip({});
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

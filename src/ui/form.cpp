#include "ui/form.h"

#include "ui/edit.h"
#include "ui/pick_panel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

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

Form::Form(Desk& desk, const QString& name) : desk_(desk), mode_(desk.session.mode_ecran) { setObjectName(name); }

Form::~Form() = default;

void Form::applyTitle(const QString& caption, Qt::WindowStates state) {
    setWindowTitle(caption);
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    const QSize size = sizeHint().expandedTo(this->size()).boundedTo(screen.size());
    resize(size);
    move(screen.left() + (screen.width() - size.width()) / 2, screen.top() + (screen.height() - size.height()) / 2);
    setWindowState(state);
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
    auto* made = new QPushButton(caption, this);
    made->setObjectName(name);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, [this, handler] { guarded(handler); });
    return made;
}

void Form::setDefaultButton(QPushButton* button) { defaultButton_ = button; }

void Form::setCancelButton(QPushButton* button) { cancelButton_ = button; }

void Form::onLeft(Edit* edit, const std::function<void()>& handler) {
    edit->left = [this, handler] { return guarded(handler); };
}

void Form::onPick(QWidget* control, const std::function<void()>& handler, QAbstractButton* listButton) {
    pickers_.insert(control, handler);
    control->setToolTip(QStringLiteral("F2 : liste"));
    if (listButton) connect(listButton, &QAbstractButton::clicked, this, [this, handler] { guarded(handler); });
}

bool Form::openPicker(QWidget* control) {
    const auto picker = pickers_.constFind(control);
    if (picker == pickers_.constEnd()) return false;
    guarded(*picker);
    return true;
}

void Form::pick(const PickList& list) {
    if (!pickPanel_) pickPanel_ = new PickPanel(this);
    pickPanel_->open(list);
}

void Form::pressReturn() {
    if (auto* focused = qobject_cast<QAbstractButton*>(focusWidget())) {
        focused->click();
        return;
    }
    if (auto* edit = dynamic_cast<Edit*>(focusWidget()); edit && !edit->leaveIfChanged()) return;
    if (defaultButton_ && defaultButton_->isVisible() && defaultButton_->isEnabled())
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
        if (cancelButton_ && cancelButton_->isVisible() && cancelButton_->isEnabled())
            cancelButton_->click();
        else
            close();
        return;
    case Qt::Key_F2:
        if (openPicker(focusWidget())) return;
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void Form::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (pickPanel_) pickPanel_->settle();
}

} // namespace molven

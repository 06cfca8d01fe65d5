// The statements about controls and grids.

#include "play/player.h"

#include "ui/form.h"
#include "ui/grid.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>

#include <algorithm>

namespace molven::play {

namespace {

QString textOf(const QWidget* widget) {
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) return edit->displayText();
    if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
    if (const auto* list = qobject_cast<const QComboBox*>(widget)) return list->currentText();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget)) return text->toPlainText();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget)) return text->toPlainText();
    throw Failure(QStringLiteral("contrôle avec un texte attendu : %1").arg(widget->objectName()));
}

bool isTrue(const QString& value) {
    return QStringList{QStringLiteral("1"), QStringLiteral("O"), QStringLiteral("on"), QStringLiteral("oui"),
                       QStringLiteral("yes")}
        .contains(value, Qt::CaseInsensitive);
}

void type(QWidget* widget, const QString& text) {
    for (const QChar c : text) QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

void typeInto(QLineEdit* edit, const QString& value) {
    if (edit->isReadOnly())
        throw Failure(QStringLiteral("zone %1 ouverte à la saisie attendue").arg(edit->objectName()));
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    edit->home(false);
    type(edit, value);
    QTest::keyClick(edit, Qt::Key_Tab);
}

void choose(QComboBox* list, const QString& value) {
    const int index = list->findText(value);
    if (index < 0)
        throw Failure(QStringLiteral("valeur \"%1\" attendue dans la liste %2").arg(value, list->objectName()));
    list->setFocus();
    list->setCurrentIndex(index);
    QTest::keyClick(list, Qt::Key_Tab);
}

} // namespace

QWidget* Player::control(const QString& name) {
    QWidget* any = nullptr;
    // A list that lies over the window comes last, and hides what bears the same name below it.
    for (QWidget* widget : window().findChildren<QWidget*>()) {
        if (widget->objectName().compare(name, Qt::CaseInsensitive) != 0) continue;
        if (widget->isVisible() || !any) any = widget;
    }
    if (!any) throw Failure(QStringLiteral("contrôle %1 attendu dans %2, aucun").arg(name, window().objectName()));
    return any;
}

QWidget* Player::usable(const QString& name) {
    QWidget* widget = control(name);
    if (!widget->isVisible()) throw Failure(QStringLiteral("contrôle %1 visible attendu, trouvé caché").arg(name));
    if (!widget->isEnabled()) throw Failure(QStringLiteral("contrôle %1 actif attendu, trouvé inactif").arg(name));
    return widget;
}

void Player::set(const QStringList& arguments) {
    QWidget* widget = usable(arguments[0]);
    const QString& value = arguments[1];
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) return typeInto(edit, value);
    if (auto* list = qobject_cast<QComboBox*>(widget)) return choose(list, value);
    if (auto* button = qobject_cast<QAbstractButton*>(widget); button && button->isCheckable()) {
        if (button->isChecked() != isTrue(value)) QTest::mouseClick(button, Qt::LeftButton);
        return;
    }
    throw Failure(QStringLiteral("zone de saisie attendue : %1").arg(arguments[0]));
}

void Player::key(const QStringList& arguments) {
    QWidget* widget = usable(arguments[0]);
    const QKeySequence sequence = QKeySequence::fromString(arguments[1], QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)
        throw Failure(QStringLiteral("touche connue attendue, trouvé %1").arg(arguments[1]));
    if (!widget->hasFocus()) widget->setFocus(Qt::TabFocusReason);
    QTest::keyClick(widget, sequence[0].key(), sequence[0].keyboardModifiers());
    waitForPressedButton();
}

/// A shortcut presses its button at once and clicks it a moment later.
void Player::waitForPressedButton() {
    const auto isPressed = [] {
        const QWidgetList all = QApplication::allWidgets();
        return std::any_of(all.begin(), all.end(), [](const QWidget* widget) {
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            return button && button->isVisible() && button->isDown();
        });
    };
    (void)QTest::qWaitFor([&] { return !isPressed(); }, PatienceMs);
}

void Player::press(const QStringList& arguments) {
    auto* button = qobject_cast<QAbstractButton*>(usable(arguments[0]));
    if (!button) throw Failure(QStringLiteral("bouton attendu : %1").arg(arguments[0]));
    QCoreApplication::sendPostedEvents(); // a layout still to come would move the button away from under the cursor
    QTest::mouseClick(button, Qt::LeftButton);
}

void Player::shows(const QStringList& arguments) {
    const QString found = textOf(control(arguments[0]));
    if (found != arguments[1])
        throw Failure(QStringLiteral("%1 : \"%2\" attendu, trouvé \"%3\"").arg(arguments[0], arguments[1], found));
}

void Player::showsPart(const QStringList& arguments) {
    const QString found = textOf(control(arguments[0]));
    if (!found.contains(arguments[1]))
        throw Failure(QStringLiteral("%1 : texte contenant \"%2\" attendu, trouvé \"%3\"")
                          .arg(arguments[0], arguments[1], found));
}

void Player::focus(const QStringList& arguments) {
    const QWidget* focused = window().focusWidget();
    const QString found = focused ? focused->objectName() : QStringLiteral("rien");
    if (found.compare(arguments[0], Qt::CaseInsensitive) != 0)
        throw Failure(QStringLiteral("curseur sur %1 attendu, trouvé sur %2").arg(arguments[0], found));
}

void Player::enabled(const QStringList& arguments) {
    const QAction* action = menuEntry(arguments[0]);
    if (!(action ? action->isEnabled() : control(arguments[0])->isEnabled()))
        throw Failure(QStringLiteral("%1 actif attendu, trouvé inactif").arg(arguments[0]));
}

void Player::disabled(const QStringList& arguments) {
    const QAction* action = menuEntry(arguments[0]);
    if (action ? action->isEnabled() : control(arguments[0])->isEnabled())
        throw Failure(QStringLiteral("%1 inactif attendu, trouvé actif").arg(arguments[0]));
}

void Player::visible(const QStringList& arguments) {
    const QAction* action = menuEntry(arguments[0]);
    if (!(action ? action->isVisible() : control(arguments[0])->isVisible()))
        throw Failure(QStringLiteral("%1 visible attendu, trouvé caché").arg(arguments[0]));
}

void Player::hidden(const QStringList& arguments) {
    const QAction* action = menuEntry(arguments[0]);
    if (action ? action->isVisible() : control(arguments[0])->isVisible())
        throw Failure(QStringLiteral("%1 caché attendu, trouvé visible").arg(arguments[0]));
}

Grid* Player::grid(const QString& name) {
    auto* found = dynamic_cast<Grid*>(control(name));
    if (!found) throw Failure(QStringLiteral("liste attendue : %1").arg(name));
    return found;
}

/// The first cell of the row that "N" or "COLUMN=VALUE" names.
QModelIndex Player::cellOf(const QString& gridName, const QString& which) {
    usable(gridName);
    Grid* found = grid(gridName);
    const RecordModel& model = found->rows();
    int row = which.toInt() - 1;
    if (const auto equals = which.indexOf(u'='); equals > 0) {
        const int column = model.columnOf(which.left(equals));
        if (column < 0) throw Failure(QStringLiteral("colonne %1 attendue dans %2").arg(which.left(equals), gridName));
        for (row = 0; row < model.rowCount() && model.text(row, column) != which.mid(equals + 1);) ++row;
    }
    if (row < 0 || row >= model.rowCount())
        throw Failure(
            QStringLiteral("ligne %1 attendue dans %2, %3 lignes trouvées").arg(which, gridName).arg(model.rowCount()));
    int column = 0;
    while (column + 1 < model.columnCount() && found->isColumnHidden(column)) ++column;
    const QModelIndex index = model.index(row, column);
    found->scrollTo(index);
    return index;
}

void Player::row(const QStringList& arguments) {
    const QModelIndex index = cellOf(arguments[0], arguments[1]);
    Grid* found = grid(arguments[0]);
    QTest::mouseClick(found->viewport(), Qt::LeftButton, {}, found->visualRect(index).center());
}

void Player::open(const QStringList& arguments) {
    row(arguments);
    const QModelIndex index = cellOf(arguments[0], arguments[1]);
    Grid* found = grid(arguments[0]);
    QTest::mouseDClick(found->viewport(), Qt::LeftButton, {}, found->visualRect(index).center());
}

void Player::rows(const QStringList& arguments) {
    const int found = grid(arguments[0])->rows().rowCount();
    if (QString::number(found) != arguments[1])
        throw Failure(QStringLiteral("%1 : %2 lignes attendues, trouvé %3").arg(arguments[0], arguments[1]).arg(found));
}

void Player::cell(const QStringList& arguments) {
    const QModelIndex index = cellOf(arguments[0], arguments[1]);
    const RecordModel& model = grid(arguments[0])->rows();
    const int column = model.columnOf(arguments[2]);
    if (column < 0) throw Failure(QStringLiteral("colonne %1 attendue dans %2").arg(arguments[2], arguments[0]));
    const QString found = model.text(index.row(), column);
    if (found != arguments[3])
        throw Failure(QStringLiteral("%1, ligne %2, %3 : \"%4\" attendu, trouvé \"%5\"")
                          .arg(arguments[0], arguments[1], arguments[2], arguments[3], found));
}

} // namespace molven::play

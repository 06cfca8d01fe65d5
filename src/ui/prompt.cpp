#include "ui/prompt.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

namespace molven {

namespace {

QMessageBox::Icon boxIcon(Icon icon) {
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Warning:
        return QMessageBox::Warning;
    case Icon::Stop:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/// A box that letters do not answer: what a scanner types behind a question must never be its yes.
class Box : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isTyped = !(event->modifiers() & (Qt::AltModifier | Qt::ControlModifier)) &&
                             !event->text().isEmpty() && event->text().front().isPrint();
        if (isTyped)
            event->accept();
        else
            QMessageBox::keyPressEvent(event);
    }
};

/// Texts are the user's data too: they are shown as they are, never read as markup.
void prepare(QMessageBox& box, const QString& text, const QString& title, Icon icon) {
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("MOLVEN") : title);
    box.setIcon(boxIcon(icon));
}

enum class Default { Yes, No };

bool isAnsweredYes(QMessageBox& box, Default proposed) {
    QPushButton* yes = box.addButton(QStringLiteral("&Oui"), QMessageBox::YesRole);
    QPushButton* no = box.addButton(QStringLiteral("&Non"), QMessageBox::NoRole);
    box.setDefaultButton(proposed == Default::Yes ? yes : no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

} // namespace

void MessageBoxPrompt::tell(const QString& text, const QString& title, Icon icon) {
    Box box(QApplication::activeWindow());
    prepare(box, text, title, icon);
    box.addButton(QStringLiteral("&OK"), QMessageBox::AcceptRole);
    box.exec();
}

bool MessageBoxPrompt::ask(const QString& text, const QString& title, Icon icon) {
    Box box(QApplication::activeWindow());
    prepare(box, text, title, icon);
    return isAnsweredYes(box, Default::Yes);
}

bool MessageBoxPrompt::confirm(const QString& text, const QString& about) {
    Box box(QApplication::activeWindow());
    prepare(box, text, {}, Icon::Warning);
    box.setInformativeText(about);
    return isAnsweredYes(box, Default::No);
}

} // namespace molven

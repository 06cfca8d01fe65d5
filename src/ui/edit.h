#pragma once

#include <QLineEdit>

#include <functional>

namespace molven {

/// An entry box. `left` runs when the user leaves it after a change, and answers false when it refused what was
/// typed; the text is selected on entering.
class Edit : public QLineEdit {
public:
    explicit Edit(QWidget* parent = nullptr) : QLineEdit(parent) {}

    /// A scanner types here: the separator it sends between fields is kept, shown as a sign.
    bool takesScans = false;
    std::function<bool()> left;
    /// False when what was typed is refused.
    bool leaveIfChanged();
    /// Sets a text as the program does: leaving afterwards runs nothing.
    void put(const QString& text);
    /// A box that cannot be typed into looks so, and is left out of the keyboard's way.
    void setEditable(bool editable);
    /// The text as rules want it: a masked box without digits is empty.
    QString value() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QString entered_;
};

/// A masked box "__/__/____" for a date, or "__/____" for a month.
class DateBox : public Edit {
public:
    enum class Precision { Day, Month };
    explicit DateBox(QWidget* parent = nullptr, Precision precision = Precision::Day);
};

} // namespace molven

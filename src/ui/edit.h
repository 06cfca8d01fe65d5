#pragma once

#include <QLineEdit>

#include <functional>

namespace molven {

/// An entry box. What stands in it is settled once the program took it: put there by the program, or typed and left
/// without being refused. The text is selected on entering.
class Edit : public QLineEdit {
public:
    explicit Edit(QWidget* parent = nullptr) : QLineEdit(parent) {}

    /// Names the record that the buttons act upon: while it is refused, none of them does.
    bool isKey = false;
    /// A scanner types here: the separator it sends between fields is kept, shown as a sign.
    bool takesScans = false;
    /// Runs when the user leaves the box after a change; answers false when it refused what was typed.
    std::function<bool()> left;
    /// Leaves the box as the user does; false while what is typed is refused. A refused text stays so until it is
    /// mended or put back.
    bool leave();
    /// What is typed was not left yet, or was refused.
    bool isUnsettled() const { return !isReadOnly() && (refused_ || text() != settled_); }
    /// What is typed was refused, and the user was told.
    bool isRefused() const { return refused_ && text() == refusedText_; }
    /// Sets a text as the program does: it is settled.
    void put(const QString& text);
    /// A box that cannot be typed into looks so, and is left out of the keyboard's way.
    void setEditable(bool editable);
    /// The text as rules want it: a masked box without digits is empty.
    QString value() const;

protected:
    /// Gives what was typed short its full form, before it is taken.
    virtual void complete() {}
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setRefused(bool refused);

    QString settled_;
    QString refusedText_;
    bool refused_ = false;
    bool leaving_ = false;
};

/// A masked box "__/__/____" for a date, or "__/____" for a month, typed as people type one: "1205", "12,5" and "5/29"
/// are completed on leaving; "t" is today, "+15" and "-3" count days (or months) from today; F4 opens a calendar.
class DateBox : public Edit {
public:
    enum class Precision { Day, Month };
    explicit DateBox(QWidget* parent = nullptr, Precision precision = Precision::Day);

protected:
    void complete() override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool takesOffset(const QString& key);
    QString shownAs(const QDate& date) const;
    void openCalendar();

    Precision precision_;
    QString offset_; ///< as typed so far: "+15"
};

} // namespace molven

#pragma once

#include <QList>
#include <QString>

#include <stdexcept>

namespace molven {

/// What the user must be told no, in the program's own French words. The screen that catches it shows the
/// text and puts the focus on the control bound to `field` (a table field or a control name; may be empty).
class Refusal : public std::runtime_error {
public:
    explicit Refusal(const QString& text, const QString& field = {})
        : std::runtime_error(text.toStdString()), text(text), field(field) {}

    const QString text;
    const QString field;
};

/// One error record kept by the data engine.
struct EngineError {
    int number = 0;
    QString description;
};

/// A fault of the data engine: its number, a description for the user, and the engine's own records.
class DataError : public std::runtime_error {
public:
    DataError(int number, const QString& description, QList<EngineError> records = {})
        : std::runtime_error(description.toStdString()),
          number(number),
          description(description),
          records(std::move(records)) {}

    /// Numbers of the program's own checks; the others are the engine's.
    static constexpr int RecordChanged = 3197;
    static constexpr int RecordDeleted = 3167;
    static constexpr int NoCurrentRecord = 3021;
    static constexpr int FieldTooSmall = 3163;
    static constexpr int NotANumber = 3421;
    static constexpr int Undone = 3034;
    static constexpr int NotADatabase = 26;
    /// Numbers that all engines share, in the lower byte: another workstation is writing; a record that must be unique
    /// exists already; there is no room.
    static constexpr int Busy = 5;
    static constexpr int Double = 19;
    static constexpr int Full = 13;
    static constexpr int CannotOpen = 14;
    /// What was done crosses what another workstation does at the moment: done again, it may go well.
    static constexpr int Disturbed = 3218;

    const int number;
    const QString description;
    const QList<EngineError> records;
};

} // namespace molven

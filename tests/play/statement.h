#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace molven::play {

/// One line of a scenario.
struct Statement {
    int line = 0;
    QString word;
    QStringList arguments;
};

/// Why a scenario does not hold.
class Failure : public std::runtime_error {
public:
    explicit Failure(const QString& text) : std::runtime_error(text.toStdString()), text(text) {}
    const QString text;
};

/// Words of one line: separated by blanks, texts with blanks in double quotes, "" inside quotes for one quote, "#"
/// outside quotes begins a comment. Throws Failure for an open quote.
QStringList words(const QString& line);

/// The statements of a scenario, comments and empty lines left out. Throws Failure, with the line's number.
QList<Statement> statements(const QString& text);

} // namespace molven::play

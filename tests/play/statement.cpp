#include "play/statement.h"

namespace molven::play {

namespace {

/// Reads a quoted text whose opening quote is at `at`; leaves `at` behind the closing one.
QString quotedText(const QString& line, qsizetype& at) {
    QString text;
    for (++at; at < line.size(); ++at) {
        if (line[at] != u'"') {
            text += line[at];
        } else if (at + 1 < line.size() && line[at + 1] == u'"') {
            text += u'"';
            ++at;
        } else {
            ++at;
            return text;
        }
    }
    throw Failure(QStringLiteral("guillemet non fermé"));
}

} // namespace

QStringList words(const QString& line) {
    QStringList found;
    qsizetype at = 0;
    while (at < line.size()) {
        if (line[at].isSpace()) {
            ++at;
            continue;
        }
        if (line[at] == u'#') break;
        QString word;
        while (at < line.size() && !line[at].isSpace()) {
            if (line[at] == u'"')
                word += quotedText(line, at);
            else
                word += line[at++];
        }
        found.append(word);
    }
    return found;
}

QList<Statement> statements(const QString& text) {
    QList<Statement> found;
    int number = 0;
    for (const QString& line : text.split(u'\n')) {
        ++number;
        QStringList parts;
        try {
            parts = words(line);
        } catch (const Failure& failure) {
            throw Failure(QStringLiteral("%1: %2").arg(number).arg(failure.text));
        }
        if (parts.isEmpty()) continue;
        Statement statement{number, parts.takeFirst(), {}};
        statement.arguments = parts;
        found.append(statement);
    }
    return found;
}

} // namespace molven::play

// The statements about data, time, paper and files.

#include "play/player.h"

#include "data/clock.h"
#include "data/database.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/server_address.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace molven::play {

namespace {

/// Full path of a database file of the open dossier, by its name.
QString dossierFile(const Session& session, const QString& name) {
    const auto found = std::find_if(catalogue().begin(), catalogue().end(), [&name](const CatalogueEntry& entry) {
        return entry.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (found != catalogue().end()) return session.path(found->file);
    // Other files lie around the data folder, which a dossier on a server does without.
    const bool isOnServer = server_address::isOne(session.chemin_base);
    return (isOnServer ? session.programFile(QStringLiteral("data/")) : session.chemin_base) + name;
}

} // namespace

QString Player::programFile(const QString& name) const { return QDir(home_).filePath(name); }

void Player::data(const QStringList& arguments) {
    try {
        Workspace workspace;
        const QString found = workspace.open(dossierFile(desk().session, arguments[0])).firstValue(arguments[1]);
        if (found != arguments[2])
            throw Failure(QStringLiteral("%1 : %2 : \"%3\" attendu, trouvé \"%4\"")
                              .arg(arguments[0], arguments[1], arguments[2], found));
    } catch (const DataError& error) {
        const QString engine = error.records.isEmpty() ? QString() : error.records.first().description;
        throw Failure(QStringLiteral("%1 : %2 : %3 (%4)").arg(arguments[0], arguments[1], error.description, engine));
    }
}

void Player::today(const QStringList& arguments) {
    const QDate day = dateFromText(arguments[0]);
    if (!day.isValid()) throw Failure(QStringLiteral("date JJ/MM/AAAA attendue, trouvé %1").arg(arguments[0]));
    Clock::set(day);
}

void Player::printed(const QStringList& arguments) {
    desk();
    if (!printer_->last) throw Failure(QStringLiteral("impression attendue, aucune"));
    const PrintJob& job = *printer_->last;
    if (job.contains(arguments[0])) return;
    QStringList texts;
    for (const PrintedText& piece : job.pieces()) texts.append(piece.text);
    throw Failure(QStringLiteral("texte imprimé \"%1\" attendu, trouvé : %2")
                      .arg(arguments[0], texts.join(QStringLiteral(" | "))));
}

void Player::copy(const QStringList& arguments) {
    QFile::remove(programFile(arguments[1]));
    if (!QFile::copy(programFile(arguments[0]), programFile(arguments[1])))
        throw Failure(QStringLiteral("copie de %1 vers %2 attendue, impossible").arg(arguments[0], arguments[1]));
}

void Player::remove(const QStringList& arguments) {
    if (!QFile::remove(programFile(arguments[0])))
        throw Failure(QStringLiteral("fichier %1 attendu, absent").arg(arguments[0]));
}

void Player::write(const QStringList& arguments) {
    QFile file(programFile(arguments[0]));
    if (!file.open(QIODevice::WriteOnly) || file.write(arguments[1].toUtf8() + "\r\n") < 0)
        throw Failure(QStringLiteral("fichier %1 inscriptible attendu").arg(arguments[0]));
}

} // namespace molven::play

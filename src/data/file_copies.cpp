#include "data/file_copies.h"

#include "data/file_rights.h"
#include "data/safe_file.h"
#include "data/sqlite/connection.h"
#include "data/sqlite/held_file.h"
#include "data/sqlite/statement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <memory>
#include <vector>

#include <sqlite3.h>

namespace molven::file_copies {

namespace {

constexpr int PagesAtOnce = 512;
constexpr int EngineSteps = 100'000;
const QString Unfinished = QStringLiteral("-copie");

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

Connection opened(const QString& path, sqlite::Opening opening) {
    return {sqlite::connect(path, opening), sqlite3_close};
}

QString spoken(const QString& path) { return QDir::toNativeSeparators(path); }

/// How far all the copies are, in pages of a thousand bytes.
struct Measure {
    const Progress& progress;
    qint64 done = 0, total = 0;
    void tellAt(qint64 more) const {
        tell(progress, static_cast<qsizetype>(done + more), static_cast<qsizetype>(total));
    }
};

void copyPages(sqlite3* from, const QString& to, const Measure& measure) {
    const Connection copy = opened(to, sqlite::Opening::New);
    // What is half-written has no name yet, and is flushed whole at the end.
    sqlite::Statement(copy.get(), QStringLiteral("pragma journal_mode=off")).run({});
    sqlite::Statement(copy.get(), QStringLiteral("pragma synchronous=off")).run({});
    sqlite3_backup* work = sqlite3_backup_init(copy.get(), "main", from, "main");
    if (!work) throw sqlite::fault(copy.get());
    const auto finished = qScopeGuard([work] { sqlite3_backup_finish(work); });
    int code = SQLITE_OK;
    while ((code = sqlite3_backup_step(work, PagesAtOnce)) == SQLITE_OK)
        measure.tellAt((sqlite3_backup_pagecount(work) - sqlite3_backup_remaining(work)) * 4LL);
    if (code != SQLITE_DONE)
        throw DataError(code,
                        code == SQLITE_FULL
                            ? QStringLiteral("Le disque est plein : %1 n'a pas été copié.").arg(spoken(to))
                            : QStringLiteral("%1 n'a pas pu être écrit.").arg(spoken(to)),
                        {{code, QString::fromLatin1(sqlite3_errstr(code))}});
}

void copyBytes(const QString& from, const QString& to) {
    QFile file(from);
    if (!file.copy(to))
        throw Refusal(QStringLiteral("Impossible de copier %1 : %2").arg(spoken(from), file.errorString()));
}

void removeUnfinished(const QList<Copy>& copies) {
    for (const Copy& copy : copies) QFile::remove(copy.to + Unfinished);
}

void requireFolders(const QList<Copy>& copies) {
    for (const Copy& copy : copies)
        if (const QString folder = QFileInfo(copy.to).path(); !QFileInfo(folder).isDir())
            throw Refusal(QStringLiteral("Le dossier %1 n'existe pas").arg(spoken(folder)));
}

/// All sources are held until the last is copied: the copies are of one moment.
void copyAll(const QList<Copy>& copies, Measure& measure) {
    std::vector<std::unique_ptr<HeldFile>> held;
    for (const Copy& copy : copies)
        held.push_back(isDatabase(copy.from) ? std::make_unique<HeldFile>(copy.from) : nullptr);
    for (qsizetype i = 0; i < copies.size(); ++i) {
        const QString to = copies[i].to + Unfinished;
        const HeldFile* source = held[static_cast<std::size_t>(i)].get();
        source ? copyPages(source->connection(), to, measure) : copyBytes(copies[i].from, to);
        measure.done += QFileInfo(copies[i].from).size() / 1024;
        measure.tellAt(0);
    }
}

} // namespace

bool isDatabase(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(16) == QByteArray("SQLite format 3", 16);
}

QStringList faults(const QString& path, const Progress& progress) {
    if (!isDatabase(path)) return {};
    QStringList found;
    try {
        const Connection connection = opened(path, sqlite::Opening::Existing);
        const auto stopped = [](void* told) { return (*static_cast<const Progress*>(told))(0, 0) ? 0 : 1; };
        if (progress)
            sqlite3_progress_handler(connection.get(), EngineSteps, stopped, const_cast<Progress*>(&progress));
        sqlite::Statement rows(connection.get(), QStringLiteral("pragma integrity_check"));
        rows.run({});
        while (rows.next()) found.append(rows.text(0));
    } catch (const DataError& error) {
        return {error.description};
    }
    return found == QStringList(QStringLiteral("ok")) ? QStringList() : found;
}

QList<qint64> make(const QList<Copy>& copies, const Progress& progress) {
    requireFolders(copies);
    removeUnfinished(copies);
    const auto swept = qScopeGuard([&copies] { removeUnfinished(copies); });
    Measure measure{progress};
    for (const Copy& copy : copies) measure.total += QFileInfo(copy.from).size() / 1024;
    measure.total *= 2; // copied, then read again
    copyAll(copies, measure);
    const Progress goesOn = [&measure](int, int) {
        return !measure.progress || measure.progress(static_cast<int>(measure.done), static_cast<int>(measure.total));
    };
    for (const Copy& copy : copies) {
        const QString made = copy.to + Unfinished;
        flushToDisk(made);
        if (const QStringList found = faults(made, goesOn); !found.isEmpty())
            throw Refusal(QStringLiteral("La copie de %1 est endommagée : %2").arg(spoken(copy.from), found.first()));
        measure.done += QFileInfo(copy.from).size() / 1024;
        measure.tellAt(0);
    }
    QList<qint64> sizes;
    for (const Copy& copy : copies) {
        const QString made = copy.to + Unfinished;
        QFile::setPermissions(made, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup);
        sizes.append(QFileInfo(made).size());
        takePlace(made, copy.to);
    }
    return sizes;
}

} // namespace molven::file_copies

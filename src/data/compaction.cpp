#include "data/compaction.h"

#include "data/catalogue.h"
#include "data/file_copies.h"
#include "data/layout.h"
#include "data/safe_file.h"
#include "data/sqlite/connection.h"
#include "data/sqlite/held_file.h"
#include "data/sqlite/statement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <memory>

#include <sqlite3.h>

namespace molven::compaction {

namespace {

const QString Temporary = QStringLiteral("new.mdb"), Unfinished = QStringLiteral("-copie");
constexpr int PatienceMs = 3000, EngineSteps = 100'000;
constexpr qint64 ToldEvery = 4096; ///< records

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

void requireDone(bool isDone, const QString& path) {
    if (!isDone) throw Refusal(QStringLiteral("Impossible d'écrire %1").arg(QDir::toNativeSeparators(path)));
}

/// While it lives, the connection's statements ask whether to go on.
class Asking {
public:
    Asking(sqlite3* connection, const Progress& progress) : connection_(connection), progress_(progress) {
        if (progress)
            sqlite3_progress_handler(
                connection, EngineSteps, [](void* self) { return static_cast<Asking*>(self)->progress_(0, 0) ? 0 : 1; },
                this);
    }
    ~Asking() { sqlite3_progress_handler(connection_, 0, nullptr, nullptr); }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

private:
    sqlite3* connection_;
    const Progress& progress_;
};

QStringList lines(sqlite3* connection, const QString& sql) {
    QStringList found;
    sqlite::Statement rows(connection, sql);
    rows.run({});
    while (rows.next()) found.append(rows.text(0));
    return found;
}

/// Every table, index and record of both, key and values, in the same order.
void requireSame(sqlite3* connection, const QString& path, const Progress& progress) {
    const auto differs = [&path] {
        return Refusal(QStringLiteral("La copie compactée de %1 n'est pas égale au fichier, qui reste comme il était")
                           .arg(QFileInfo(path).fileName()));
    };
    const QString schema =
        QStringLiteral("select type||' '||name||' '||ifnull(sql,'') from %1.sqlite_master order by 1");
    if (lines(connection, schema.arg(QStringLiteral("main"))) != lines(connection, schema.arg(QStringLiteral("copie"))))
        throw differs();
    const QStringList tables =
        lines(connection, QStringLiteral("select name from main.sqlite_master where type='table'"));
    qint64 compared = 0;
    for (const QString& table : tables) {
        const QString sql = QStringLiteral("select rowid,* from %1.\"%2\" order by rowid");
        sqlite::Statement mine(connection, sql.arg(QStringLiteral("main"), table)),
            copied(connection, sql.arg(QStringLiteral("copie"), table));
        mine.run({});
        copied.run({});
        while (mine.next()) {
            if (!copied.next() || !mine.equals(copied)) throw differs();
            if (++compared % ToldEvery == 0 && progress && !progress(0, 0))
                throw Refusal(QStringLiteral("Opération abandonnée"));
        }
        if (copied.next()) throw differs();
    }
}

void writeNew(const QString& path, const QString& temporary, const Progress& progress) {
    const Connection connection(sqlite::connect(path, sqlite::Opening::Existing), sqlite3_close);
    const Asking asking(connection.get(), progress);
    sqlite::Statement(connection.get(), QStringLiteral("vacuum into ?")).run({temporary});
    sqlite::Statement(connection.get(), QStringLiteral("attach ? as copie")).run({temporary});
    requireSame(connection.get(), path, progress);
}

/// The last steps, from a folder where "new.mdb" is whole and the file is not there.
void putBack(const QString& temporary, const QString& path) {
    const QString copy = path + Unfinished;
    QFile::remove(copy);
    if (QFile::copy(temporary, copy)) {
        flushToDisk(copy);
        takePlace(copy, path);
        QFile::remove(temporary);
    } else { // no room for a second one
        QFile::remove(copy);
        takePlace(temporary, path);
    }
}

/// Whether a file holds tables, and only such. One that was being written holds none, or cannot be read.
bool isCopyOf(const QString& temporary, const QList<const Table*>& known) {
    try {
        return !Layout::foreignObjects(temporary, {}).isEmpty() && Layout::foreignObjects(temporary, known).isEmpty();
    } catch (const DataError&) {
        return false;
    }
}

} // namespace

void compact(const QString& path, const Progress& progress) {
    const QString temporary = QFileInfo(path).dir().filePath(Temporary);
    QFile::remove(temporary); // of a compaction that did not come to the deletion
    const auto permissions = QFile::permissions(path);
    try {
        const HeldFile held(path, HeldFile::Hold::Reserved, PatienceMs);
        writeNew(path, temporary, progress);
        QFile::setPermissions(temporary, permissions);
        flushToDisk(temporary);
        if (const QStringList faults = file_copies::faults(temporary); !faults.isEmpty()) throw Refusal(faults.first());
    } catch (const DataError& error) {
        QFile::remove(temporary);
        if ((error.number & 0xFF) != DataError::Busy) throw;
        throw Refusal(QStringLiteral("Le fichier %1 est utilisé par un autre poste : fermez-y le programme, puis "
                                     "recommencez")
                          .arg(QFileInfo(path).fileName()));
    } catch (const Refusal&) {
        QFile::remove(temporary);
        throw;
    }
    requireDone(QFile::remove(path), path);
    putBack(temporary, path);
}

bool isUnfinished(const QString& folder) { return QFile::exists(QDir(folder).filePath(Temporary)); }

QString missing(const QString& folder, const QStringList& names) {
    const QString temporary = QDir(folder).filePath(Temporary);
    QString meant;
    qsizetype tables = 0;
    for (const QString& name : names) {
        const auto file = dataFileAt(name);
        if (!file || QFile::exists(QDir(folder).filePath(name)) || !isCopyOf(temporary, tablesOf(*file))) continue;
        // The tables of one file may be some of another's: the one that knows no more than these is meant.
        const qsizetype known = tablesOf(*file).size();
        if (!meant.isEmpty() && known >= tables) continue;
        meant = name;
        tables = known;
    }
    return meant;
}

QString finish(const QString& folder, const QStringList& names) {
    const QString temporary = QDir(folder).filePath(Temporary), meant = missing(folder, names);
    if (meant.isEmpty()) {
        QFile::remove(temporary);
        return {};
    }
    if (const QStringList faults = file_copies::faults(temporary); !faults.isEmpty())
        throw Refusal(QStringLiteral("Le fichier %1 d'un recompactage interrompu est endommagé : %2")
                          .arg(QDir::toNativeSeparators(temporary), faults.first()));
    putBack(temporary, QDir(folder).filePath(meant));
    return meant;
}

} // namespace molven::compaction

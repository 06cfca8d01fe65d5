#include "data/sqlite/disk.h"

#include "data/sqlite/journal_names.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace molven::sqlite {

namespace {

thread_local QString objection;

int refuse(const QString& text) {
    objection = text;
    return SQLITE_CANTOPEN;
}

sqlite3_vfs* engineDisk() {
    static sqlite3_vfs* disk = sqlite3_vfs_find(nullptr);
    return disk;
}

/// A file of the engine's own disk, closed with its owner.
class DiskFile {
public:
    DiskFile() : room_(std::make_unique<std::max_align_t[]>(engineDisk()->szOsFile / sizeof(std::max_align_t) + 1)) {}
    ~DiskFile() {
        if (file()->pMethods) file()->pMethods->xClose(file());
    }
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;

    int open(const char* path, int flags, int* openedFlags) {
        return engineDisk()->xOpen(engineDisk(), path, file(), flags, openedFlags);
    }
    sqlite3_file* file() { return reinterpret_cast<sqlite3_file*>(room_.get()); }
    int read(void* to, int count, qint64 at) { return file()->pMethods->xRead(file(), to, count, at); }
    int write(const QByteArray& bytes, qint64 at) {
        return file()->pMethods->xWrite(file(), bytes.constData(), static_cast<int>(bytes.size()), at);
    }
    int truncate(qint64 size) { return file()->pMethods->xTruncate(file(), size); }
    qint64 size() {
        sqlite3_int64 bytes = 0;
        return file()->pMethods->xFileSize(file(), &bytes) == SQLITE_OK ? bytes : -1;
    }

private:
    std::unique_ptr<std::max_align_t[]> room_;
};

/// A file whose content the engine sees otherwise than it lies on the disk.
class Journal {
public:
    explicit Journal(const QString& path) : path_(path), folder_(QFileInfo(path).path()) {}
    virtual ~Journal() = default;

    virtual int opened() { return SQLITE_OK; } ///< called once the disk has opened it
    virtual int read(char* to, int count, qint64 at) = 0;
    virtual int write(const QByteArray& bytes, qint64 at) = 0;
    virtual int truncate(qint64 size) = 0;
    virtual qint64 size() = 0; ///< -1 on a fault

    DiskFile disk;

protected:
    const QString path_, folder_;
};

/// Hands out bytes as the engine expects: what lies behind the end is zero.
int handOut(const QByteArray& bytes, char* to, int count) {
    const auto given = std::min<qsizetype>(bytes.size(), count);
    std::copy_n(bytes.constData(), given, to);
    std::fill(to + given, to + count, '\0');
    return given == count ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

/// The list of journals that one commit stands for.
class SuperJournal : public Journal {
public:
    using Journal::Journal;

    int opened() override {
        QByteArray bytes(std::max<qint64>(0, disk.size()), '\0');
        if (const int code = disk.read(bytes.data(), static_cast<int>(bytes.size()), 0); code != SQLITE_OK) return code;
        length_ = bytes.size();
        for (const QByteArray& text : bytes.split('\0'))
            if (!text.isEmpty()) shown_ += resolved(folder_, text) + '\0';
        return SQLITE_OK;
    }
    int read(char* to, int count, qint64 at) override { return handOut(shown_.mid(at), to, count); }
    /// The engine writes one name a call, with the zero behind it.
    int write(const QByteArray& bytes, qint64 at) override {
        if (at != shown_.size() || !bytes.endsWith('\0')) return SQLITE_IOERR_WRITE;
        const QByteArray text = kept(folder_, bytes.chopped(1)) + '\0';
        if (const int code = disk.write(text, length_); code != SQLITE_OK) return code;
        length_ += text.size();
        shown_ += bytes;
        return SQLITE_OK;
    }
    int truncate(qint64) override { return SQLITE_IOERR_TRUNCATE; } // the engine never does
    qint64 size() override { return shown_.size(); }

private:
    QByteArray shown_;
    qint64 length_ = 0; ///< on the disk
};

constexpr int EngineHeader = 28, SmallestHeader = 512; ///< the rest of a journal's header is free
constexpr int ChangeCounterPlace = 24;                 ///< in a database file; the page count follows
constexpr int OriginalPagesPlace = 16;                 ///< in a journal
const QByteArray StampMark = QByteArrayLiteral("MOLV");

quint32 numberAt(const QByteArray& bytes, qsizetype place) {
    return qFromBigEndian<quint32>(bytes.constData() + place);
}

/// The rollback journal of one database file.
class RollbackJournal : public Journal {
public:
    /// `database` is the open database file, null when only the journal's end is read.
    RollbackJournal(const QString& path, sqlite3_file* database, bool isPlayedBack)
        : Journal(path), database_(database), isPlayedBack_(isPlayedBack) {}

    int opened() override {
        readEnding();
        return isPlayedBack_ && !isOfItsDatabase()
                   ? refuse(QStringLiteral("Le fichier '%1' n'est pas le journal de ce fichier de données : une "
                                           "sauvegarde a été copiée par-dessus. Reprenez-la par « molvenctl "
                                           "restaurer ».")
                                .arg(QDir::toNativeSeparators(path_)))
                   : SQLITE_OK;
    }

    int read(char* to, int count, qint64 at) override {
        if (at + count <= endingAt_ || endingAt_ < 0) return disk.read(to, count, at);
        const int before = static_cast<int>(std::clamp<qint64>(endingAt_ - at, 0, count));
        if (before > 0)
            if (const int code = disk.read(to, before, at); code != SQLITE_OK) return code;
        return handOut(shown_.mid(at + before - endingAt_), to + before, count - before);
    }

    int write(const QByteArray& bytes, qint64 at) override {
        if (at == 0 && bytes.size() >= SmallestHeader) return disk.write(stamped(bytes), at);
        if (bytes.size() <= engineDisk()->mxPathname && isSuperJournal(QString::fromUtf8(bytes))) {
            endingAt_ = at;
            shown_ = bytes;
            named_ = bytes;
            return SQLITE_OK;
        }
        if (endingAt_ >= 0 && at == size() && shown_.size() < ending(named_).size()) return writeEnding(bytes);
        if (endingAt_ >= 0 && at >= endingAt_)
            if (const int code = forgetEnding(); code != SQLITE_OK) return code;
        return disk.write(bytes, at);
    }

    int truncate(qint64 size) override {
        if (endingAt_ >= 0 && size > endingAt_)
            return SQLITE_OK; // the engine cuts what lies behind the ending: nothing
        endingAt_ = -1;
        return disk.truncate(size);
    }

    qint64 size() override { return endingAt_ < 0 ? disk.size() : endingAt_ + shown_.size(); }

private:
    void readEnding() {
        const qint64 length = std::max<qint64>(0, disk.size());
        QByteArray last(std::min<qint64>(length, engineDisk()->mxPathname + EndingLength), '\0');
        if (disk.read(last.data(), static_cast<int>(last.size()), length - last.size()) != SQLITE_OK) return;
        const QByteArray text = namedBy(last);
        if (text.isEmpty()) return;
        endingAt_ = length - EndingLength - text.size();
        named_ = resolved(folder_, text);
        shown_ = ending(named_);
    }

    /// The engine writes an ending in pieces; it goes to the disk with the last.
    int writeEnding(const QByteArray& piece) {
        shown_ += piece;
        if (shown_.size() < ending(named_).size()) return SQLITE_OK;
        if (shown_ != ending(named_)) return SQLITE_IOERR_WRITE;
        return disk.write(ending(kept(folder_, named_)), endingAt_);
    }

    /// More is written behind an ending, as after a commit that could not be: it says nothing any more.
    int forgetEnding() {
        const qint64 at = endingAt_;
        endingAt_ = -1;
        return disk.truncate(at);
    }

    QByteArray stateOfDatabase() const {
        QByteArray state(8, '\0');
        database_->pMethods->xRead(database_, state.data(), 8, ChangeCounterPlace); // a new file has none: zero
        return state;
    }

    QByteArray stamped(const QByteArray& header) const {
        const QByteArray stamp = StampMark + stateOfDatabase().first(4);
        return QByteArray(header).replace(EngineHeader, stamp.size(), stamp);
    }

    /// The database file is in the state that the journal was begun in, or in the one that its writing leads to.
    bool isOfItsDatabase() {
        QByteArray header(EngineHeader + 8, '\0');
        if (disk.read(header.data(), static_cast<int>(header.size()), 0) != SQLITE_OK) return true; // too short to act
        if (header.mid(EngineHeader, 4) != StampMark) return true;
        const quint32 before = numberAt(header, EngineHeader + 4);
        const QByteArray state = stateOfDatabase();
        if (numberAt(state, 0) == before + 1) return true;
        return numberAt(state, 0) == before && numberAt(state, 4) == numberAt(header, OriginalPagesPlace);
    }

    sqlite3_file* const database_;
    const bool isPlayedBack_;
    QByteArray named_, shown_; ///< the super-journal, and the ending as the engine sees it
    qint64 endingAt_ = -1;
};

/// What the engine holds of an open journal.
struct Handle {
    sqlite3_file base;
    Journal* journal;
};

Journal& journalOf(sqlite3_file* file) { return *reinterpret_cast<Handle*>(file)->journal; }
sqlite3_file* diskOf(sqlite3_file* file) { return journalOf(file).disk.file(); }

const sqlite3_io_methods& journalMethods() {
    static const sqlite3_io_methods methods = [] {
        sqlite3_io_methods made{};
        made.iVersion = 1;
        made.xClose = [](sqlite3_file* file) {
            delete reinterpret_cast<Handle*>(file)->journal;
            return SQLITE_OK;
        };
        made.xRead = [](sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
            return journalOf(file).read(static_cast<char*>(to), count, at);
        };
        made.xWrite = [](sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
            return journalOf(file).write(QByteArray(static_cast<const char*>(bytes), count), at);
        };
        made.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) { return journalOf(file).truncate(size); };
        made.xSync = [](sqlite3_file* file, int flags) { return diskOf(file)->pMethods->xSync(diskOf(file), flags); };
        made.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
            *size = journalOf(file).size();
            return *size < 0 ? SQLITE_IOERR_FSTAT : SQLITE_OK;
        };
        made.xLock = [](sqlite3_file*, int) { return SQLITE_OK; };
        made.xUnlock = [](sqlite3_file*, int) { return SQLITE_OK; };
        made.xCheckReservedLock = [](sqlite3_file*, int* isLocked) {
            *isLocked = 0;
            return SQLITE_OK;
        };
        made.xFileControl = [](sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; };
        made.xSectorSize = [](sqlite3_file* file) { return diskOf(file)->pMethods->xSectorSize(diskOf(file)); };
        made.xDeviceCharacteristics = [](sqlite3_file* file) {
            return diskOf(file)->pMethods->xDeviceCharacteristics(diskOf(file));
        };
        return made;
    }();
    return methods;
}

std::unique_ptr<Journal> journalFor(const char* name, int flags) {
    const QString path = QDir::fromNativeSeparators(QString::fromUtf8(name));
    if (isSuperJournal(path)) {
        if (flags & SQLITE_OPEN_CREATE) sweepSuperJournals(databaseOf(path));
        return std::make_unique<SuperJournal>(path);
    }
    if (!(flags & SQLITE_OPEN_MAIN_JOURNAL)) return std::make_unique<RollbackJournal>(path, nullptr, false);
    const bool isPlayedBack = (flags & SQLITE_OPEN_READWRITE) && !(flags & SQLITE_OPEN_CREATE);
    return std::make_unique<RollbackJournal>(path, sqlite3_database_file_object(name), isPlayedBack);
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* openedFlags) {
    if (!name || !(flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL)))
        return engineDisk()->xOpen(engineDisk(), name, file, flags, openedFlags);
    file->pMethods = nullptr;
    std::unique_ptr<Journal> journal = journalFor(name, flags);
    int code = journal->disk.open(name, flags, openedFlags);
    if (code == SQLITE_OK) code = journal->opened();
    if (code != SQLITE_OK) return code;
    file->pMethods = &journalMethods();
    reinterpret_cast<Handle*>(file)->journal = journal.release();
    return SQLITE_OK;
}

/// The engine takes a missing super-journal for a commit that is over: that must not be said of a place where the file
/// that it lies beside is missing as well.
int accessFile(sqlite3_vfs*, const char* name, int flags, int* found) {
    const int code = engineDisk()->xAccess(engineDisk(), name, flags, found);
    const QString path = QString::fromUtf8(name);
    if (code != SQLITE_OK || *found || !isSuperJournal(path) || QFile::exists(databaseOf(path))) return code;
    return refuse(
        QStringLiteral("Une écriture interrompue attend le fichier '%1', qui est introuvable. Ouvrez le dossier "
                       "là où il est entier, ou reprenez une sauvegarde par « molvenctl restaurer ».")
            .arg(QDir::toNativeSeparators(databaseOf(path))));
}

/// A commit ends by the synchronised removal of its super-journal. The removal after a roll-back is a tidying: it waits
/// while a journal is left that cannot be seen from this workstation.
int deleteFile(sqlite3_vfs*, const char* name, int isSynchronised) {
    const QString path = QDir::fromNativeSeparators(QString::fromUtf8(name));
    if (!isSynchronised && isSuperJournal(path) && isAwaited(path)) return SQLITE_OK;
    return engineDisk()->xDelete(engineDisk(), name, isSynchronised);
}

} // namespace

const char* disk() {
    static const char* const name = "molven";
    static sqlite3_vfs made = [] {
        // What an inner transaction would undo is kept in memory up to that size: each record written with its journal
        // entry is one, and its pages would go to the disk a second time. The engine takes the size at once, and writes
        // it out at once when there is more: its writes stay below 128 KB.
        constexpr int UndoInMemory = 120 << 10;
        sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, UndoInMemory);
        sqlite3_initialize();
        sqlite3_vfs copy = *engineDisk();
        copy.szOsFile = std::max<int>(copy.szOsFile, sizeof(Handle));
        copy.pNext = nullptr;
        copy.zName = name;
        copy.xOpen = openFile;
        copy.xAccess = accessFile;
        copy.xDelete = deleteFile;
        return copy;
    }();
    static const int registered = sqlite3_vfs_register(&made, 0);
    Q_ASSERT(registered == SQLITE_OK);
    return name;
}

QString takeObjection() { return std::exchange(objection, {}); }

} // namespace molven::sqlite

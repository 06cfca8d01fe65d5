#include "data/sqlite/held_file.h"

#include "data/sqlite/connection.h"
#include "data/sqlite/statement.h"

#include <sqlite3.h>

namespace molven {

namespace {

const char* beginning(HeldFile::Hold hold) {
    switch (hold) {
    case HeldFile::Hold::Reserved:
        return "begin immediate";
    case HeldFile::Hold::Alone:
        return "begin exclusive";
    case HeldFile::Hold::Shared:
        break;
    }
    return "begin";
}

} // namespace

HeldFile::HeldFile(const QString& path, Hold hold, int waitMs)
    : path_(path), connection_(sqlite::connect(path, sqlite::Opening::Existing)) {
    sqlite3_busy_timeout(connection_, waitMs);
    try {
        sqlite::Statement(connection_, QString::fromLatin1(beginning(hold))).run({});
        sqlite::Statement read(connection_, QStringLiteral("select count(*) from sqlite_master"));
        read.run({});
        read.finish();
    } catch (...) {
        sqlite3_close(connection_);
        throw;
    }
}

HeldFile::~HeldFile() { sqlite3_close(connection_); }

} // namespace molven

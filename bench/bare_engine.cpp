#include "bare_engine.h"

#include <QCollator>
#include <QLocale>

#include <sqlite3.h>
#include <stdexcept>

namespace molven::bench {

namespace {

/// The sort order of the names, which the indexes of the program's files are built with.
int compareFrench(void*, int lengthA, const void* a, int lengthB, const void* b) {
    static QCollator collator = [] {
        QCollator made{QLocale(QLocale::French, QLocale::France)};
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    const QStringView first(static_cast<const char16_t*>(a), lengthA / 2),
        second(static_cast<const char16_t*>(b), lengthB / 2);
    return first == second ? 0 : collator.compare(first, second);
}

} // namespace

BareEngine::BareEngine(const QStringList& paths) {
    if (sqlite3_open(paths.first().toUtf8().constData(), &connection_) != SQLITE_OK) throw std::runtime_error("open");
    sqlite3_create_collation(connection_, "french", SQLITE_UTF16_ALIGNED, nullptr, compareFrench);
    execute("pragma synchronous=full");
    execute("pragma cache_spill=16384");
    for (qsizetype i = 1; i < paths.size(); ++i) {
        execute(QStringLiteral("attach '%1' as f%2").arg(paths[i]).arg(i).toUtf8().constData());
        execute(QStringLiteral("pragma f%1.synchronous=full").arg(i).toUtf8().constData());
        execute(QStringLiteral("pragma f%1.cache_spill=16384").arg(i).toUtf8().constData());
    }
}

BareEngine::~BareEngine() { sqlite3_close(connection_); }

void BareEngine::execute(const char* sql) {
    if (sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection_));
}

BareEngine::Statement BareEngine::prepare(const QString& sql) {
    sqlite3_stmt* made = nullptr;
    if (sqlite3_prepare_v2(connection_, sql.toUtf8().constData(), -1, &made, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection_));
    return {made, sqlite3_finalize};
}

int BareEngine::run(const Statement& statement, const std::vector<QByteArray>& values) {
    sqlite3_stmt* raw = statement.get();
    sqlite3_reset(raw);
    for (std::size_t i = 0; i < values.size(); ++i)
        sqlite3_bind_text(raw, static_cast<int>(i + 1), values[i].constData(), static_cast<int>(values[i].size()),
                          SQLITE_STATIC);
    int rows = 0, code = SQLITE_OK;
    while ((code = sqlite3_step(raw)) == SQLITE_ROW) {
        ++rows;
        for (int column = 0; column < sqlite3_column_count(raw); ++column) sqlite3_column_text(raw, column);
    }
    if (code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(raw)));
    sqlite3_reset(raw);
    return rows;
}

std::vector<QByteArray> recordValues(const Table& table,
                                     const std::vector<std::pair<const Field*, QByteArray>>& known) {
    std::vector<QByteArray> values(static_cast<std::size_t>(table.fields().size()), QByteArray(""));
    for (const auto& [field, value] : known) values[static_cast<std::size_t>(field->position)] = value;
    return values;
}

QString insertion(const Table& table, const QString& schema) {
    return QStringLiteral("insert into %1.%2 values (%3)")
        .arg(schema, table.name, QStringList(table.fields().size(), QStringLiteral("?")).join(u','));
}

} // namespace molven::bench

// Tables that move whole from one engine to another.

#include "data/database.h"
#include "data/row_reader.h"

namespace molven {

namespace {

constexpr int AtOnce = 2000; ///< records; a text of them is a megabyte or two

} // namespace

qint64 Database::takeAll(Database from, const Table& table, const std::function<void(qint64)>& done) {
    engine_->write(QStringLiteral("delete from ") + qualified(table));
    const QString sql = QStringLiteral("select rowid,%1 from %2 where rowid>? order by rowid limit %3")
                            .arg(table.columns(), from.qualified(table), QString::number(AtOnce));
    const auto& fields = table.fields();
    qint64 taken = 0;
    QString last = QStringLiteral("-9223372036854775808");
    for (QList<QStringList> rows;; rows.clear()) {
        Statement& found = from.engine_->run(sql, {last});
        while (found.next()) {
            QStringList row{found.text(0)};
            for (const Field* field : fields) row.append(RowReader::bound(*field, found.text(field->position + 1)));
            rows.append(row);
        }
        if (rows.isEmpty()) break;
        last = rows.last().first();
        engine_->load(qualified(table), table.columns(), rows);
        taken += rows.size();
        done(taken);
    }
    engine_->loaded(qualified(table));
    return taken;
}

} // namespace molven

#include "data/key_selection.h"

#include "data/dialect.h"
#include "data/engine.h"

#include <QSet>

namespace molven {

namespace {

std::optional<qint64> numberFrom(Statement& row) {
    const bool isThere = row.next();
    const qint64 number = isThere ? row.integer(0) : 0;
    row.finish();
    return isThere ? std::optional(number) : std::nullopt;
}

} // namespace

QString KeySelection::keyName() const { return tables.size() == 1 ? QStringLiteral("rowid") : QStringLiteral("k"); }

QString KeySelection::source(Sql& sql) const {
    if (tables.size() == 1) return tables.first() + criterionIn(0).where(sql);
    QStringList parts;
    for (qsizetype place = 0; place < tables.size(); ++place)
        parts.append(QStringLiteral("select rowid*%1+%2 as k,%3 from %4%5")
                         .arg(QString::number(tables.size()), QString::number(place), table->columns(), tables[place],
                              criterionIn(place).where(sql)));
    return u'(' + parts.join(QStringLiteral(" union all ")) + QStringLiteral(") as all_files");
}

KeySelection KeySelection::among(const std::vector<Key>& keys) const {
    KeySelection part = *this;
    part.named = QList<Key>(keys.begin(), keys.end());
    if (named)
        part.named->removeIf(
            [known = QSet<Key>(named->begin(), named->end())](Key key) { return !known.contains(key); });
    return part;
}

Criterion KeySelection::criterionIn(qsizetype place) const {
    if (!named) return criterion;
    QStringList keys;
    for (const Key key : *named)
        if (key % tables.size() == place) keys.append(QString::number(keyInTable(key)));
    return criterion && Criterion([keys](Sql& sql) { return sql.dialect.hasKey(keys, sql); });
}

Statement& KeySelection::keys(const std::optional<Stretch>& stretch) const {
    Sql sql{engine->dialect()};
    const QString records = source(sql), ordered = order.in(sql, keyName(), stretch && stretch->fromEnd);
    QString text = QStringLiteral("select %1 from %2%3").arg(keyName(), records, ordered);
    if (stretch) {
        text += QStringLiteral(" limit ") + sql.bind(QString::number(stretch->most));
        text += QStringLiteral(" offset ") + sql.bind(QString::number(stretch->behind));
    }
    return engine->run(text, sql.values);
}

qint64 KeySelection::count() const {
    Sql sql{engine->dialect()};
    const QString records = source(sql);
    return *numberFrom(engine->run(QStringLiteral("select count(*) from ") + records, sql.values));
}

std::optional<qint64> KeySelection::placeOf(Key key) const {
    Sql sql{engine->dialect()};
    const QString ordered = order.in(sql, keyName()), records = source(sql);
    return numberFrom(engine->run(
        QStringLiteral("select n-1 from (select %1 as k,row_number() over (%2) as n from %3) as placed where k=%4")
            .arg(keyName(), ordered, records, sql.bind(QString::number(key))),
        sql.values));
}

KeySelection::Key KeySelection::lastKeyIn(qsizetype place) const {
    return *numberFrom(engine->run(QStringLiteral("select coalesce(max(rowid),0) from ") + tables[place]));
}

} // namespace molven

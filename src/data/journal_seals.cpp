#include "data/clock.h"
#include "data/dates.h"
#include "data/engine.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/journal_tables.h"

#include <QCryptographicHash>

namespace molven {

namespace {

/// A seal, or what the records say that it should be.
struct Seal {
    QString day;
    qint64 last = 0;
    qint64 count = 0;
    QString sum;

    bool operator==(const Seal&) const = default;
};

QString sealed(const QString& file) { return file + u'.' + strsceau.name; }
QString entries(const QString& file) { return file + u'.' + strjournal.name; }

/// Reads every entry of a statement into a seal: each value is hashed behind its length, so that none can pass for
/// two, nor two for one.
Seal sealOf(Statement& rows, const QString& sumBefore) {
    Seal seal;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const auto add = [&hash](QByteArrayView value) {
        hash.addData(QByteArray::number(value.size()));
        hash.addData(":");
        hash.addData(value);
    };
    add(sumBefore.toUtf8());
    while (rows.next()) {
        for (int column = 0; column <= strjournal.jou_val.position + 1; ++column) add(rows.bytes(column));
        // Days of old were sealed before an entry could name several records.
        if (const QByteArrayView keys = rows.bytes(1 + strjournal.jou_cles.position); !keys.isEmpty()) {
            hash.addData("+");
            add(keys);
        }
        seal.last = rows.integer(0);
        seal.day = rows.text(1 + strjournal.jou_dat.position);
        ++seal.count;
    }
    seal.sum = QString::fromLatin1(hash.result().toHex());
    return seal;
}

QString entriesSql(const QString& file, const QString& where) {
    return QStringLiteral("select rowid,%1 from %2 where %3 order by rowid")
        .arg(strjournal.columns(), entries(file), where);
}

QString spoken(const QString& day) { return QStringLiteral("%1/%2/%3").arg(day.mid(6, 2), day.mid(4, 2), day.left(4)); }

} // namespace

void Journal::sealFormerDays() {
    const QString today = sortKey(Clock::today());
    const auto newestIn = [](const QString& file) {
        return QStringLiteral("select jou_dat from %1 order by rowid desc limit 1").arg(entries(file));
    };
    for (const QString& other : workspace_.journalled_[&engine_]) engine_.foresee(newestIn(other), {{}});
    Statement& newest = engine_.run(newestIn(file_));
    const QString day = newest.next() ? newest.text(0) : today;
    newest.finish();
    if (day == today) return;
    // Beside others nobody knows which entries of the former day are still to come.
    if (!engine_.isAlone())
        throw DataError(DataError::Disturbed, QStringLiteral("Un nouveau jour commence, veuillez recommencer."));
    Statement& before =
        engine_.run(QStringLiteral("select sce_der,sce_som from %1 order by rowid desc limit 1").arg(sealed(file_)));
    const bool first = !before.next();
    const QString last = first ? QString() : before.text(0), sum = first ? QString() : before.text(1);
    before.finish();
    const Seal seal = first ? sealOf(engine_.run(entriesSql(file_, QStringLiteral("true"))), sum)
                            : sealOf(engine_.run(entriesSql(file_, QStringLiteral("rowid>?")), {last}), sum);
    if (seal.count == 0) return;
    engine_.write(QStringLiteral("insert into %1 (%2) values (?,?,?,?)").arg(sealed(file_), strsceau.columns()),
                  {seal.day, QString::number(seal.last), QString::number(seal.count), seal.sum});
}

QStringList Journal::faults(Database file) {
    QStringList found;
    Engine& engine = file.engine();
    QString last, sum;
    for (const Record& row : file.select(strsceau)) {
        const QString end = row.value(strsceau.sce_der);
        const Seal seal{row[strsceau.sce_dat], end.toLongLong(), row[strsceau.sce_nbr].toInteger(),
                        row[strsceau.sce_som]};
        Statement& rows =
            last.isEmpty() ? engine.run(entriesSql(file.schema_, QStringLiteral("rowid<=?")), {end})
                           : engine.run(entriesSql(file.schema_, QStringLiteral("rowid>? and rowid<=?")), {last, end});
        if (sealOf(rows, sum) != seal)
            found.append(QStringLiteral("journal : des enregistrements scellés le %1 ont été modifiés, ajoutés ou "
                                        "supprimés")
                             .arg(spoken(seal.day)));
        last = end;
        sum = seal.sum;
    }
    // What no seal covers is of one day: another day's first record would have sealed it.
    const Criterion open = last.isEmpty()
                               ? Criterion()
                               : Criterion([last](Sql& sql) { return QStringLiteral("rowid>") + sql.bind(last); });
    if (file.countBy(strjournal, strjournal.jou_dat, open).size() > 1)
        found.append(QStringLiteral("journal : un sceau manque"));
    return found;
}

} // namespace molven

#include "data/journal_keys.h"

#include "data/collation.h"
#include "data/engine.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "data/row_reader.h"

namespace molven {

namespace {

constexpr QChar LineFeed = u'\n'; ///< what stands between the keys of an entry

/// The entries that name many records: with all whose key is empty they stand together in the index.
Criterion naming(const Criterion& them) { return strjournal.jou_cle == QString() && them; }

} // namespace

JournalKeys::JournalKeys(const Criterion& single, const Criterion& among, Fits fits)
    : criterion_(single || naming(among)), fits_(std::move(fits)) {}

JournalKeys JournalKeys::of(const QString& key) {
    return {strjournal.jou_cle == key, containsCode(strjournal.jou_cles, LineFeed + key + LineFeed),
            [key](const QString& one) { return collation::code(one, key) == 0; }};
}

JournalKeys JournalKeys::beginningWith(const QString& text) {
    return {startsWith(strjournal.jou_cle, text), containsCode(strjournal.jou_cles, LineFeed + text),
            [text](const QString& one) { return collation::code(one.left(text.size()), text) == 0; }};
}

JournalKeys JournalKeys::containing(const QString& text) {
    return {contains(strjournal.jou_cle, text), contains(strjournal.jou_cles, text),
            [plain = folded(text)](const QString& one) { return folded(one).contains(plain); }};
}

JournalKeys operator||(const JournalKeys& a, const JournalKeys& b) {
    if (!a.fits_ || !b.fits_) return {};
    JournalKeys either;
    either.criterion_ = a.criterion_ || b.criterion_;
    either.fits_ = [one = a.fits_, other = b.fits_](const QString& key) { return one(key) || other(key); };
    return either;
}

void Journal::read(Database file, const JournalKeys& keys, const Criterion& further,
                   const std::function<void(const Record& entry)>& tell) {
    Engine& engine = file.engine();
    const Criterion criterion = keys.criterion() && further;
    Sql sql{engine.dialect()};
    const QString where = criterion.where(sql);
    // The sum keeps the engines from going through all entries to the few that an index finds.
    const QString rank = keys.criterion().always() ? QStringLiteral("rowid") : QStringLiteral("rowid+0");
    Statement& rows = engine.run(QStringLiteral("select %1 from %2%3 order by %4")
                                     .arg(strjournal.columns(), file.qualified(strjournal), where, rank),
                                 sql.values);
    while (rows.next()) {
        Record entry = RowReader::read(rows, strjournal, 0);
        const QString named = entry[strjournal.jou_cles];
        if (named.isEmpty()) {
            tell(entry);
            continue;
        }
        entry[strjournal.jou_cles] = QString();
        for (const QString& key : named.mid(1, named.size() - 2).split(LineFeed)) {
            if (!keys.fits(key)) continue;
            entry[strjournal.jou_cle] = key;
            tell(entry);
        }
    }
}

} // namespace molven

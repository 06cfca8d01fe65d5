#include "data/journal_keys.h"

#include "data/collation.h"
#include "data/engine.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "data/row_reader.h"

#include <algorithm>

namespace molven {

namespace {

constexpr QChar LineFeed = u'\n'; ///< what stands between the keys of an entry

constexpr int Digits = 2; ///< that tell neighbours apart

/// What stands in the place of the key where many records were changed alike.
const QString Many = QStringLiteral("");

} // namespace

/// Entries of one record, and those that stand under other keys and name these among others.
JournalKeys::JournalKeys(const Criterion& single, const QStringList& shared, const QString& among, Fits fits)
    : criterion_(single || (isOneOf(strjournal.jou_cle, shared) && containsCode(strjournal.jou_cles, among))),
      fits_(std::move(fits)) {}

QString JournalKeys::family(const QString& key) {
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const bool ends = key.size() > Digits && std::all_of(key.end() - Digits, key.end(), isDigit);
    return ends && !key.contains(LineFeed) ? key.chopped(Digits) : QString();
}

JournalKeys JournalKeys::of(const QString& key) {
    return {strjournal.jou_cle == key, {Many, family(key)}, LineFeed + key + LineFeed, [key](const QString& one) {
                return collation::code(one, key) == 0;
            }};
}

JournalKeys JournalKeys::beginningWith(const QString& text) {
    QStringList shared{Many}; // and families that end within the text
    for (int more = 1; more <= Digits && more < text.size(); ++more) shared.append(text.chopped(more));
    return {startsWith(strjournal.jou_cle, text), shared, LineFeed + text,
            [text](const QString& one) { return collation::code(one.left(text.size()), text) == 0; }};
}

JournalKeys JournalKeys::containing(const QString& text) {
    JournalKeys keys;
    keys.criterion_ = contains(strjournal.jou_cle, text) || contains(strjournal.jou_cles, text);
    keys.fits_ = [plain = folded(text)](const QString& one) { return folded(one).contains(plain); };
    return keys;
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
        const bool isShared = entry[strjournal.jou_gen] != u"M"; // each record with a value of its own
        const QStringList names = named.mid(1, named.size() - 2).split(LineFeed),
                          values = isShared ? entry[strjournal.jou_val].split(LineFeed) : QStringList();
        entry[strjournal.jou_cles] = QString();
        for (qsizetype i = 0; i < names.size(); ++i) {
            if (!keys.fits(names[i])) continue;
            entry[strjournal.jou_cle] = names[i];
            if (isShared) entry[strjournal.jou_val] = values.value(i);
            tell(entry);
        }
    }
}

} // namespace molven

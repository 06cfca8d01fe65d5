#pragma once

#include "data/database.h"
#include "reference/article_tables.h"
#include "shell/company_rules.h"

namespace molven {

/// Follow-up codes of an article.
namespace follow_up {
inline const QString ByUnit = QStringLiteral("O");
inline const QString ByMovements = QStringLiteral("K");
inline const QString None = QStringLiteral("N");
inline const QString TextLine = QStringLiteral("T");
} // namespace follow_up

/// Several LPP codes stand in the side table instead of one in the article.
inline const QString SeveralLpp = QStringLiteral("MULTI");

namespace articles {

std::optional<Record> find(Database molven, const QString& reference);
/// The article of a supplier's barcode: by its EAN, else by the supplier's reference.
std::optional<Record> findScanned(Database molven, const QString& ean, const QString& supplierReference);
/// Fallbacks of a new article: accounts, VAT code, sub-family, pieces counted.
Record blank();

/// The article's follow-up in words: "Article tenu en stock et suivi" and its kin; empty for a text line.
QString followUpText(const QString& followUp);
/// "Origine Humaine" and its kin.
QString originText(const QString& origin);
/// How the company's prices are shown.
QString pricePattern(const CompanyRules& rules);

/// An article as entered: kind A/T/X, stocked O/N and followed O/N give the follow-up code.
struct Entry {
    Record article = blank();
    QString kind;     ///< Txtop1
    QString stocked;  ///< Txtop2
    QString followed; ///< Txtop3
    /// The codes of an article whose LPP code is "MULTI"; nothing leaves those that are kept.
    std::optional<Record> severalLpp = {};
};
/// The LPP codes of an article that has several; empty codes for another.
Record severalLpp(Database molven, const QString& reference);
/// The three entries that a stored article comes from.
Entry entryOf(const Record& article);

/// Throws Refusal when a value may not stand in that field (a table field, or "Txtop1" to "Txtop3"); an empty one may.
void checkValue(const CompanyRules& rules, const QString& field, const QString& value);
/// An account that an article is booked on.
struct Account {
    const Text& field;
    QString start; ///< of the numbers offered
};
/// Sales, export sales, purchases, stock.
const QList<Account>& accounts();
/// Throws Refusal unless the number is in the chart.
void checkAccount(Database compta, const Account& account, const QString& number);

/// What rules name that write an article, or its quantity, average and last price; see Locks.
inline QString lockName(const QString& reference) { return QStringLiteral("article ") + reference.trimmed().toUpper(); }
/// The same of a rule that saves an article: it may take an EAN code from the pool.
inline Locks locksOf(const QString& reference) { return Locks::of({lockName(reference), QStringLiteral("codes EAN")}); }

/// Writes the article after every check of the trade; labels are put in upper case; allocates an EAN where the
/// company does. `before` is the article as the user read it, nothing for a new one. Throws Refusal with the field of
/// the faulty entry, DataError RecordChanged when another workstation wrote the article meanwhile. `compta` and
/// `gencode` are opened in the same workspace. Answers what the user must be told of an article that was written all
/// the same: an old one for which the pool of EAN codes has none; empty when there is nothing to tell.
QString save(Database molven, Database compta, Database gencode, const CompanyRules& rules, Entry entry,
             const std::optional<Record>& before);
/// Deletes the article with its LPP codes, and gives its EAN code back to the pool. Throws Refusal while it has stock
/// or orders.
void remove(Database molven, Database gencode, const QString& reference);

/// They will be looked for with find(), in the transaction or the Reading that is open.
void foresee(Database molven, const QStringList& references);
/// The same of severalLpp().
void foreseeSeveralLpp(Database molven, const QStringList& references);

/// New quantity in stock after units or goods came in (positive) or went out.
void moveStock(Database molven, const QString& reference, const Decimal& quantity);

} // namespace articles
} // namespace molven

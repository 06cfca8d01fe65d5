#pragma once

#include "data/progress.h"
#include "reference/code_tables.h"

namespace molven::article_updates {

/// A reimbursement list whose prices go on into the articles.
struct Reimbursement {
    const CodeTable& kind;
    const Number& price;       ///< with VAT
    const Text& codeOfArticle; ///< the article's field that holds a code of the list
};
const Reimbursement& lpp();
const Reimbursement& tips();

/// Puts a price with VAT into every article of a code: sale price without VAT = price x 100 / (100 + the article's VAT
/// rate), to the cent; price with VAT and liability tariff = price. One transaction. Answers how many articles.
qint64 pushPrice(Database molven, const Reimbursement& list, const QString& code, const Decimal& price);
/// Writes a new row of a reimbursement list, or the change of the one read as `before`, and pushes its price into the
/// articles when `intoArticles` says so: all of it or nothing. Throws as code_tables::add and change do.
void saveReimbursement(Database molven, const Reimbursement& list, const Record& row,
                       const std::optional<Record>& before, bool intoArticles);

/// What giving a family its account came to.
struct FamilyAccount {
    qint64 articles;
    bool isInChart;
};
/// Gives every article of a family its sales account, be it in the chart or not. Throws Refusal "Imputation comptable
/// incorrecte" unless it has nine characters, " Code obligatoire" without a family, "Aucun article dans cette famille"
/// when there is none.
FamilyAccount setFamilyAccount(Database molven, Database compta, const QString& family, const QString& account);

/// Carries every article into the PAN table: reference, label, last purchase price. PAN prices, and rows without an
/// article, stay. Answers how many articles.
qint64 fillPanTable(Database molven, const Progress& progress = {});
/// Copies the purchase price into the PAN price wherever it is not zero. Answers how many.
qint64 copyPurchaseToPan(Database molven);

} // namespace molven::article_updates

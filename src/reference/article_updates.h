#pragma once

#include "data/database.h"

namespace molven::article_updates {

/// Puts a reimbursement price with VAT into every article of an LPP code: sale price without VAT = price x 100 / (100 +
/// the article's VAT rate), to the cent; price with VAT and liability tariff = price. One transaction. Answers how
/// many articles.
qint64 pushLppPrice(Database molven, const QString& lppCode, const Decimal& price);
/// The same for the articles of a TIPS code.
qint64 pushTipsPrice(Database molven, const QString& tipsCode, const Decimal& price);

/// Gives every article of a family its sales account. Throws Refusal "Imputation comptable incorrecte" unless it has
/// nine characters, "Aucun article dans cette famille" when there is none. Answers how many.
qint64 setFamilyAccount(Database molven, const QString& family, const QString& account);

/// Carries every article into the PAN table: reference, label, last purchase price. Answers how many.
qint64 fillPanTable(Database molven);
/// Copies the purchase price into the PAN price wherever it is not zero. Answers how many.
qint64 copyPurchaseToPan(Database molven);

} // namespace molven::article_updates

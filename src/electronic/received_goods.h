#pragma once

#include "data/database.h"
#include "electronic/invoice.h"
#include "stock/receipt.h"

namespace molven {

/// Goods of a received invoice that are received together: one article, lot and expiry. Never in a file.
struct ReceivedGoods : Table {
    using Table::Table;
    Text rec_ref{this, "rec_ref", 40};                 ///< the seller's reference
    Text rec_ean{this, "rec_ean", 14};                 ///< EAN
    Text rec_fref{this, "rec_fref", 40};               ///< the manufacturer's reference
    Label rec_des{this, "rec_des"};                    ///< designation
    Text rec_lot{this, "rec_lot", 40};                 ///< lot
    Text rec_per{this, "rec_per", 7};                  ///< expiry "mm/yyyy"
    Text rec_ste{this, "rec_ste", 40};                 ///< sterilisation batch
    Text rec_dst{this, "rec_dst", 7};                  ///< sterilisation "mm/yyyy"
    Number rec_qte{this, "rec_qte", Number::Quantity}; ///< quantity
    Number rec_pri{this, "rec_pri", Number::Money};    ///< price of one, without VAT
    Label rec_ser{this, "rec_ser"};                    ///< serials, separated by ", "
};
inline const ReceivedGoods strrecu{"strrecu"};

namespace electronic {

/// What an invoice delivers, in the order of its lines.
QList<Record> goodsOf(const Invoice& invoice);

/// A receipt of goods that goodsOf() gave. Their article is looked for by its own reference, the supplier's, and its
/// EAN. Throws Refusal when none is known.
Receipt receiptOf(Database molven, const Invoice& invoice, const Record& goods);

} // namespace electronic
} // namespace molven

#pragma once

#include "accounting/tables.h"
#include "data/database.h"
#include "data/period.h"

#include <optional>

/// What representatives earn on the invoice lines of `statd`.
namespace molven::commissions {

struct Line {
    QString number, day, reference, label, vatClass; ///< of the invoice line; the day is "yyyymmdd"
    Decimal quantity, net;
    Decimal rate;       ///< percent, 0 when the representative has none for the article's category
    Decimal commission; ///< cut to the cent, never rounded up
    Decimal vat;        ///< not rounded
};

/// What lines of one VAT class come to.
struct Total {
    Decimal commission, vat;
    bool isEmpty() const { return commission.isZero(); }
};

struct Statement {
    QString representative, name; ///< "INCONNU" when the code is not in the list
    QList<Line> lines;
    Total exempt, reduced, normal; ///< without VAT, at 5.5 %, at 19.6 %: the rates that the contracts state
    Decimal due() const;
};

/// The statements of a range of representatives, in the order of their codes; an empty start counts as "000", an empty
/// end as "999".
QList<Statement> statements(Database tri, Database molven, const QString& first, const QString& last);
/// The same as one row each.
QList<Record> rows(const QList<Statement>& statements);
/// The days from the first invoice of `statd` to the last one; nothing while it is empty.
std::optional<Period> covered(Database tri);

} // namespace molven::commissions

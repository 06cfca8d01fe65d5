#include "sales/document_archive.h"

#include "data/require.h"

namespace molven::document_archive {

archive::Subject subject(const DocumentKind& kind) {
    return {{kind.headers, kind.headers.fac_aa, kind.headers.fac_no},
            archive::Keyed{kind.lines, kind.lines.fac_aa, kind.lines.fac_no}};
}

Criterion eligible(const DocumentKind& kind, archive::Direction direction) {
    const bool mustBeInvoiced = kind.isDelivery() && direction == archive::Direction::ToHistory;
    return mustBeInvoiced ? kind.headers.fac_cpt == QStringLiteral("T") : Criterion();
}

Criterion within(const DocumentKind& kind, archive::Direction direction, const Range& range) {
    require(range.year.size() == 4, QStringLiteral("Année incorrecte"), QStringLiteral("txtann"));
    require(range.last >= range.first, QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("Txtfin"));
    const DocumentHeaders& headers = kind.headers;
    return headers.fac_no >= range.first && headers.fac_no <= range.last && headers.fac_aa == range.year &&
           eligible(kind, direction);
}

} // namespace molven::document_archive

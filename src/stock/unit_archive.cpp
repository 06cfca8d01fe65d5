#include "stock/unit_archive.h"

#include "data/require.h"
#include "stock/units.h"

namespace molven::unit_archive {

archive::Subject subject() { return {{strproduit, strproduit.pro_ann, strproduit.imm_art}}; }

Criterion eligible() { return strproduit.tes_vte == state::Sold; }

Criterion within(const Range& range) {
    const qsizetype length = strproduit.pro_ann.size + strproduit.imm_art.size;
    const auto check = [length](const QString& key, const QString& box) {
        require(key.size() == length, QStringLiteral(" 10 caracteres SVP"), box);
    };
    check(range.first, QStringLiteral("txtdebimm"));
    check(range.last, QStringLiteral("txtfinimm"));
    require(range.last >= range.first, QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtfinimm"));
    const Expression key = strproduit.pro_ann + strproduit.imm_art;
    return key >= range.first && key <= range.last && eligible();
}

} // namespace molven::unit_archive

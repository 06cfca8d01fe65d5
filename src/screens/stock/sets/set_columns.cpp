#include "screens/stock/sets/set_columns.h"

#include "ui/unit_marks.h"

namespace molven::set_columns {

namespace {

const SetStates& e = stretatanc;

GridColumn stateColumn() {
    return {&e.eta_com, QStringLiteral("Etat"), 160, {}, [](const Record& row) {
                const bool isWhole = set_overview::isComplete(row);
                return CellMark{isWhole ? row[e.eta_com] : QStringLiteral("Incomplet"),
                                isWhole ? style::Tone::Good : style::Tone::Warning, row[e.eta_com]};
            }};
}

} // namespace

QList<GridColumn> ofOneType() {
    return {{&e.stk_anc_imm, QStringLiteral("N° ancillaire"), 90},
            {&e.stk_num_dep, QStringLiteral("Dépôt"), 60},
            {&e.stk_nom_dep, QStringLiteral("Nom"), 170},
            {&e.stk_dat_vte, QStringLiteral("Depuis le"), 85},
            {&e.stk_num_vte, QStringLiteral("Bon"), 60},
            {&e.eta_nb, QStringLiteral("Unités"), 55},
            {&e.eta_tot, QStringLiteral("Sur"), 45},
            expiryColumn(e.eta_per),
            stateColumn()};
}

QList<GridColumn> ofAllTypes() {
    return QList<GridColumn>{{&e.stk_anc_code, QStringLiteral("Type"), 100},
                             {&e.stk_anc_lib, QStringLiteral("Libellé"), 230}} +
           ofOneType();
}

QList<GridColumn> contents() {
    const SetContents& c = strcontenu;
    return {{&c.stk_imm_art, QStringLiteral("Immatriculation"), 110},
            {&c.stk_ref_art, QStringLiteral("Référence"), 100},
            {&c.stk_lib_art, QStringLiteral("Désignation"), 260},
            {&c.lot_art, QStringLiteral("Lot"), 90},
            expiryColumn(c.dat_per)};
}

QList<GridColumn> returning() {
    const auto mark = [](const Record& row) {
        const QString fate = row[strcontenu.eta_ret];
        return CellMark{fate, fate == CameBack ? style::Tone::Good : style::Tone::Warning, {}};
    };
    return QList<GridColumn>{{&strcontenu.eta_ret, QStringLiteral("Retour"), 100, {}, mark}} + contents();
}

} // namespace molven::set_columns

#include "stock/ancillary_sets.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "stock/units.h"

namespace molven::ancillary_sets {

namespace {

const QString HeaderLine = QStringLiteral("000");

Record lineOf(const QString& serial, const QString& type, const QString& label, const QString& line) {
    Record record(strstock);
    record[strstock.stk_anc_imm] = serial;
    record[strstock.stk_anc_code] = type;
    record[strstock.stk_anc_lib] = label;
    record[strstock.stk_anc_imm_lg] = line;
    record[strstock.stk_num_dep] = SetDepot;
    record[strstock.stk_tes_vte] = state::InStock;
    record[strstock.stk_dat_vte] = EmptyDate;
    return record;
}

} // namespace

QString create(Database ancillaire, const QString& type) {
    Transaction transaction(ancillaire.workspace(), QStringLiteral("Création d'un ancillaire"));
    const auto known = ancillaire.find(strancillaire, strancillaire.anc_code == type);
    const qint64 components =
        ancillaire.count(strnomenclature, strnomenclature.anc_code == type && strnomenclature.anc_lg != HeaderLine);
    if (!known || components == 0) throw Refusal(QStringLiteral("Cet ancillaire n'a pas de composant"));
    const Decimal last = Decimal::fromText(ancillaire.greatest(strstock, strstock.stk_anc_imm));
    const QString serial = format(last + 1, QStringLiteral("00000000"));
    ancillaire.insert(lineOf(serial, type, std::as_const(*known)[strancillaire.anc_lib], HeaderLine));
    transaction.commit();
    return serial;
}

void place(Database molven, Database ancillaire, const CompanyRules& rules, const QString& serial,
           const QString& immatriculation) {
    Transaction transaction(molven.workspace(), QStringLiteral("Composition d'un ancillaire"));
    const Immatriculation key = Immatriculation::fromText(immatriculation);
    const auto found = units::find(molven, key);
    if (!found) throw Refusal(QStringLiteral("Immatriculation inconnue"));
    const Record& unit = *found;
    if (unit[strproduit.tes_vte] != state::InStock || unit[strproduit.num_dep] != MainDepot)
        throw Refusal(QStringLiteral("Aucun produit en stock pour la référence ") + unit[strproduit.ref_art]);
    const auto header =
        ancillaire.find(strstock, strstock.stk_anc_imm == serial && strstock.stk_anc_imm_lg == HeaderLine);
    if (!header) throw Refusal(QStringLiteral("Cet ancillaire n'a pas de composant"));
    if (header->value(strstock.stk_num_dep) != SetDepot)
        throw Refusal(QStringLiteral("Impossible, cet ancillaire n'est plus au dépôt principal"));
    const QString type = std::as_const(*header)[strstock.stk_anc_code];
    const int last = ancillaire.greatest(strstock, strstock.stk_anc_imm_lg, strstock.stk_anc_imm == serial).toInt();

    Record line =
        lineOf(serial, type, std::as_const(*header)[strstock.stk_anc_lib], padded(QString::number(last + 1), 3));
    line[strstock.stk_ref_art] = unit[strproduit.ref_art];
    line[strstock.stk_lib_art] = unit[strproduit.pro_li1];
    line[strstock.stk_imm_art] = unit[strproduit.imm_art];
    ancillaire.insert(line);
    molven.update(strproduit,
                  units::placedIn(molven, rules, SetDepot) + QList<Assignment>{{strproduit.tes_vte, state::InSet},
                                                                               {strproduit.clt_dep, {}},
                                                                               {strproduit.nom_dep, {}},
                                                                               {strproduit.nbl_dep, {}},
                                                                               {strproduit.num_vte, {}},
                                                                               {strproduit.dat_vte, {}},
                                                                               {strproduit.tri_vte, {}},
                                                                               {strproduit.clt_vte, {}},
                                                                               {strproduit.ref_vte, {}},
                                                                               {strproduit.stk_anc_imm, serial},
                                                                               {strproduit.stk_anc_cod, type}},
                  key.criterion());
    transaction.commit();
}

} // namespace molven::ancillary_sets

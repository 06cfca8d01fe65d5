#include "sales/transfer_notes.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "stock/units.h"

namespace molven::transfer_notes {

namespace {

void require(bool held, const char* message, const Field& field) {
    if (!held) throw Refusal(QString::fromUtf8(message), field.name);
}

void check(Database molven, const TransferNote& note) {
    require(parties::findClient(molven, note.client).has_value(), "Client obligatoire", strbtre.fac_clt);
    require(!note.from.isEmpty(), "Dépôt de sortie obligatoire", strbtre.fac_depd);
    require(dateFromText(note.date).isValid(), "Date invalide", strbtre.fac_dat);
    require(note.from != note.to, "dépôt initial = dépôt du client", strbtre.fac_depa);
}

Record transferable(Database molven, const TransferNote& note, const QString& immatriculation) {
    const auto refused = [&immatriculation](const QString& why) {
        return Refusal(QStringLiteral("Non transferable -- Immat : ") + immatriculation + why, strbtrl.fac_imm.name);
    };
    const auto found = units::find(molven, Immatriculation::fromText(immatriculation));
    if (!found) throw Refusal(QStringLiteral("Immatriculation inconnue"), strbtrl.fac_imm.name);
    const Record& unit = *found;
    const QString unitState = unit[strproduit.tes_vte];
    if (unitState == state::Delivered)
        throw refused(QStringLiteral(" a été livré , BL N° : ") + unit[strproduit.num_vte]);
    if (unitState == state::Sold)
        throw refused(QStringLiteral(" a été vendue , FACT N° : ") + unit[strproduit.num_vte]);
    if (unit[strproduit.num_dep] != note.from)
        throw refused(QStringLiteral(" est au dépot : ") + unit[strproduit.num_dep]);
    return *found;
}

Record headerOf(Database molven, Database vente, Database historic, const TransferNote& note) {
    const Record client = *parties::findClient(molven, note.client);
    Record header(strbtre);
    header[strbtre.fac_aa] = note.date.right(4);
    header[strbtre.fac_no] = numbering::next(vente, historic, strbtre);
    header[strbtre.fac_lg] = documents::HeaderKey;
    header[strbtre.fac_depd] = note.from;
    header[strbtre.fac_depa] = note.to;
    header[strbtre.fac_clt] = client[strclient.clt_cod];
    header[strbtre.fac_nom] = client[strclient.clt_nom];
    header[strbtre.fac_l1] = client[strclient.clt_liv1];
    header[strbtre.fac_l2] = client[strclient.clt_liv2];
    header[strbtre.fac_l3] = client[strclient.clt_liv3];
    header[strbtre.fac_l4] = client[strclient.clt_liv4];
    header[strbtre.fac_l5] = client[strclient.clt_liv5];
    header[strbtre.fac_pat] = note.patient;
    header[strbtre.fac_btr] = note.voucher;
    header[strbtre.fac_trs] = note.dispatch;
    header[strbtre.fac_dat] = note.date;
    header[strbtre.fac_datf] = note.date;
    header[strbtre.tri_datf] = sortKey(note.date);
    header[strbtre.fac_eta] = QStringLiteral("N000000");
    header[strbtre.fac_cpt] = documents::Open;
    return header;
}

Record lineOf(const Record& header, const Record& unit, int number) {
    Record line(strbtrl);
    line[strbtrl.fac_aa] = header[strbtre.fac_aa];
    line[strbtrl.fac_no] = header[strbtre.fac_no];
    line[strbtrl.fac_lg] = numbering::lineKey(number);
    line[strbtrl.fac_imm] = unit[strproduit.imm_art];
    line[strbtrl.fac_ref] = unit[strproduit.ref_art];
    line[strbtrl.fac_li1] = unit[strproduit.pro_li1];
    line[strbtrl.fac_id1] = QStringLiteral("N° Lot : ") + unit[strproduit.lot_art];
    line[strbtrl.fac_typ] = unit[strproduit.pro_typ];
    line[strbtrl.fac_ste] = unit[strproduit.num_ste];
    line[strbtrl.fac_dst] = unit[strproduit.dat_ste];
    line[strbtrl.fac_dpr] = unit[strproduit.dat_per];
    line[strbtrl.fac_fimm] = unit[strproduit.fou_imm];
    line[strbtrl.fac_fref] = unit[strproduit.fou_ref];
    line[strbtrl.fac_clt] = header[strbtre.fac_clt];
    return line;
}

void move(Database molven, const CompanyRules& rules, const Record& header, const Criterion& unit) {
    const QString depot = header[strbtre.fac_depa];
    QList<Assignment> moved{{strproduit.num_dep, depot},
                            {strproduit.clt_dep, header[strbtre.fac_clt]},
                            {strproduit.nom_dep, header[strbtre.fac_nom]},
                            {strproduit.nbl_dep, header[strbtre.fac_no]},
                            {strproduit.num_vte, header[strbtre.fac_no]},
                            {strproduit.dat_vte, header[strbtre.fac_dat]},
                            {strproduit.tri_vte, header[strbtre.tri_datf]},
                            {strproduit.clt_vte, header[strbtre.fac_clt]},
                            {strproduit.ref_vte, header[strbtre.fac_pat].left(20)}};
    if (rules.hasDepotFamilies()) moved.append({strproduit.fam_dep, parameters::depotFamily(molven, depot)});
    molven.update(strproduit, moved, unit);
}

} // namespace

QString write(Database molven, Database vente, Database historic, const CompanyRules& rules, const TransferNote& note) {
    Transaction transaction(molven.workspace(), QStringLiteral("Transfert"));
    check(molven, note);
    const Record header = headerOf(molven, vente, historic, note);
    vente.insert(header);
    numbering::addHiddenLine(vente, strbtrl, header[strbtre.fac_aa], header[strbtre.fac_no]);
    int number = 0;
    for (const QString& immatriculation : note.units) {
        const Record unit = transferable(molven, note, immatriculation);
        if (++number > numbering::LastLine)
            throw Refusal(QStringLiteral("Document plein - ligne non crée"), strbtrl.fac_lg.name);
        vente.insert(lineOf(header, unit, number));
        move(molven, rules, header, Immatriculation::fromText(immatriculation).criterion());
    }
    transaction.commit();
    return header[strbtre.fac_no];
}

} // namespace molven::transfer_notes

#include "stock/unit_listing.h"

#include "data/clock.h"
#include "data/dates.h"
#include "reference/parameters.h"
#include "stock/units.h"

namespace molven::unit_listing {

namespace {

using listing::box, listing::known;
using Match = ListingCriterion::Match;

/// A box whose words follow a choice.
ListingCriterion worded(ListingCriterion made, const char* choice, const QStringList& words) {
    made.choice = QString::fromLatin1(choice);
    made.choiceWords = words;
    return made;
}

/// The words that a graft has for a certificate, an option of the type.
QStringList ofGraft(const char* words) { return {{}, {}, {}, QString::fromUtf8(words)}; }

ListingOption option(const char* caption, const Criterion& criterion = {}, const char* words = "") {
    return {QString::fromUtf8(caption), criterion, QString::fromUtf8(words)};
}

} // namespace

namespace {

QList<ListingCriterion> boxes() {
    const auto& u = strproduit;
    return {box("DEBIMM", "Immat. du :", u.imm_art, Match::AtLeast, "immat >= '", 8),
            box("FINIMM", "au :", u.imm_art, Match::AtMost, "immat <= '", 8),
            box("REFD", "Référence de :", u.ref_art, Match::AtLeast, "référence >= '"),
            box("REFF", "à :", u.ref_art, Match::AtMost, "référence <= '"),
            box("REF1", "Référence :", u.ref_art, Match::Equal, "référence = '"),
            box("txtnum_liv", "N° BL fournisseur :", u.num_liv, Match::Equal, "n° BL = '"),
            box("txtdat_liv", "Date réception :", u.dat_liv, Match::Date, "date liv = '"),
            box("txtdat_dlv", "Livraison prévue :", u.dat_dlv, Match::Date, "date liv prévue = '"),
            known(box("txtfou_cde", "Fournisseur :", u.fou_cde, Match::Equal, "fournisseur = '", 6), {&codes::Supplier},
                  "Ce fournisseur |n'existe pas"),
            known(box("txtnum_dep", "Dépôt :", u.num_dep, Match::Equal, "dépôt = '"), {&codes::Depot},
                  "Ce dépôt |n'existe pas"),
            worded(box("txtnum_vte", "N° document :", u.num_vte, Match::Equal, "Document = '", 6), "Cmbetat",
                   {QString(), QStringLiteral("Facture = '"), QString(), QStringLiteral("Bon livraison = '"),
                    QStringLiteral("Bon transfert = '")}),
            box("txtlot_art", "N° lot :", u.lot_art, Match::Equal, "N° Lot = '"),
            worded(box("txtino_cer", "Certificat 1 / tissu :", u.ino_cer, Match::Equal, "C.Mat.1 = '"), "Cmbtype",
                   ofGraft("N°Tissu = '")),
            worded(box("txtpee_cer", "Certificat 2 / donneur :", u.pee_cer, Match::Equal, "C.Mat.2 = '"), "Cmbtype",
                   ofGraft("N°Donneur = '")),
            worded(box("txtreg_art", "Registre / prélvt :", u.reg_art, Match::Equal, "Regroupement = '"), "Cmbtype",
                   ofGraft("D.Prelvt = '")),
            box("txtnof_art", "Ordre fabrication :", u.nof_art, Match::Equal, "N° OF = '"),
            known(box("txtfab_cau", "Cause :", u.fab_cau, Match::Equal, "Cause = '"),
                  {&codes::Reworked, &codes::Derogated, &codes::Scrapped}, "Cette cause |n'existe pas"),
            box("txtnum_ste", "N° stérilisation :", u.num_ste, Match::Equal, "N° sté : = '"),
            box("txtdat_per", "Péremption jusqu'à :", u.dat_per, Match::ExpiresBy, "Date Pér. <= '"),
            box("txtpro_tip", "Code TIPS :", u.pro_tip, Match::Equal, " tips = '"),
            box("txtpro_lpp", "Code LPP :", u.pro_lpp, Match::Equal, " lpp = '"),
            box("txtdat_cre", "Saisie le :", u.dat_cre, Match::Date, "Saisie le '"),
            box("txtdat_rel", "Relance le :", u.dat_rel, Match::Date, "Relance le '"),
            box("txtdat_sel", "Sélection le :", u.dat_sel, Match::Date, "Séléctionne le '"),
            box("txtind_ste", "Indice :", u.ind_ste, Match::Equal, "Indice '"),
            known(box("txtfam_dep", "Famille dépôt :", u.fam_dep, Match::Equal, "Fam Depot '"), {&codes::DepotFamily},
                  "Cette famille |n'existe pas"),
            box("txtnum_conf", "N° conformité :", u.num_conf, Match::Equal, "N° Conf '"),
            box("txtreg_pat", "Patient :", u.reg_pat, Match::Beginning, "Patient '"),
            box("txtannee", "Année document :", u.tri_vte, Match::Year, "Année '")};
}

QList<ListingChoice> choices() {
    const auto& u = strproduit;
    return {{QStringLiteral("Cmbetat"),
             QStringLiteral("Etat :"),
             {option("Tous"), option("Vendus", u.tes_vte == QStringLiteral("O"), "vendu = 'O'"),
              option("En stock", u.tes_vte == QStringLiteral("N"), "vendu = 'N'"),
              option("Livrés", u.tes_vte == QStringLiteral("L"), "vendu = 'L'"),
              option("Transférés", u.tes_vte == QStringLiteral("N") && u.clt_vte != QString(), "vendu = 'N'"),
              option("Vendus sans patient", u.tes_vte == QStringLiteral("O") && u.reg_pat == QString(),
                     "vendu = 'O', sans patient")}},
            {QStringLiteral("Cmbtype"),
             QStringLiteral("Type :"),
             {option("Tous"), option("Fabriqué", u.pro_typ == QStringLiteral("F"), "Fabriqué"),
              option("Négoce", u.pro_typ == QStringLiteral("N"), "Négoce"),
              option("Greffon", u.pro_typ == QStringLiteral("G"), "Greffon")}},
            {QStringLiteral("Cmbconf"),
             QStringLiteral("Conformité :"),
             {option("Toutes"), option("Conforme", u.fab_con == QStringLiteral("O"), "Conforme"),
              option("Dérogé", u.fab_con == QStringLiteral("Y"), "Dérogé"),
              option("Retouché", u.fab_con == QStringLiteral("X"), "Retouché"),
              option("Rebuté", u.fab_con == QStringLiteral("Z"), "Rebuté")}}};
}

} // namespace

const ListingCriteria& criteria() {
    static const ListingCriteria all{boxes(), choices()};
    return all;
}

QStringList orders() {
    return {QStringLiteral("Référence"), QStringLiteral("Immatriculation"), QStringLiteral("Client"),
            QStringLiteral("N° série fournisseur")};
}

Criterion criterion(Database molven, const ListingSelection& selection, bool withoutReminded) {
    const Criterion asked = listing::criterion(molven, criteria(), selection);
    return withoutReminded ? asked && strproduit.dat_rel == QStringLiteral("00000000") : asked;
}

Order order(const ListingSelection& selection) {
    switch (selection.order) {
    case 1:
        return {strproduit.pro_ann, strproduit.imm_art};
    case 2:
        return {strproduit.clt_vte, strproduit.lot_art, strproduit.ref_art};
    case 3:
        return strproduit.fou_imm;
    default:
        return {strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    }
}

qint64 markSelected(Database molven, Database tri, bool isReminder) {
    const QString today = sortKey(Clock::today());
    QList<Assignment> marks{{strproduit.dat_sel, today}};
    if (isReminder) marks.append({strproduit.dat_rel, today});
    Transaction transaction(molven.workspace(), QStringLiteral("Liste des produits"));
    qint64 marked = 0;
    for (const Record& unit : tri.select(tripro))
        marked +=
            molven.update(strproduit, marks,
                          strproduit.pro_ann == unit[tripro.pro_ann] && strproduit.imm_art == unit[tripro.imm_art]);
    transaction.commit();
    return marked;
}

Criterion returnable(const Criterion& selection) {
    return selection && strproduit.tes_vte == state::InStock && strproduit.num_dep != MainDepot &&
           strproduit.num_dep != ReturnedDepot;
}

qint64 returnToMainDepot(Database molven, const CompanyRules& rules, const Criterion& selection) {
    const Criterion away = returnable(selection);
    const QList<Assignment> home = units::placedIn(molven, rules, MainDepot) +
                                   QList<Assignment>{{strproduit.clt_dep, {}}, {strproduit.nom_dep, {}}};
    const QList<Assignment> stayOver{{strproduit.nbl_dep, {}}, {strproduit.num_vte, {}}, {strproduit.dat_vte, {}},
                                     {strproduit.tri_vte, {}}, {strproduit.clt_vte, {}}, {strproduit.ref_vte, {}}};
    Transaction transaction(molven.workspace(), QStringLiteral("Retour au dépôt principal"));
    const qint64 transferred = molven.update(strproduit, home + stayOver, away && strproduit.nbl_dep != TakenBack);
    const qint64 takenBack = molven.update(strproduit, home, away && strproduit.nbl_dep == TakenBack);
    transaction.commit();
    return transferred + takenBack;
}

} // namespace molven::unit_listing

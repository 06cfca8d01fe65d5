#include "stock/unit_listing.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/units.h"

namespace molven::unit_listing {

namespace {

using Match = UnitCriterion::Match;

UnitCriterion box(const char* control, const char* caption, const Field& field, Match match, const char* words,
                  int digits = 0, const QString& list = {}, const char* unknown = "") {
    return {
        QString::fromLatin1(control), QString::fromUtf8(caption), field, match, QString::fromUtf8(words), digits, list,
        QString::fromUtf8(unknown)};
}

UnitOption option(const char* caption, const Criterion& criterion = {}, const char* words = "") {
    return {QString::fromUtf8(caption), criterion, QString::fromUtf8(words)};
}

} // namespace

const QList<UnitCriterion>& criteria() {
    const auto& u = strproduit;
    static const QList<UnitCriterion> all{
        box("DEBIMM", "Immat. du :", u.imm_art, Match::AtLeast, "immat >= '", 8),
        box("FINIMM", "au :", u.imm_art, Match::AtMost, "immat <= '", 8),
        box("REF1", "Référence :", u.ref_art, Match::Equal, "référence = '"),
        box("REFD", "Référence de :", u.ref_art, Match::AtLeast, "référence >= '"),
        box("REFF", "à :", u.ref_art, Match::AtMost, "référence <= '"),
        box("txtnum_liv", "N° BL fournisseur :", u.num_liv, Match::Equal, "n° BL = '"),
        box("txtdat_liv", "Date réception :", u.dat_liv, Match::Date, "date liv = '"),
        box("txtdat_dlv", "Livraison prévue :", u.dat_dlv, Match::Date, "date liv prévue = '"),
        box("txtfou_cde", "Fournisseur :", u.fou_cde, Match::Equal, "fournisseur = '", 6, QStringLiteral("fournisseur"),
            "Ce fournisseur |n'existe pas"),
        box("txtnum_dep", "Dépôt :", u.num_dep, Match::Equal, "dépôt = '", 0, list::Depot, "Ce dépôt |n'existe pas"),
        box("txtnum_vte", "N° document :", u.num_vte, Match::Equal, "Document = '", 6),
        box("txtlot_art", "N° lot :", u.lot_art, Match::Equal, "N° Lot = '"),
        box("txtino_cer", "Certificat 1 / tissu :", u.ino_cer, Match::Equal, "C.Mat.1 = '"),
        box("txtpee_cer", "Certificat 2 / donneur :", u.pee_cer, Match::Equal, "C.Mat.2 = '"),
        box("txtreg_art", "Registre / prélvt :", u.reg_art, Match::Equal, "Regroupement = '"),
        box("txtnof_art", "Ordre fabrication :", u.nof_art, Match::Equal, "N° OF = '"),
        box("txtfab_cau", "Cause :", u.fab_cau, Match::Equal, "Cause = '"),
        box("txtnum_ste", "N° stérilisation :", u.num_ste, Match::Equal, "N° sté : = '"),
        box("txtdat_per", "Péremption jusqu'à :", u.dat_per, Match::ExpiresBy, "Date Pér. <= '"),
        box("txtpro_tip", "Code TIPS :", u.pro_tip, Match::Equal, " tips = '"),
        box("txtpro_lpp", "Code LPP :", u.pro_lpp, Match::Equal, " lpp = '"),
        box("txtdat_cre", "Saisie le :", u.dat_cre, Match::Date, "Saisie le '"),
        box("txtdat_rel", "Relance le :", u.dat_rel, Match::Date, "Relance le '"),
        box("txtdat_sel", "Sélection le :", u.dat_sel, Match::Date, "Séléctionne le '"),
        box("txtind_ste", "Indice :", u.ind_ste, Match::Equal, "Indice '"),
        box("txtfam_dep", "Famille dépôt :", u.fam_dep, Match::Equal, "Fam Depot '", 0, list::DepotFamily,
            "Cette famille |n'existe pas"),
        box("txtnum_conf", "N° conformité :", u.num_conf, Match::Equal, "N° Conf '"),
        box("txtreg_pat", "Patient :", u.reg_pat, Match::Beginning, "Patient '"),
        box("txtannee", "Année document :", u.tri_vte, Match::Year, "Année '")};
    return all;
}

const QList<UnitChoice>& choices() {
    const auto& u = strproduit;
    static const QList<UnitChoice> all{
        {QStringLiteral("Cmbetat"),
         QStringLiteral("Etat :"),
         {option("Tous"), option("Vendus", u.tes_vte == QStringLiteral("O"), "vendu = 'O'"),
          option("En stock", u.tes_vte == QStringLiteral("N"), "vendu = 'N'"),
          option("Livrés", u.tes_vte == QStringLiteral("L"), "vendu = 'L'"),
          option("Transférés", u.tes_vte == QStringLiteral("N") && u.clt_vte != QString(), "vendu = 'N'")}},
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
    return all;
}

QStringList orders() {
    return {QStringLiteral("Référence"), QStringLiteral("Immatriculation"), QStringLiteral("Client"),
            QStringLiteral("N° série fournisseur")};
}

namespace {

QString valueOf(const UnitCriterion& criterion, const UnitSelection& selection) {
    const QString typed = selection.values.value(criterion.control).trimmed();
    if (isEmptyDate(typed)) return {};
    return criterion.digits > 0 ? padded(typed, criterion.digits) : typed;
}

void requireKnown(Database molven, const UnitCriterion& criterion, const QString& value) {
    if (criterion.list.isEmpty()) return;
    const bool known = criterion.list == u"fournisseur" ? parties::findSupplier(molven, value).has_value()
                                                        : parameters::find(molven, criterion.list, value).has_value();
    if (!known && value != ReturnedDepot)
        throw Refusal(criterion.unknown.section(u'|', 0, 0) + value + u' ' + criterion.unknown.section(u'|', 1),
                      criterion.control);
}

Criterion matched(const UnitCriterion& criterion, const QString& value) {
    switch (criterion.match) {
    case Match::AtLeast:
        return criterion.field >= value;
    case Match::AtMost:
        return criterion.field <= value;
    case Match::Beginning:
        return startsWith(criterion.field, value);
    case Match::Year:
        return startsWith(criterion.field, value.left(4));
    case Match::ExpiresBy:
        if (!isMonthYear(value)) throw Refusal(QStringLiteral("date péremption incorrecte"), criterion.control);
        return criterion.field != QString() && monthKey(criterion.field) <= value.right(4) + value.left(2);
    case Match::Date:
        if (!dateFromText(value).isValid()) throw Refusal(QStringLiteral("date invalide"), criterion.control);
        return criterion.field == (criterion.field.size == 8 ? sortKey(value) : value);
    case Match::Equal:
        break;
    }
    return criterion.field == value;
}

} // namespace

Criterion criterion(Database molven, const UnitSelection& selection) {
    Criterion all;
    for (const UnitCriterion& one : criteria()) {
        const QString value = valueOf(one, selection);
        if (value.isEmpty()) continue;
        requireKnown(molven, one, value);
        all = all && matched(one, value);
    }
    for (const UnitChoice& choice : choices())
        all = all && choice.options.value(selection.choices.value(choice.control)).criterion;
    if (selection.withoutReminded) all = all && strproduit.dat_rel == QStringLiteral("00000000");
    return all;
}

Order order(const UnitSelection& selection) {
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

QString words(const UnitSelection& selection) {
    QStringList parts;
    for (const UnitCriterion& one : criteria())
        if (const QString value = valueOf(one, selection); !value.isEmpty()) parts.append(one.words + value + u'\'');
    for (const UnitChoice& choice : choices())
        if (const QString text = choice.options.value(selection.choices.value(choice.control)).words; !text.isEmpty())
            parts.append(text);
    return parts.join(QStringLiteral(" et "));
}

qint64 markSelected(Database molven, const Criterion& units, bool isReminder) {
    const QString today = sortKey(Clock::today());
    QList<Assignment> marks{{strproduit.dat_sel, today}};
    if (isReminder) marks.append({strproduit.dat_rel, today});
    return molven.update(strproduit, marks, units);
}

qint64 returnToMainDepot(Database molven, const Criterion& units) {
    return molven.update(
        strproduit,
        {{strproduit.num_dep, MainDepot}, {strproduit.clt_dep, {}}, {strproduit.nom_dep, {}}, {strproduit.nbl_dep, {}}},
        units && strproduit.tes_vte == state::InStock);
}

} // namespace molven::unit_listing

#include "screens/sales/document_layout.h"

#include "stock/immatriculation.h"

namespace molven {

namespace {

using Part = DocumentLayout::Part;

const QString Money = QStringLiteral("#####0.00");
const QString SmallMoney = QStringLiteral("####0.00");
const QString Percent = QStringLiteral("#0.00");

FieldBox box(const Field& field, const char* caption, const char* control, int characters = 0) {
    return {.field = &field,
            .caption = QString::fromUtf8(caption),
            .control = QString::fromLatin1(control),
            .characters = characters};
}

FieldBox dateBox(const Field& field, const char* caption, const char* control) {
    FieldBox made = box(field, caption, control);
    made.isDate = true;
    return made;
}

/// A box with the list behind it.
FieldBox listed(const Field& field, const char* caption, const char* control, const char* button) {
    FieldBox made = box(field, caption, control);
    made.listButton = QString::fromLatin1(button);
    return made;
}

FieldBox amount(const Field& field, const char* caption, const char* control, int characters, const QString& pattern) {
    FieldBox made = box(field, caption, control, characters);
    made.pattern = pattern;
    return made;
}

FieldBox shown(FieldBox made) {
    made.readOnly = true;
    return made;
}

GridColumn column(const Field& field, const char* title, int width, const QString& pattern = {}) {
    return {&field, QString::fromUtf8(title), width, pattern};
}

/// A scan too long is refused as it is, never cut to the number of another unit.
FieldBox unitBox(const DocumentLines& l) {
    FieldBox made = listed(l.fac_imm, "Immatriculation :", "txtimm", "Cmdimm");
    made.longest = Immatriculation::LongestScan;
    return made;
}

QList<FieldBox> saleHeader(const DocumentHeaders& h, const FieldBox& depot) {
    return {box(h.fac_no, "N° :", "txtno"),
            listed(h.fac_clt, "Client :", "txtclt", "cmdclt"),
            box(h.fac_nom, "Nom :", "Txtnom", 26),
            dateBox(h.fac_datf, "Date :", "Mskdatf"),
            box(h.fac_refc, "Réf. commande :", "txtrefc", 20),
            dateBox(h.fac_datc, "Date commande :", "Mskdatc"),
            box(h.fac_pat, "Patient :", "txtpat", 24),
            box(h.fac_btr, "Bon :", "txtbtr", 20),
            listed(h.fac_chr, "Chirurgien :", "txtchr", "cmdchr"),
            listed(h.fac_trs, "Transport :", "txttrs", "Cmdtrs"),
            listed(h.fac_mon, "Monnaie :", "Txtmon", "Cmdmon"),
            shown(box(h.fac_eur, "Euro :", "Txteur", 8)),
            depot,
            shown(box(h.fac_rep, "Représentant :", "txtrep", 4))};
}

QList<FieldBox> saleLine(const DocumentLines& l, bool hasUnits) {
    QList<FieldBox> boxes{box(l.fac_lg, "Ligne :", "txtlg"), listed(l.fac_ref, "Référence :", "txtref", "Cmdref")};
    if (hasUnits) boxes.append(unitBox(l));
    boxes.append(box(l.fac_li1, "Désignation :", "txtli1"));
    if (hasUnits) boxes.append(shown(box(l.fac_id1, "Identification :", "txtid1", 40)));
    boxes += QList<FieldBox>{amount(l.fac_qte, "Quantité :", "txtqte", 8, SmallMoney),
                             amount(l.fac_px, "Prix unitaire :", "txtpx", 10, Money),
                             amount(l.fac_remx, "Remise % :", "txtremx", 6, Percent),
                             shown(amount(l.fac_pv, "Prix net :", "Txtpv", 10, SmallMoney)),
                             shown(amount(l.fac_pa, "Prix d'achat :", "txtpa", 10, Money)),
                             shown(box(l.fac_tva, "Code TVA :", "Txttva")),
                             shown(box(l.fac_tar, "Base H/T :", "txttar", 4)),
                             listed(l.fac_tip, "Remboursement :", "txttip", "Cmdtip"),
                             shown(box(l.fac_nho, "Homologation :", "txtnho", 16))};
    if (hasUnits) boxes.append(shown(box(l.fac_dpr, "Péremption :", "txtdpr", 8)));
    return boxes;
}

QList<GridColumn> saleLines(const DocumentLines& l, bool hasUnits) {
    QList<GridColumn> columns{column(l.fac_lg, "Ligne", 50)};
    if (hasUnits) columns.append(column(l.fac_imm, "Immatriculation", 115));
    columns += QList<GridColumn>{column(l.fac_ref, "Référence", 110), column(l.fac_li1, "Désignation", 330)};
    if (hasUnits) columns.append(column(l.fac_id1, "Identification", 170));
    columns += QList<GridColumn>{column(l.fac_qte, "Qté", 50), column(l.fac_px, "Prix", 80, Money),
                                 column(l.fac_remx, "Rem. %", 60, Percent), column(l.fac_pv, "Prix net", 80, Money),
                                 column(l.fac_ht, "Total HT", 90, Money)};
    if (hasUnits) columns.append(column(l.fac_nbl, "BL", 70));
    return columns;
}

DocumentLayout saleLayout(const DocumentKind& kind) {
    const DocumentHeaders& h = kind.headers;
    const FieldBox depot = kind.isCredit ? listed(h.fac_dep, "Dépôt retour :", "txtavodep", "Cmdavodep")
                                         : listed(h.fac_dep, "Dépôt :", "txtdep", "Cmddep");
    QList<Part> parts{Part::Deletion, Part::LineChange, Part::Footer, Part::Printing};
    if (kind.hasUnits) parts.append(Part::Scans);
    if (kind.isInvoice() && kind.hasUnits) parts.append(Part::Integration);
    return {.screen = QStringLiteral("T_gestion"),
            .parts = parts,
            .header = saleHeader(h, depot),
            .required = {&h.fac_clt},
            .depotWords = kind.isCredit ? QStringLiteral("Dépôt Retour marchandises : ") : QString(),
            .line = saleLine(kind.lines, kind.hasUnits),
            .lines = saleLines(kind.lines, kind.hasUnits),
            .documents = {column(h.fac_no, "N°", 80), column(h.fac_datf, "Date", 100),
                          column(h.fac_pat, "Patient", 260), column(h.fac_ht, "Total HT", 100, Money),
                          column(h.fac_cpt, "État", 50)},
            .askFirstUnit = QStringLiteral("Saisir la 1ere immat. "),
            .confirmRange = QStringLiteral("Confirmation des %1 immatriculations sélectionnées ? ")};
}

DocumentLayout proformaLayout(const DocumentKind& kind) {
    DocumentLayout layout = saleLayout(kind);
    layout.screen = QStringLiteral("T_gespro");
    layout.parts.append(Part::Delivery);
    layout.header.append(shown(box(kind.headers.fac_blv, "Bon de livraison :", "txtblv", 8)));
    return layout;
}

DocumentLayout secondBookLayout(const DocumentKind& kind) {
    DocumentLayout layout = saleLayout(kind);
    layout.screen = QStringLiteral("T_ostrane");
    if (!kind.isCredit) layout.depotWords = QStringLiteral("DEPOT INITIAL : ");
    layout.lineMissing = QStringLiteral("Cette ligne existe pas");
    return layout;
}

DocumentLayout transferLayout() {
    const TransferHeaders& h = strbtre;
    const DocumentLines& l = strbtrl;
    return {
        .screen = QStringLiteral("T_btrges"),
        .parts = {Part::Scans, Part::Renewal, Part::Printing},
        .header = {box(h.fac_no, "N° :", "txtno"), listed(h.fac_clt, "Client :", "txtclt", "cmdclt"),
                   box(h.fac_nom, "Nom :", "Txtnom", 26), dateBox(h.fac_datf, "Date :", "Mskdatf"),
                   listed(h.fac_depd, "Dépôt de sortie :", "txtdepd", "Cmddepd"),
                   listed(h.fac_depa, "Dépôt d'arrivée :", "txtdepa", "Cmddepa"),
                   box(h.fac_pat, "Patient :", "txtpat", 24), box(h.fac_btr, "Bon :", "txtbtr", 20),
                   listed(h.fac_trs, "Transport :", "txttrs", "Cmdtrs"), shown(box(h.fac_eta, "État :", "txteta", 8))},
        .required = {&h.fac_clt, &h.fac_depd, &h.fac_depa},
        .line = {box(l.fac_lg, "Ligne :", "txtlg"), listed(l.fac_ref, "Référence :", "txtref", "Cmdref"), unitBox(l),
                 box(l.fac_li1, "Désignation :", "txtli1"), shown(box(l.fac_id1, "Identification :", "txtid1", 40)),
                 shown(box(l.fac_id2, "Complément :", "txtid2", 40)),
                 shown(box(l.fac_ste, "Lot de stérilisation :", "txtste", 16)),
                 shown(box(l.fac_dpr, "Péremption :", "txtdpr", 8)),
                 shown(box(l.fac_fimm, "N° de série fournisseur :", "txtfimm", 22))},
        .lines = {column(l.fac_lg, "Ligne", 50), column(l.fac_imm, "Immatriculation", 115),
                  column(l.fac_ref, "Référence", 110), column(l.fac_li1, "Désignation", 350),
                  column(l.fac_id1, "Identification", 190), column(l.fac_dpr, "Péremption", 90),
                  column(l.fac_ste, "Stérilisation", 100), column(l.fac_fimm, "N° de série", 130)},
        .documents = {column(h.fac_no, "N°", 80), column(h.fac_datf, "Date", 100), column(h.fac_depd, "De", 60),
                      column(h.fac_depa, "À", 60), column(h.fac_pat, "Patient", 260), column(h.fac_eta, "État", 90)},
        .askFirstUnit = QStringLiteral("Saisir la 1ere immat."),
        .confirmRange = QStringLiteral("Confirmation des %1 immatriculations sélectionnées ?")};
}

} // namespace

DocumentLayout layoutOf(const DocumentKind& kind) {
    if (kind.isTransfer()) return transferLayout();
    if (kind.isProforma()) return proformaLayout(kind);
    return kind.isSecondBook() ? secondBookLayout(kind) : saleLayout(kind);
}

} // namespace molven

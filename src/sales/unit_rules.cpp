#include "sales/unit_rules.h"

#include "data/dates.h"
#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "stock/units.h"

namespace molven::unit_rules {

namespace {

const QString SecondaryDepot = QStringLiteral("261");

QString clientDepot(SalesBook& book, const Record& header) {
    const auto client = parties::findClient(book.molven, header[book.kind().headers.fac_clt]);
    return client ? documents::depotOf(*client) : MainDepot;
}

/// The depots a document may take units from, and what is said of a unit elsewhere.
struct Source {
    QStringList depots;
    QString refusal;
};

Source sourceOf(SalesBook& book, const Record& header) {
    const QString own = clientDepot(book, header);
    if (book.kind().isCredit) return {{own}, QStringLiteral("Cette immatriculation n'est pas dans le depot client")};
    if (!book.kind().isDelivery() && book.rules().sellsFromDepot261() &&
        header[book.kind().headers.fac_dep] == SecondaryDepot)
        return {{SecondaryDepot}, QStringLiteral("Cette immatriculation n'est pas au depot 261")};
    if (book.kind().isDelivery() && !book.deliversFromClientDepot())
        return {{MainDepot}, QStringLiteral("Cette immatriculation n'est pas dans le depot 001")};
    return {{MainDepot, own},
            QStringLiteral("Cette immatriculation n'est ni dans le depot 001, ni dans celui du client")};
}

[[noreturn]] void refuse(const QString& message) { throw Refusal(message, strlivl.fac_imm.name); }

} // namespace

Record check(SalesBook& book, const Record& header, const QString& typed) {
    const auto found = units::find(book.molven, Immatriculation::fromText(typed));
    if (!found) refuse(QStringLiteral("Immatriculation inconnue"));
    const Record& unit = *found;
    const QString unitState = unit[strproduit.tes_vte];
    if (unitState == state::Delivered) refuse(QStringLiteral("Cette immatriculation a été livrée"));
    if (book.kind().isCredit) {
        if (unitState != state::Sold) refuse(QStringLiteral("Cette immatriculation n'a pas été vendue"));
    } else if (unitState == state::Sold) {
        refuse(QStringLiteral("Cette immatriculation a été vendue"));
    }
    const Source source = sourceOf(book, header);
    if (unitState == state::InSet || !source.depots.contains(unit[strproduit.num_dep])) refuse(source.refusal);
    return *found;
}

Criterion available(SalesBook& book, const Record& header, const QString& reference) {
    const QString unitState = book.kind().isCredit ? state::Sold : state::InStock;
    return strproduit.ref_art == reference && strproduit.tes_vte == unitState &&
           isOneOf(strproduit.num_dep, sourceOf(book, header).depots);
}

Recordset candidates(SalesBook& book, const Record& header, const QString& reference, const QString& first,
                     const QString& last) {
    const Criterion range = strproduit.imm_art >= first && strproduit.imm_art <= last;
    Recordset units = book.molven.select(strproduit, available(book, header, reference) && range,
                                         {strproduit.pro_ann, strproduit.imm_art});
    if (units.isEmpty())
        throw Refusal(QStringLiteral("Aucune immatriculation disponible dans le dépôt"), strlivl.fac_imm.name);
    return units;
}

namespace {

QList<Assignment> saleOf(SalesBook& book, const Record& header, const Record& line) {
    const DocumentHeaders& headers = book.kind().headers;
    const DocumentLines& lines = book.kind().lines;
    const QString patient = header[headers.fac_pat];
    return {{strproduit.pro_vte, line[lines.fac_pv].toString()}, {strproduit.pro_lpp, line[lines.fac_tip]},
            {strproduit.pro_mon, header[headers.fac_mon]},       {strproduit.reg_pat, patient},
            {strproduit.reg_clt, header[headers.fac_clt]},       {strproduit.reg_dat, header[headers.fac_datf]}};
}

QList<Assignment> movedBy(SalesBook& book, const Record& header) {
    const DocumentHeaders& headers = book.kind().headers;
    const bool credit = book.kind().isCredit;
    const QString depot = header[headers.fac_dep];
    QList<Assignment> moved{{strproduit.tes_vte, book.kind().unitState},
                            {strproduit.num_dep, depot},
                            {strproduit.nbl_dep, credit ? TakenBack : QString(header[headers.fac_no])},
                            {strproduit.clt_dep, header[headers.fac_clt]},
                            {strproduit.nom_dep, header[headers.fac_nom].left(10)},
                            {strproduit.num_vte, header[headers.fac_no]},
                            {strproduit.dat_vte, header[headers.fac_datf]},
                            {strproduit.tri_vte, header[headers.tri_datf]},
                            {strproduit.clt_vte, header[headers.fac_clt]},
                            {strproduit.ref_vte, header[headers.fac_pat].left(10)}};
    if (book.rules().hasDepotFamilies())
        moved.append({strproduit.fam_dep, parameters::depotFamily(book.molven, depot)});
    return moved;
}

/// Quantity in stock counts the units not invoiced: only a sale and its undoing move it.
Decimal stockMoved(const DocumentKind& kind) {
    if (kind.isCredit) return 1;
    return kind.unitState == state::Sold ? -1 : 0;
}

QList<Assignment> unsold() {
    return {{strproduit.tes_vte, state::InStock},
            {strproduit.num_dep, MainDepot},
            {strproduit.clt_dep, {}},
            {strproduit.nom_dep, {}},
            {strproduit.nbl_dep, {}},
            {strproduit.num_vte, documents::NotInvoiced},
            {strproduit.clt_vte, {}},
            {strproduit.dat_vte, {}},
            {strproduit.tri_vte, {}},
            {strproduit.ref_vte, {}},
            {strproduit.reg_pat, {}},
            {strproduit.reg_clt, {}},
            {strproduit.reg_dat, {}}};
}

/// The unit's latest sale before a credit note, told from the lines kept of it.
QList<Assignment> soldBefore(SalesBook& book, const Record& header, const QString& unit) {
    const DocumentHeaders& headers = book.kind().headers;
    const DocumentLines& lines = book.kind().lines;
    const auto sale = book.vente.find(
        lines, lines.fac_imm == unit && lines.fac_no != header[headers.fac_no] && lines.fac_no < header[headers.fac_no],
        Order::descending(lines.fac_no));
    const auto invoice = sale ? documents::find(book, std::as_const(*sale)[lines.fac_no]) : std::nullopt;
    if (!invoice) return unsold();
    const Record& sold = *invoice;
    return {{strproduit.tes_vte, state::Sold},
            {strproduit.num_dep, clientDepot(book, header)},
            {strproduit.nbl_dep, sold[headers.fac_no]},
            {strproduit.num_vte, sold[headers.fac_no]},
            {strproduit.dat_vte, sold[headers.fac_datf]},
            {strproduit.tri_vte, sold[headers.tri_datf]},
            {strproduit.ref_vte, sold[headers.fac_pat].left(10)}};
}

} // namespace

void apply(SalesBook& book, const Record& header, const Record& line) {
    const DocumentLines& lines = book.kind().lines;
    const Immatriculation unit = Immatriculation::fromText(line[lines.fac_imm]);
    QList<Assignment> values = movedBy(book, header);
    if (!book.kind().isCredit) values += saleOf(book, header, line);
    book.molven.update(strproduit, values, unit.criterion());
    if (const Decimal moved = stockMoved(book.kind()); !moved.isZero())
        articles::moveStock(book.molven, line[lines.fac_ref], moved);
}

void undo(SalesBook& book, const Record& header, const Record& line) {
    const DocumentLines& lines = book.kind().lines;
    const QString number = line[lines.fac_imm];
    const QList<Assignment> values = book.kind().isCredit ? soldBefore(book, header, number) : unsold();
    book.molven.update(strproduit, values, Immatriculation::fromText(number).criterion());
    const Decimal back = values.first().value == state::Sold ? Decimal(-1) : -stockMoved(book.kind());
    if (!back.isZero()) articles::moveStock(book.molven, line[lines.fac_ref], back);
}

} // namespace molven::unit_rules

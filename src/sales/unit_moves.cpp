#include "sales/unit_moves.h"

#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/transfer_notes.h"
#include "shell/other_folders.h"
#include "stock/units.h"

#include <algorithm>
#include <tuple>

namespace molven::unit_moves {

namespace {

const QString DeliveryReference = QStringLiteral("BL/");

const DocumentKind& delivery() { return documentKind(QStringLiteral("LIV")); }
const DocumentKind& invoicing() { return documentKind(QStringLiteral("FAC")); }
const DocumentKind& consignment() { return documentKind(QStringLiteral("CSG")); }

std::optional<Record> unitOf(SalesBook& book, const DocumentKind& kind, const Record& line) {
    return units::find(book.molven, Immatriculation::fromText(line[kind.lines.fac_imm]));
}

bool isSold(const Record& unit) { return unit[strproduit.tes_vte] == state::Sold; }

void place(SalesBook& book, Record& unit, const QString& depot) {
    unit[strproduit.num_dep] = depot;
    if (book.rules().hasDepotFamilies()) unit[strproduit.fam_dep] = parameters::depotFamily(book.molven, depot);
}

void setDocument(Record& unit, const DocumentKind& kind, const Record& header) {
    unit[strproduit.tes_vte] = kind.unitState;
    unit[strproduit.num_vte] = header[kind.headers.fac_no];
    unit[strproduit.dat_vte] = header[kind.headers.fac_datf];
    unit[strproduit.tri_vte] = header[kind.headers.tri_datf];
    unit[strproduit.nbl_dep] = kind.isCredit ? TakenBack : QString(header[kind.headers.fac_no]);
}

/// A transfer leaves its unit the client's name and the patient in full, a sale the beginning of them.
QString shortened(const DocumentKind& kind, const QString& text, const Field& field) {
    return text.left(kind.isTransfer() ? field.size : 10);
}

void setImplantation(Record& unit, const QString& patient, const QString& client, const QString& date) {
    unit[strproduit.reg_pat] = patient;
    unit[strproduit.reg_clt] = client;
    unit[strproduit.reg_dat] = date;
}

/// The line's net price on the price basis of its unit.
Decimal priceOf(SalesBook& book, const DocumentLines& table, const Record& line, const Record& unit) {
    const Decimal price = line[table.fac_pv];
    const bool withoutVat = line[table.fac_tar] == u"H";
    if (withoutVat == (unit[strproduit.pro_tar] == u"H")) return price;
    const Decimal factor = Decimal(1) + parameters::vatRate(book.molven, line[table.fac_tva]) / Decimal(100);
    return (withoutVat ? price * factor : price / factor).rounded(2);
}

void setSale(SalesBook& book, const DocumentLines& table, const Record& line, Record& unit) {
    unit[strproduit.pro_vte] = priceOf(book, table, line, unit);
    // A TIPS code on the line is no LPP code.
    const QString code = line[table.fac_tip];
    if (code != unit.value(strproduit.pro_tip)) unit[strproduit.pro_lpp] = code;
}

/// The unit as a document of a kind leaves it, in that depot.
void moveTo(SalesBook& book, const DocumentKind& kind, const Record& header, const Record& line, const QString& depot,
            Record& unit) {
    setDocument(unit, kind, header);
    place(book, unit, depot);
    unit[strproduit.clt_dep] = header[kind.headers.fac_clt];
    unit[strproduit.nom_dep] = shortened(kind, header[kind.headers.fac_nom], strproduit.nom_dep);
    unit[strproduit.clt_vte] = header[kind.headers.fac_clt];
    unit[strproduit.ref_vte] = shortened(kind, header[kind.headers.fac_pat], strproduit.ref_vte);
    if (kind.isTransfer()) return;
    if (kind.isCredit) {
        setImplantation(unit, {}, {}, {});
        return;
    }
    setSale(book, kind.lines, line, unit);
    unit[strproduit.pro_mon] = header[kind.headers.fac_mon];
    setImplantation(unit, header[kind.headers.fac_pat], header[kind.headers.fac_clt], header[kind.headers.fac_datf]);
}

/// The unit of a delivered line as its invoice leaves it: patient and depot stay those of the delivery.
void invoiceDelivered(const Record& invoice, const QString& note, Record& unit) {
    setDocument(unit, invoicing(), invoice);
    unit[strproduit.ref_vte] = DeliveryReference + note;
}

void makeUnsold(SalesBook& book, Record& unit, const QString& depot) {
    unit[strproduit.tes_vte] = state::InStock;
    place(book, unit, depot);
    for (const Text* emptied :
         {&strproduit.clt_dep, &strproduit.nbl_dep, &strproduit.clt_vte, &strproduit.dat_vte, &strproduit.tri_vte})
        unit[*emptied] = QString();
    unit[strproduit.nom_dep] = QString();
    unit[strproduit.ref_vte] = QString();
    unit[strproduit.num_vte] = documents::NotInvoiced;
    setImplantation(unit, {}, {}, {});
}

/// The delivery note of a number, in the first of the files that has it.
std::optional<Record> noteOf(const QList<Database>& files, const QString& number) {
    if (number.isEmpty()) return std::nullopt;
    for (Database file : files)
        if (const auto note = file.find(strlive, strlive.fac_no == number, Order::descending(strlive.fac_aa)))
            return note;
    return std::nullopt;
}

/// A line that moved a unit, with its document.
struct Move {
    const DocumentKind* kind;
    Record header;
    Record line;
    std::optional<Record> note = {}; ///< the delivery note that an invoice's line came from
    bool isOurs = true;              ///< of this folder, whose numbers follow each other
};

using Kinds = QList<const DocumentKind*>;

/// Invoices and credit notes share a table: the sign tells their lines apart.
Criterion linesOf(const DocumentKind& kind, const QString& unit) {
    const DocumentLines& lines = kind.lines;
    const Criterion ofUnit = lines.fac_imm == unit;
    if (!kind.isPriced) return ofUnit;
    return ofUnit && (kind.isCredit ? lines.fac_qte < QStringLiteral("0") : lines.fac_qte > QStringLiteral("0"));
}

/// The moves of a unit by documents of these kinds, in one file.
QList<Move> movesIn(Database file, Database archive, const QString& unit, const Kinds& kinds, bool isOurs) {
    QList<Move> found;
    for (const DocumentKind* kind : kinds) {
        const DocumentLines& lines = kind->lines;
        const DocumentHeaders& headers = kind->headers;
        for (const Record& line : file.select(lines, linesOf(*kind, unit))) {
            const auto header =
                file.find(headers, headers.fac_no == line[lines.fac_no] && headers.fac_aa == line[lines.fac_aa]);
            const QString note = kind->isInvoice() ? line[lines.fac_nbl] : QString();
            if (header) found.append({kind, *header, line, noteOf({file, archive}, note), isOurs});
        }
    }
    return found;
}

/// Every such move: current, archived and in the dossier's other folders.
QList<Move> movesOf(SalesBook& book, const QString& unit, const Kinds& kinds) {
    QList<Move> found =
        movesIn(book.vente, book.historic, unit, kinds, true) + movesIn(book.historic, book.vente, unit, kinds, true);
    const OtherFolders others(book.session());
    for (const Database& file : others.files()) found += movesIn(file, book.historic, unit, kinds, false);
    return found;
}

QList<Move> salesOf(SalesBook& book, const QString& unit) {
    return movesOf(book, unit, {&invoicing(), &consignment()});
}

/// The move of the highest rank.
template <class Rank>
std::optional<Move> highest(const QList<Move>& moves, const Rank& rank) {
    const auto found = std::max_element(moves.begin(), moves.end(),
                                        [&rank](const Move& a, const Move& b) { return rank(a) < rank(b); });
    return found == moves.end() ? std::nullopt : std::optional(*found);
}

/// The sale that a line of a credit note took its unit back from. A line of old does not name it: of the sales to that
/// client the latest, of two on one day that of the book's own family.
std::optional<Move> saleTakenBack(SalesBook& book, const Record& credit, const Record& creditLine) {
    return highest(salesOf(book, creditLine[book.kind().lines.fac_imm]), [&](const Move& sale) {
        const DocumentHeaders& headers = sale.kind->headers;
        return std::tuple(sale.header[headers.fac_clt] == credit[book.kind().headers.fac_clt],
                          sale.header[headers.fac_no] == creditLine[book.kind().lines.fac_ori],
                          sale.header[headers.tri_datf], &headers == &book.kind().headers, sale.header[headers.fac_no]);
    });
}

QString depotOf(SalesBook& book, const Move& move) {
    if (move.kind->isTransfer()) return move.header[strbtre.fac_depa];
    const QString depot = move.line[move.kind->lines.fac_dep];
    if (!depot.isEmpty()) return depot;
    const auto client = parties::findClient(book.molven, move.header[move.kind->headers.fac_clt]);
    return client ? documents::depotOf(*client) : MainDepot;
}

/// Puts the unit back as a sale had left it.
void sellAgain(SalesBook& book, const Move& sale, Record& unit) {
    moveTo(book, sale.note ? delivery() : *sale.kind, sale.note.value_or(sale.header), sale.line, depotOf(book, sale),
           unit);
    if (sale.note) invoiceDelivered(sale.header, sale.note->value(strlive.fac_no), unit);
}

/// Whatever sold a unit that has moved on since, or took it back, is part of its story: without it the later documents
/// would have sold it twice, or taken back what was never sold.
void requireNotSale(const DocumentKind& kind, const Record& unit) {
    if (kind.isDelivery()) return;
    throw Refusal(
        QStringLiteral("L'immatriculation %1 a été reprise ou revendue depuis (document %2) : sa ligne ne peut "
                       "être supprimée")
            .arg(unit[strproduit.imm_art], unit[strproduit.num_vte]),
        kind.lines.fac_imm.name);
}

/// Whether the unit was sold again, by a sale that stands, after a credit note had taken that sale back.
bool isFollowed(SalesBook& book, const Record& credit, const Move& takenBack) {
    const DocumentHeaders& table = book.kind().headers;
    const QList<Move> sales = salesOf(book, takenBack.line[takenBack.kind->lines.fac_imm]);
    return std::any_of(sales.begin(), sales.end(), [&](const Move& sale) {
        const DocumentHeaders& headers = sale.kind->headers;
        if (sale.header == takenBack.header) return false;
        return sale.isOurs && &headers == &table ? sale.header[headers.fac_no] > credit[table.fac_no]
                                                 : sale.header[headers.tri_datf] > credit[table.tri_datf];
    });
}

/// Another folder's document may bear this one's number, client and day: the unit is its, once a credit note of this
/// folder had taken it back from this one.
bool isTakenBackHere(SalesBook& book, const Record& header, const Record& line) {
    if (book.kind().isCredit || book.kind().isDelivery() || OtherFolders(book.session()).files().isEmpty())
        return false;
    qint64 credits = 0;
    for (Database file : {book.vente, book.historic})
        for (const DocumentLines* lines : {&strfacl, &strcsgl})
            credits += file.count(*lines, lines->fac_imm == QString(line[book.kind().lines.fac_imm]) &&
                                              lines->fac_ori == QString(header[book.kind().headers.fac_no]));
    return credits > 0;
}

/// The move that left a unit in stock where the note found it: the latest but the note's own, when it was into that
/// depot; of two on one day such a one, then one by a transfer.
std::optional<Move> moveBefore(SalesBook& book, const Record& note, const QString& unit) {
    const QString from = note[strbtre.fac_depd];
    QList<Move> moves =
        movesOf(book, unit, {&book.kind(), &documentKind(QStringLiteral("AVO")), &documentKind(QStringLiteral("AVG"))});
    moves.removeIf([&note](const Move& move) { return move.header == note; });
    const auto latest = highest(moves, [&](const Move& move) {
        const DocumentHeaders& headers = move.kind->headers;
        return std::tuple(move.header[headers.tri_datf], depotOf(book, move) == from, move.kind->isTransfer(),
                          move.header[headers.fac_no]);
    });
    return latest && depotOf(book, *latest) == from ? latest : std::nullopt;
}

bool isArchived(SalesBook& book, const Immatriculation& unit) {
    const OtherFolders others(book.session());
    const QList<Database> archives = QList<Database>{book.historic} + others.archives();
    return std::any_of(archives.begin(), archives.end(),
                       [&unit](const Database& archive) { return units::find(archive, unit).has_value(); });
}

/// Undoes a transfer: the unit lies in the depot of departure again, as the document had left it that moved it there.
void takeBack(SalesBook& book, const Record& note, const Record& unit) {
    const QString number = unit[strproduit.imm_art], from = note[strbtre.fac_depd];
    if (transfer_notes::isOfSet(note))
        throw Refusal(QStringLiteral("Bon d'un ancillaire : ses lignes suivent l'ancillaire et ne peuvent être "
                                     "supprimées"),
                      strbtrl.fac_imm.name);
    if (!isHeldBy(book.kind(), note, unit))
        throw Refusal(QStringLiteral("L'immatriculation %1 a été déplacée depuis (document %2, dépôt %3) : sa ligne ne "
                                     "peut être supprimée")
                          .arg(number, unit[strproduit.num_vte], unit[strproduit.num_dep]),
                      strbtrl.fac_imm.name);
    Record moved = unit;
    if (const auto before = moveBefore(book, note, number))
        moveTo(book, *before->kind, before->header, before->line, from, moved);
    else
        makeUnsold(book, moved, from);
    store(book, {{unit, moved}});
}

/// Units of one century that get the same values.
struct Alike {
    QList<Assignment> values;
    QString century;
    QStringList numbers;
};

} // namespace

/// The quantity in stock counts the units not sold.
void store(SalesBook& book, const QList<Changed>& units) {
    QMap<QStringList, Alike> groups;
    QMap<QString, int> back; // units of an article that are no longer sold, or below zero have become so
    for (const auto& [before, after] : units) {
        const Immatriculation unit = Immatriculation::fromText(before[strproduit.imm_art]);
        Alike alike{{}, unit.century(), {}};
        QStringList said{alike.century};
        for (const Field* field : strproduit.fields()) {
            if (before.value(*field) == after.value(*field)) continue;
            alike.values.append({*field, after.value(*field)});
            said << field->name << after.value(*field);
        }
        if (alike.values.isEmpty()) continue;
        if (!groups.contains(said)) groups.insert(said, alike);
        groups[said].numbers.append(unit.number());
        if (isSold(before) != isSold(after)) back[before[strproduit.ref_art]] += isSold(after) ? -1 : 1;
    }
    for (const Alike& alike : std::as_const(groups))
        book.molven.update(strproduit, alike.values,
                           strproduit.pro_ann == alike.century && isOneOf(strproduit.imm_art, alike.numbers));
    for (auto article = back.begin(); article != back.end(); ++article)
        articles::moveStock(book.molven, article.key(), article.value());
}

bool isHeldBy(const DocumentKind& kind, const Record& header, const Record& unit) {
    const DocumentHeaders& table = kind.headers;
    return unit[strproduit.tes_vte] == kind.unitState && unit[strproduit.num_vte] == header[table.fac_no] &&
           unit[strproduit.clt_vte] == header[table.fac_clt] && unit[strproduit.dat_vte] == header[table.fac_datf] &&
           unit[strproduit.num_dep] != ReturnedDepot && (!kind.isCredit || unit[strproduit.nbl_dep] == TakenBack) &&
           (!kind.isTransfer() ||
            (unit[strproduit.nbl_dep] == header[table.fac_no] && unit[strproduit.num_dep] == header[strbtre.fac_depa]));
}

Record moved(SalesBook& book, const Record& header, const Record& line, const Record& unit) {
    Record after = unit;
    moveTo(book, book.kind(), header, line, header[book.kind().depot], after);
    return after;
}

void undo(SalesBook& book, const Record& header, const Record& line) {
    const QString number = line[book.kind().lines.fac_imm];
    const auto unit = unitOf(book, book.kind(), line);
    if (!unit && isArchived(book, Immatriculation::fromText(number)))
        throw Refusal(QStringLiteral("L'immatriculation %1 est archivée : sa ligne ne peut être supprimée").arg(number),
                      book.kind().lines.fac_imm.name);
    if (!unit) return;
    if (book.kind().isTransfer()) return takeBack(book, header, *unit);
    // A unit whose later sale was undone came home; its credit note still stands behind it.
    const bool isHome = book.kind().isCredit && unit->value(strproduit.tes_vte) == state::InStock &&
                        unit->value(strproduit.num_vte) == documents::NotInvoiced;
    if (!isHome && !isHeldBy(book.kind(), header, *unit)) return requireNotSale(book.kind(), *unit);
    const auto sale = book.kind().isCredit ? saleTakenBack(book, header, line) : std::nullopt;
    if ((isHome && sale && isFollowed(book, header, *sale)) || isTakenBackHere(book, header, line))
        requireNotSale(book.kind(), *unit);
    Record moved = *unit;
    if (sale)
        sellAgain(book, *sale, moved);
    else
        makeUnsold(book, moved, MainDepot);
    // What a user entered on the unit itself is on no document.
    const DocumentLines& lines = book.kind().lines;
    if (sale && !line[lines.fac_ori].isEmpty())
        setImplantation(moved, line[lines.fac_opat], line[lines.fac_oclt], line[lines.fac_odat]);
    store(book, {{*unit, moved}});
}

void sell(SalesBook& invoices, const Record& invoice, const Record& note, const QList<Record>& lines) {
    QStringList numbers;
    for (const Record& line : lines)
        if (const QString number = line[strlivl.fac_imm]; !number.isEmpty()) numbers.append(number);
    Transaction transaction(invoices.workspace, {}, document_locks::ofUnits(invoicing(), lines));
    units::foresee(invoices.molven, numbers);
    QList<Record> delivered;
    for (const QString& number : numbers) {
        const auto unit = units::find(invoices.molven, Immatriculation::fromText(number));
        if (!unit || !isHeldBy(delivery(), note, *unit) || delivered.contains(*unit))
            throw Refusal(
                QStringLiteral("L'immatriculation %1 n'est plus livrée par ce bon : supprimer sa ligne du bon")
                    .arg(number),
                QStringLiteral("txtchoix"));
        delivered.append(*unit);
    }
    QList<Changed> all;
    for (const Record& unit : delivered) {
        Record sold = unit;
        invoiceDelivered(invoice, note[strlive.fac_no], sold);
        all.append({unit, sold});
    }
    store(invoices, all);
    transaction.commit();
}

void deliverAgain(SalesBook& invoices, const Record& note, const Record& line) {
    const auto unit = unitOf(invoices, delivery(), line);
    if (!unit || unit->value(strproduit.tes_vte) != state::InStock || unit->value(strproduit.num_dep) != MainDepot ||
        unit->value(strproduit.num_vte) != documents::NotInvoiced)
        return;
    Record delivered = *unit;
    moveTo(invoices, delivery(), note, line, depotOf(invoices, {&delivery(), note, line}), delivered);
    store(invoices, {{*unit, delivered}});
}

void reprice(SalesBook& book, const Record& header, const Record& line) {
    const auto unit = unitOf(book, book.kind(), line);
    if (book.kind().isCredit || !unit || !isHeldBy(book.kind(), header, *unit)) return;
    Record priced = *unit;
    setSale(book, book.kind().lines, line, priced);
    store(book, {{*unit, priced}});
}

void correctPatient(SalesBook& book, const Record& before, const Record& after) {
    const DocumentHeaders& headers = book.kind().headers;
    const DocumentLines& lines = book.kind().lines;
    const QString former = before[headers.fac_pat], patient = after[headers.fac_pat];
    const QList<Record> all = documents::linesRead(book, after);
    Transaction transaction(book.workspace, {}, document_locks::ofUnits(book.kind(), all));
    QList<Changed> changed;
    for (const Record& line : all) {
        const auto unit = line[lines.fac_imm].isEmpty() ? std::nullopt : unitOf(book, book.kind(), line);
        if (!unit || !isHeldBy(book.kind(), after, *unit)) continue;
        const auto note = noteOf({book.vente, book.historic}, line[lines.fac_nbl]);
        const QString stands = unit->value(strproduit.reg_pat);
        const bool fromDocument =
            stands == former || (!patient.isEmpty() && note && stands == note->value(strlive.fac_pat));
        Record corrected = *unit;
        if (book.kind().unitState != state::InStock && fromDocument) corrected[strproduit.reg_pat] = patient;
        if (!note) corrected[strproduit.ref_vte] = shortened(book.kind(), patient, strproduit.ref_vte);
        changed.append({*unit, corrected});
    }
    store(book, changed);
    transaction.commit();
}

} // namespace molven::unit_moves

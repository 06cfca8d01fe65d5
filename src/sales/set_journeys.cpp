#include "sales/set_journeys.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/transfer_notes.h"
#include "sales/unit_rules.h"
#include "stock/gs1.h"
#include "stock/unit_locks.h"
#include "stock/units.h"

#include <QMap>

#include <functional>

namespace molven::set_journeys {

namespace {

Record unitOf(SalesBook& book, const Record& line) {
    const auto unit = units::find(book.molven, Immatriculation::fromText(line[strstock.stk_imm_art]));
    if (!unit || unit->value(strproduit.tes_vte) != state::InSet ||
        unit->value(strproduit.stk_anc_imm) != line[strstock.stk_anc_imm])
        throw Refusal(
            QStringLiteral("L'immatriculation %1 n'est plus dans cet ancillaire").arg(line[strstock.stk_imm_art]),
            strstock.stk_anc_imm.name);
    return *unit;
}

QList<Record> unitsOf(Files& files, const QString& serial) {
    QList<Record> found;
    const Reading together(files.notes.workspace);
    QStringList numbers;
    const Recordset lines = ancillary_sets::lines(files.ancillaire, serial);
    for (const Record& line : lines) numbers.append(line[strstock.stk_imm_art]);
    units::foresee(files.notes.molven, numbers);
    for (const Record& line : lines) found.append(unitOf(files.notes, line));
    return found;
}

/// Writes a transfer note of a set's units, which are moved apart.
Record writeNote(SalesBook& notes, const Record& header, const QList<Record>& units) {
    const Record note = documents::create(notes, header);
    document_lines::record(notes, note, document_lines::ofUnits(notes, note, units));
    return documents::current(notes, note);
}

void moveUnits(SalesBook& book, const QList<Record>& units, const QList<Assignment>& changes) {
    for (const Record& unit : units)
        book.molven.update(strproduit, changes, Immatriculation::fromText(unit[strproduit.imm_art]).criterion());
}

QMap<QString, qint64> countByArticle(const QList<Record>& units) {
    QMap<QString, qint64> counts;
    for (const Record& unit : units) ++counts[unit[strproduit.ref_art]];
    return counts;
}

void lowerStocks(SalesBook& book, const QList<Record>& units) {
    const auto counts = countByArticle(units);
    for (auto count = counts.begin(); count != counts.end(); ++count)
        articles::moveStock(book.molven, count.key(), -Decimal(static_cast<long long>(count.value())));
}

/// Counted anew: a recount made while the set was out has counted its units already.
void putStocks(SalesBook& book, const QList<Record>& units) {
    for (const QString& reference : countByArticle(units).keys()) units::putPresentStock(book.molven, reference);
}

/// Where the lines of a set say that it lies, since which note.
struct Place {
    QString depot, name, note, date, client;
};

void putPlace(Database ancillaire, const QString& serial, const Place& place) {
    ancillaire.update(strstock,
                      {{strstock.stk_num_dep, place.depot},
                       {strstock.stk_nom_dep, place.name},
                       {strstock.stk_tes_vte, state::InStock},
                       {strstock.stk_num_vte, place.note},
                       {strstock.stk_dat_vte, place.date},
                       {strstock.stk_tri_vte, sortKey(place.date)},
                       {strstock.stk_clt_vte, place.client}},
                      strstock.stk_anc_imm == serial);
}

} // namespace

QString returnLabel(const QString& serial) {
    return QStringLiteral("Retour %1 N° ").arg(transfer_notes::SetLabel) + serial;
}

void requireSendable(Files& files, const QString& serial) {
    const Record set = ancillary_sets::header(files.ancillaire, serial);
    ancillary_sets::requireAtHome(set);
    require(ancillary_sets::isComplete(files.ancillaire, set), "Impossible, cet ancillaire n'est pas complet",
            strstock.stk_anc_imm);
}

namespace {

Record sent(Files& files, const QString& serial, const QString& client, const QString& carrier) {
    SalesBook& notes = files.notes;
    requireSendable(files, serial);
    require(!client.trimmed().isEmpty(), "Veuillez choisir le client ", strbtre.fac_clt);
    Record header = documents::blank(notes, client);
    const QString code = header.value(strbtre.fac_clt), name = header.value(strbtre.fac_nom);
    header[strbtre.fac_depd] = SetDepot;
    header[strbtre.fac_depa] = code;
    header[strbtre.fac_trs] = carrier;
    header[strbtre.fac_btr] = transfer_notes::SetLabel;
    const QList<Record> units = unitsOf(files, serial);
    const Record note = writeNote(notes, header, units);
    const QString number = note[strbtre.fac_no], date = note[strbtre.fac_datf];
    QList<Assignment> moved = units::placedIn(notes.molven, notes.rules(), code);
    moved += {{strproduit.tes_vte, state::InSet},  {strproduit.clt_dep, code},   {strproduit.nom_dep, name},
              {strproduit.nbl_dep, number},        {strproduit.num_vte, number}, {strproduit.dat_vte, date},
              {strproduit.tri_vte, sortKey(date)}, {strproduit.clt_vte, code}};
    moveUnits(notes, units, moved);
    lowerStocks(notes, units);
    putPlace(files.ancillaire, serial, {code, name, number, date, code});
    return note;
}

/// A set with its units and their articles, as they are read now, and the documents of a journey.
Locks locksOf(Files& files, const QString& serial, const QStringList& documents) {
    QStringList names = documents, units;
    for (const Record& line : ancillary_sets::lines(files.ancillaire, serial)) {
        units.append(line[strstock.stk_imm_art]);
        names.append(unit_locks::article(line[strstock.stk_ref_art]));
    }
    return ancillary_sets::locksOf(serial, units).with(names);
}

/// A new document for a client.
QStringList newFor(SalesBook& book, const QString& client) {
    Record header(book.kind().headers);
    header[book.kind().headers.fac_clt] = padded(client, 6);
    return document_locks::ofNew(book, header).names();
}

} // namespace

Record send(Files& files, const QString& serial, const QString& client, const QString& carrier) {
    const Locks locks = locksOf(files, serial, newFor(files.notes, client));
    return Transaction::run(files.notes.workspace, QStringLiteral("Envoi d'un ancillaire"), locks, [&] {
        Transaction ofAll(files.notes.workspace, {}, locksOf(files, serial, {}));
        const Record note = sent(files, serial, client, carrier);
        ofAll.commit();
        return note;
    });
}

void requireAway(const Record& set) {
    require(set[strstock.stk_num_dep] != SetDepot, "Impossible, cet ancillaire est au dépôt principal",
            strstock.stk_anc_imm);
}

namespace {

/// Whether a supplier's code fits a unit in all that it says.
bool fits(const Gs1Code& code, const QString& reference, const Record& unit) {
    return unit[strproduit.ref_art] == reference &&
           (code.serial.isEmpty() || unit[strproduit.fou_imm] == code.serial) &&
           (code.lot.isEmpty() || unit[strproduit.lot_art] == code.lot) &&
           (!code.expiry.isValid() || unit[strproduit.dat_per] == monthText(code.expiry));
}

std::function<bool(const Record&)> named(Files& files, const QString& text) {
    if (gs1::isScan(text)) {
        const Gs1Code code = gs1::parse(text, Clock::today(), strproduit.imm_art.name);
        const auto article = articles::findScanned(files.notes.molven, code.ean(), code.supplierReference);
        const QString reference = article ? article->value(strarticle.art_ref) : QString();
        return [=](const Record& unit) { return fits(code, reference, unit); };
    }
    const QString number = Immatriculation::fromText(text).number();
    return [=](const Record& unit) {
        return unit[strproduit.imm_art] == number || unit[strproduit.fou_imm].compare(text, Qt::CaseInsensitive) == 0;
    };
}

} // namespace

QString unitScanned(Files& files, const QString& serial, const QString& scanned) {
    const auto isNamed = named(files, scanned.trimmed());
    QStringList found;
    for (const Record& unit : unitsOf(files, serial))
        if (isNamed(unit)) found.append(unit[strproduit.imm_art]);
    if (found.isEmpty())
        throw Refusal(QStringLiteral("Ce produit n'est pas dans l'ancillaire : ") + scanned.trimmed(),
                      strproduit.imm_art.name);
    if (found.size() > 1)
        throw Refusal(QStringLiteral("Plusieurs produits ont ce code (%1) : lisez l'étiquette du produit")
                          .arg(found.join(QStringLiteral(", "))),
                      strproduit.imm_art.name);
    return found.first();
}

namespace {

/// The units used, free at the main depot for a moment, go on a delivery note to the client.
QString deliverUsed(Files& files, const Return& wanted, const QList<Record>& used) {
    const QString serial = wanted.set[strstock.stk_anc_imm];
    require(!wanted.patient.trimmed().isEmpty(), "Patient obligatoire", strlive.fac_pat);
    for (const Record& unit : used)
        files.ancillaire.remove(strstock, strstock.stk_anc_imm == serial &&
                                              strstock.stk_imm_art == QString(unit[strproduit.imm_art]));
    moveUnits(files.notes, used, ancillary_sets::freed(files.sets()));
    SalesBook deliveries(files.notes, documentKind(QStringLiteral("LIV")));
    Record header = documents::blank(deliveries, wanted.set[strstock.stk_clt_vte]);
    header[strlive.fac_pat] = wanted.patient.trimmed();
    header[strlive.fac_chr] = wanted.surgeon;
    header[strlive.fac_btr] = returnLabel(serial);
    const Record note = documents::create(deliveries, header);
    QStringList numbers;
    for (const Record& unit : used) numbers.append(unit[strproduit.imm_art]);
    document_lines::addToNew(
        deliveries, note, document_lines::ofUnits(deliveries, note, unit_rules::checkAll(deliveries, note, numbers)));
    return note[strlive.fac_no];
}

/// The note that brings home what came back; it carries on the one that sent the set.
QString bringHome(Files& files, const Return& wanted, const QList<Record>& back) {
    const QString serial = wanted.set[strstock.stk_anc_imm], client = wanted.set[strstock.stk_clt_vte];
    Record header = documents::blank(files.notes, client);
    header[strbtre.fac_depd] = client;
    header[strbtre.fac_depa] = SetDepot;
    header[strbtre.fac_trs] = QString();
    header[strbtre.fac_btr] = returnLabel(serial);
    const Record note = writeNote(files.notes, header, back);
    transfer_notes::carryOn(files.notes, wanted.set[strstock.stk_num_vte], note[strbtre.fac_no]);
    moveUnits(files.notes, back, ancillary_sets::atHome(files.sets()));
    return note[strbtre.fac_no];
}

/// The set's units, told apart by whether they came back. Throws Refusal unless all is as the user read it.
std::pair<QList<Record>, QList<Record>> divided(Files& files, const Return& wanted) {
    const QString serial = wanted.set[strstock.stk_anc_imm];
    const Record set = ancillary_sets::header(files.ancillaire, serial);
    requireAway(set);
    require(set == wanted.set, "L'ancillaire a été modifié par un autre poste", strstock.stk_anc_imm);
    QStringList missing = wanted.back;
    std::pair<QList<Record>, QList<Record>> parts;
    for (const Record& unit : unitsOf(files, serial))
        (missing.removeAll(unit[strproduit.imm_art]) > 0 ? parts.first : parts.second).append(unit);
    if (!missing.isEmpty())
        throw Refusal(QStringLiteral("L'immatriculation %1 n'est plus dans cet ancillaire").arg(missing.first()),
                      strstock.stk_anc_imm.name);
    return parts;
}

} // namespace

Returned takeBack(Files& files, const Return& wanted) {
    const QString serial = wanted.set[strstock.stk_anc_imm], client = wanted.set[strstock.stk_clt_vte];
    SalesBook deliveries(files.notes, documentKind(QStringLiteral("LIV")));
    const Locks locks = locksOf(files, serial, newFor(files.notes, client) + newFor(deliveries, client));
    return Transaction::run(files.notes.workspace, returnLabel(serial), locks, [&] {
        const auto [back, used] = divided(files, wanted);
        Transaction ofAll(files.notes.workspace, {}, locksOf(files, serial, {}));
        Returned written;
        if (!used.isEmpty()) written.deliveryNote = deliverUsed(files, wanted, used);
        if (!back.isEmpty()) written.transferNote = bringHome(files, wanted, back);
        putStocks(files.notes, back + used);
        putPlace(files.ancillaire, serial, {SetDepot, {}, written.transferNote, dateText(Clock::today()), {}});
        ofAll.commit();
        return written;
    });
}

} // namespace molven::set_journeys

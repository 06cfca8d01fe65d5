// A count against its depot: see depot_counts.h.

#include "data/clock.h"
#include "data/collation.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/require.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "stock/depot_counts.h"
#include "stock/supplier_codes.h"
#include "stock/unit_locks.h"
#include "stock/units.h"

#include <algorithm>

namespace molven {

namespace {

const auto& Row = strconstat;
const QString CountDeed = QStringLiteral("Inventaire d'un dépôt");

/// The fields of a unit that its row holds, and where.
struct Copied {
    const Field& from;
    const Field& to;
};

const QList<Copied>& copiedFields() {
    static const QList<Copied> all{{strproduit.imm_art, Row.lig_imm}, {strproduit.ref_art, Row.lig_ref},
                                   {strproduit.pro_li1, Row.lig_lib}, {strproduit.lot_art, Row.lig_lot},
                                   {strproduit.fou_imm, Row.lig_ser}, {strproduit.dat_per, Row.lig_per},
                                   {strproduit.tes_vte, Row.lig_tes}, {strproduit.num_dep, Row.lig_dep},
                                   {strproduit.num_vte, Row.lig_vte}, {strproduit.tri_vte, Row.lig_tri}};
    return all;
}

Record rowOf(const Record& unit) {
    Record row(Row);
    for (const Copied& copied : copiedFields()) row.set(copied.to, unit.value(copied.from).left(copied.to.size));
    return row;
}

bool isAsRead(const Record& row, const Record& unit) {
    return row[Row.lig_tes] == unit[strproduit.tes_vte] && row[Row.lig_dep] == unit[strproduit.num_dep] &&
           row[Row.lig_vte] == unit[strproduit.num_vte] && row[Row.lig_tri] == unit[strproduit.tri_vte];
}

std::optional<Record> unitOf(Database molven, const QString& number) {
    return units::find(molven, Immatriculation::fromText(number));
}

QString situationOf(const Record& row) {
    return depot_counts::situation(row[Row.lig_tes], row[Row.lig_dep], row[Row.lig_vte]);
}

/// Whether a row is of a unit that a code names, as SupplierCode::fits() asks the engine.
std::function<bool(const Record& row)> namedBy(const SupplierCode& code) {
    const QString month = code.code.expiry.isValid() ? monthText(code.code.expiry) : QString();
    const auto isSame = [](const QString& held, const QString& named) {
        return named.isEmpty() || collation::code(held, named) == 0;
    };
    return [code, month, isSame](const Record& row) {
        return isSame(row[Row.lig_lot], code.code.lot) && isSame(row[Row.lig_ser], code.code.serial) &&
               isSame(row[Row.lig_ref], code.reference) && isSame(row[Row.lig_per], month);
    };
}

[[noreturn]] void refuse(const QString& why) { throw Refusal(why, QStringLiteral("txtlecture")); }

} // namespace

DepotCount::DepotCount(Database molven, const Record& count) : molven_(molven), header_(count) { refresh(); }

void DepotCount::refresh() {
    version_ = molven_.changesElsewhere();
    expected_.clear();
    read_.clear();
    order_.clear();
    closed_.clear();
    if (isBegun()) {
        const auto now = molven_.find(strinvdep, strinvdep.inv_no == header_[strinvdep.inv_no]);
        require(now.has_value(), "Cet inventaire a été abandonné par un autre poste", strinvdep.inv_dep);
        header_ = *now;
    }
    if (isClosed()) {
        readClosed();
    } else {
        readExpected();
        if (isBegun()) readReadings();
        for (auto read = read_.begin(); read != read_.end(); ++read) judge(read.key(), *read);
    }
    tellAll();
}

bool DepotCount::isExpected(const QString& unitState, const QString& depot) const {
    return unitState == state::InStock && depot == header_[strinvdep.inv_dep];
}

Criterion DepotCount::isThere() const {
    return strproduit.num_dep == header_[strinvdep.inv_dep] && strproduit.tes_vte == state::InStock;
}

void DepotCount::readExpected() {
    QList<const Field*> fields;
    for (const Copied& copied : copiedFields()) fields.append(&copied.from);
    for (const QStringList& values : molven_.values(strproduit, fields, isThere())) {
        Record row(Row);
        for (qsizetype i = 0; i < values.size(); ++i) row.set(copiedFields()[i].to, values[i]);
        row[Row.lig_con] = verdict::Missing;
        expected_.insert(values.first(), row);
    }
}

void DepotCount::readReadings() {
    const Criterion ofCount = strinvlig.lig_no == header_[strinvdep.inv_no];
    for (const Record& line : molven_.select(strinvlig, ofCount, {strinvlig.lig_jou, strinvlig.lig_imm})) {
        Record row(Row);
        row.copyFrom(line);
        order_.prepend(line[strinvlig.lig_imm]);
        read_.insert(order_.first(), row);
    }
}

void DepotCount::readClosed() {
    const Criterion ofCount = strinvlig.lig_no == header_[strinvdep.inv_no];
    for (const Record& line : molven_.select(strinvlig, ofCount, {strinvlig.lig_ref, strinvlig.lig_imm})) {
        Record row(Row);
        row.copyFrom(line);
        const QString document = line[strinvlig.lig_doc];
        const QString kind = line[strinvlig.lig_mod] == u"LIV" ? QStringLiteral("Bon de livraison ")
                                                               : QStringLiteral("Bon de transfert ");
        row[Row.lig_sit] = document.isEmpty() ? situationOf(row) : kind + document;
        closed_.append(row);
    }
}

/// A unit read that is of this depot by now was found, however it came; any other that moved since is told so.
void DepotCount::judge(Record& row, const std::optional<Record>& unit) const {
    if (!unit) {
        row[Row.lig_con] = verdict::Moved;
        row[Row.lig_sit] = QStringLiteral("archivée depuis la lecture");
        return;
    }
    const bool isFound = isExpected(unit->value(strproduit.tes_vte), unit->value(strproduit.num_dep));
    const bool moved = !isFound && !isAsRead(row, *unit);
    row[Row.lig_con] = isFound ? verdict::Found : moved ? verdict::Moved : verdict::Unexpected;
    const Record now = rowOf(*unit);
    row[Row.lig_sit] = (moved ? QStringLiteral("déplacée depuis la lecture : ") : QString()) + situationOf(now);
    if (moved) return;
    for (const Text* field : {&Row.lig_tes, &Row.lig_dep, &Row.lig_vte, &Row.lig_tri})
        row.set(*field, now.value(*field));
}

void DepotCount::judge(const QString& unit, Record& row) const {
    const auto expected = expected_.constFind(unit);
    if (expected == expected_.constEnd()) return judge(row, unitOf(molven_, unit));
    row.set(Row.lig_con, verdict::Found);
    for (const Text* field : {&Row.lig_tes, &Row.lig_dep, &Row.lig_vte, &Row.lig_tri})
        row.set(*field, expected->value(*field));
    row.set(Row.lig_sit, situationOf(row));
}

Freshness DepotCount::freshnessOf(const Record& row) const {
    const QString expiry = row[Row.lig_per];
    if (!isMonthYear(expiry)) return Freshness::Good;
    const QString month = expiry.right(4) + expiry.left(2);
    const QString written = header_[strinvdep.inv_clo];
    const QDate day = written.isEmpty() ? Clock::today() : dateFromText(written);
    const int months = static_cast<int>(header_[strinvdep.inv_moi].toInteger());
    if (month < sortKey(day).left(6)) return Freshness::Expired;
    return month <= sortKey(day.addMonths(months)).left(6) ? Freshness::Soon : Freshness::Good;
}

/// Counts a row into the figures, or out of them: they are shown after each reading, of however many.
void DepotCount::tell(const Record& row, int sign) {
    const QString found = row[Row.lig_con];
    if (found == verdict::Found) tally_.found += sign;
    if (found == verdict::Unexpected) tally_.unexpected += sign;
    if (found == verdict::Moved) tally_.moved += sign;
    if (found == verdict::Missing) return;
    if (row[Row.lig_lec] > Decimal(1)) tally_.twice += sign;
    const Freshness freshness = freshnessOf(row);
    if (freshness == Freshness::Expired) tally_.expired += sign;
    if (freshness == Freshness::Soon) tally_.soon += sign;
}

void DepotCount::tellAll() {
    tally_ = {};
    for (const Record& row : isClosed() ? closed_ : read_.values()) tell(row, 1);
    tally_.expected = isClosed() ? tally_.found + rows(verdict::Missing).size() : expected_.size();
}

CountTally DepotCount::tally() const {
    CountTally tally = tally_;
    tally.missing = tally.expected - tally.found;
    return tally;
}

QList<Record> DepotCount::rows(const QString& verdict) const {
    QList<Record> found;
    if (isClosed()) {
        std::copy_if(closed_.begin(), closed_.end(), std::back_inserter(found),
                     [&](const Record& row) { return row[Row.lig_con] == verdict; });
        return found;
    }
    if (verdict == verdict::Missing) {
        for (auto row = expected_.begin(); row != expected_.end(); ++row)
            if (!read_.contains(row.key())) found.append(*row);
    } else {
        for (const Record& row : read_)
            if (row[Row.lig_con] == verdict) found.append(row);
    }
    std::sort(found.begin(), found.end(), [](const Record& a, const Record& b) {
        return a[Row.lig_ref] + a[Row.lig_imm] < b[Row.lig_ref] + b[Row.lig_imm];
    });
    return found;
}

QHash<QString, QString> DepotCount::verdicts() const {
    QHash<QString, QString> told;
    for (const Record& row : closed_) told.insert(row[Row.lig_imm], row[Row.lig_con]);
    for (const QString& unit : expected_.keys()) told.insert(unit, verdict::Missing);
    for (auto read = read_.begin(); read != read_.end(); ++read) told.insert(read.key(), (*read)[Row.lig_con]);
    return told;
}

QList<Record> DepotCount::readings() const {
    if (isClosed()) {
        QList<Record> found;
        std::copy_if(closed_.begin(), closed_.end(), std::back_inserter(found),
                     [](const Record& row) { return row[Row.lig_con] != verdict::Missing; });
        return found;
    }
    QList<Record> found;
    found.reserve(order_.size());
    for (const QString& unit : order_) found.append(*read_.constFind(unit));
    return found;
}

/// Of the units that a code names, the one to count: expected here first, then in stock elsewhere, then the others; one
/// that is read already comes last. What lies here is known: the engine is asked of the others when all of it is read.
DepotCount::Named DepotCount::best(const SupplierCode& code) const {
    const auto isNamed = namedBy(code);
    Named found{{}, 0, 0};
    QString again;
    for (auto row = expected_.begin(); row != expected_.end(); ++row) {
        if (!isNamed(*row)) continue;
        ++found.alike;
        QString& first = read_.contains(row.key()) ? again : found.unit;
        if (first.isEmpty() || row.key() < first) first = row.key();
    }
    found.alikeRead = std::count_if(read_.begin(), read_.end(), isNamed);
    if (found.unit.isEmpty()) found.unit = bestElsewhere(code, again);
    return found;
}

/// The same of those that are not expected here; `again` is the first of these.
QString DepotCount::bestElsewhere(const SupplierCode& code, const QString& again) const {
    constexpr qsizetype ReadAlready = 10;
    static const QStringList later{state::InStock, state::InSet, state::Delivered, state::Sold};
    std::pair first(again.isEmpty() ? 2 * ReadAlready : ReadAlready, again);
    for (const QStringList& unit : molven_.values(
             strproduit, {&strproduit.imm_art, &strproduit.ref_art, &strproduit.tes_vte}, code.fits() && !isThere())) {
        if (!code.reference.isEmpty() && unit[1].compare(code.reference, Qt::CaseInsensitive) != 0) continue;
        const qsizetype place = 1 + later.indexOf(unit[2]) + (read_.contains(unit[0]) ? ReadAlready : 0);
        first = std::min(first, std::pair(place, unit[0]));
    }
    return first.second;
}

DepotCount::Named DepotCount::named(const QString& scanned) const {
    const QString text = scanned.trimmed();
    if (!gs1::isScan(text)) {
        const Immatriculation number = Immatriculation::fromText(text);
        if (number.isValid() && units::find(molven_, number)) return {number.number()};
        SupplierCode serial;
        serial.code.serial = text;
        const Named bySerial = text.isEmpty() ? Named() : best(serial);
        if (bySerial.unit.isEmpty()) refuse(QStringLiteral("Immatriculation inconnue"));
        return bySerial;
    }
    const SupplierCode code = supplier_codes::read(molven_, text, QStringLiteral("txtlecture"));
    if (code.code.lot.isEmpty() && code.code.serial.isEmpty())
        refuse(QStringLiteral("Ce code ne porte ni lot ni série : lisez l'étiquette du produit"));
    const Named found = best(code);
    if (found.unit.isEmpty()) refuse(QStringLiteral("Aucun produit ne porte ce code : ") + code.words());
    return found;
}

/// The first reading begins the count; another workstation may have done so meanwhile.
void DepotCount::begin() {
    if (const auto other = depot_counts::openOf(molven_, header_[strinvdep.inv_dep])) {
        header_ = *other;
        return refresh();
    }
    Transaction numbered(molven_.workspace(), {}, Locks::of({unit_locks::counts()}));
    const Decimal last = Decimal::fromText(molven_.greatest(strinvdep, strinvdep.inv_no));
    if (last >= Decimal(999'999)) refuse(QStringLiteral("Numérotation impossible"));
    header_[strinvdep.inv_no] = format(last + Decimal(1), QStringLiteral("000000"));
    header_[strinvdep.inv_dat] = dateText(Clock::today());
    header_[strinvdep.inv_tri] = sortKey(Clock::today());
    molven_.insert(header_);
    numbered.commit();
}

/// A depot has one open count.
Locks DepotCount::locks() const { return Locks::of({unit_locks::count(header_[strinvdep.inv_dep])}); }

/// What was written elsewhere since is read again; our own readings are known.
void DepotCount::followOthers() {
    const qint64 version = molven_.changesElsewhere();
    if (version == version_) return;
    if (!isBegun() || !takeReadingsOfOthers()) return refresh();
    version_ = version;
}

/// Takes in what other workstations read, the usual change while several count; false when there was another: a unit
/// left or came, a reading was taken back or repeated, the count was described otherwise.
bool DepotCount::takeReadingsOfOthers() {
    const auto now = molven_.find(strinvdep, strinvdep.inv_no == header_[strinvdep.inv_no]);
    if (!now || !(*now == header_)) return false;
    qsizetype there = 0;
    for (const QStringList& unit : molven_.values(strproduit, {&strproduit.imm_art}, isThere()))
        if (expected_.contains(unit.first()))
            ++there;
        else
            return false;
    if (there != expected_.size()) return false;
    const Criterion ofCount = strinvlig.lig_no == header_[strinvdep.inv_no];
    const QString last = order_.isEmpty() ? QString() : read_.value(order_.first(), Record(Row)).value(Row.lig_jou);
    for (const Record& line :
         molven_.select(strinvlig, ofCount && strinvlig.lig_jou >= last, {strinvlig.lig_jou, strinvlig.lig_imm})) {
        const QString unit = line[strinvlig.lig_imm];
        if (read_.contains(unit)) continue;
        Record row(Row);
        row.copyFrom(line);
        judge(unit, row);
        order_.prepend(unit);
        tell(row, 1);
        read_.insert(unit, row);
    }
    qint64 lines = 0;
    Decimal readings;
    for (const Summary& all : molven_.summary(strinvlig, {}, {&strinvlig.lig_lec}, ofCount)) {
        lines = all.count;
        readings = all.sums.first();
    }
    if (lines != read_.size()) return false;
    for (const Record& row : std::as_const(read_)) readings = readings - row[Row.lig_lec];
    if (readings != Decimal()) return false;
    for (auto read = read_.begin(); read != read_.end(); ++read) {
        if (expected_.contains(read.key())) continue;
        tell(*read, -1);
        judge(read.key(), *read);
        tell(*read, 1);
    }
    return true;
}

DepotCount::Reading DepotCount::read(const QString& scanned) {
    Reading reading = Transaction::run(molven_.workspace(), CountDeed, locks(), [&] { return written(scanned); });
    const QString unit = reading.row[Row.lig_imm];
    judge(reading.row, unitOf(molven_, unit));
    if (reading.isAgain) tell(*read_.constFind(unit), -1);
    tell(reading.row, 1);
    read_.insert(unit, reading.row);
    if (!reading.isAgain) order_.prepend(unit);
    return reading;
}

DepotCount::Reading DepotCount::written(const QString& scanned) {
    const Record before = header_;
    followOthers();
    if (!isBegun()) begin();
    try {
        depot_counts::requireOpen(molven_, header_);
        const Named chosen = named(scanned);
        Reading reading{Record(Row), read_.contains(chosen.unit), chosen.alike, chosen.alikeRead};
        reading.row = reading.isAgain ? read_.value(chosen.unit, Record(Row)) : rowOf(*unitOf(molven_, chosen.unit));
        Record& row = reading.row;
        row[Row.lig_lec] = row[Row.lig_lec] + Decimal(1);
        const Criterion one = strinvlig.lig_no == header_[strinvdep.inv_no] && strinvlig.lig_imm == chosen.unit;
        if (reading.isAgain) {
            molven_.update(strinvlig, {{strinvlig.lig_lec, row.value(Row.lig_lec)}}, one);
        } else {
            row[Row.lig_no] = header_[strinvdep.inv_no];
            row[Row.lig_jou] = Clock::now().toString(QStringLiteral("yyyyMMdd hh:mm:ss"));
            row[Row.lig_pos] = author::workstation().left(Row.lig_pos.size);
            Record line(strinvlig);
            line.copyFrom(row);
            molven_.insert(line);
            ++reading.alikeRead;
        }
        return reading;
    } catch (...) {
        header_ = before; // nothing was begun
        throw;
    }
}

void DepotCount::takeBack(const QString& unit) {
    Transaction::run(molven_.workspace(), CountDeed, locks(), [&] {
        depot_counts::requireOpen(molven_, header_);
        molven_.remove(strinvlig, strinvlig.lig_no == header_[strinvdep.inv_no] && strinvlig.lig_imm == unit);
    });
    refresh();
}

void DepotCount::describe(const QString& client, const QString& counter, int months) {
    codes::require(molven_, strinvdep.inv_clt, codes::Client, client);
    depot_counts::requireClientOf(molven_, header_[strinvdep.inv_dep], client);
    require(months >= 0 && months <= 120, "Nombre de mois incorrect", strinvdep.inv_moi);
    const QList<Assignment> described{{strinvdep.inv_clt, client},
                                      {strinvdep.inv_par, counter.left(strinvdep.inv_par.size)},
                                      {strinvdep.inv_moi, QString::number(months)}};
    if (isBegun())
        Transaction::run(molven_.workspace(), CountDeed, locks(), [&] {
            depot_counts::requireOpen(molven_, header_);
            molven_.update(strinvdep, described, strinvdep.inv_no == header_[strinvdep.inv_no]);
        });
    for (const Assignment& one : described) header_.set(one.field, one.value);
    tellAll();
}

} // namespace molven

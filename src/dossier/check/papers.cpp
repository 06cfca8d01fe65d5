#include "dossier/check/checks.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/pricing.h"
#include "sales/record_trail.h"
#include "sales/station.h"
#include "sales/transfer_notes.h"

#include <QSet>

namespace molven::check {

const QList<Family>& families() {
    static const QList<Family> all{{strlive, strlivl, QStringLiteral("bon de livraison"), false, true},
                                   {strcsge, strcsgl, QStringLiteral("bon de consignation"), true, true},
                                   {strface, strfacl, QStringLiteral("facture"), true, true},
                                   {strbtre, strbtrl, QStringLiteral("bon de transfert"), false, false}};
    return all;
}

namespace {

QString keyOf(const QString& series, const Family& family, const QString& number) {
    return series + u'/' + family.headers.name + u'/' + number;
}

/// An archived document keeps its number in the series of the current ones.
QString seriesOf(const references::Files::Searched& searched) { return searched.isOthers ? searched.place : QString(); }

bool isTransfer(const Family& family) { return &family.headers == &strbtre; }

QString depotOf(const Family& family, const Record& header) {
    return isTransfer(family) ? header[strbtre.fac_depa] : header[family.headers.fac_dep];
}

bool isHolding(const references::Files::Searched& searched) {
    return searched.file == DataFile::Vente || searched.file == DataFile::Historic;
}

/// The net price is what price and discount make, the total in the line's own price basis what quantity and net make;
/// the other total depends on a VAT rate that may have changed since.
bool isPricedRight(const DocumentLines& table, const Record& line) {
    if (line[table.fac_tva].isEmpty()) return true;
    const Decimal total = (line[table.fac_qte] * line[table.fac_pv]).rounded(2);
    const Decimal stored = line[table.fac_tar] == u"H" ? line[table.fac_ht] : line[table.fac_ttc];
    return line[table.fac_pv] == pricing::net(line[table.fac_px], line[table.fac_remx]) && stored == total;
}

Place placeOf(const references::Files::Searched& searched, const Family& family, const Record& header) {
    const DocumentHeaders& table = family.headers;
    return {searched.database.path(), &table, header[table.fac_aa] + u'/' + header[table.fac_no]};
}

/// "TTC 7.00 pour 94.95", or the first other total that differs; empty when none does.
QString difference(const DocumentHeaders& table, const Record& stored, const Record& expected) {
    const auto words = [&](const QString& title, const Number& field) {
        return QStringLiteral("%1 %2 pour %3").arg(title, amountText(stored[field]), amountText(expected[field]));
    };
    if (stored[table.fac_ttc] != expected[table.fac_ttc]) return words(QStringLiteral("TTC"), table.fac_ttc);
    for (const Number* field : totals::fields(table))
        if (stored[*field] != expected[*field]) return words(record_trail::fieldTitle(table.name, field->name), *field);
    return {};
}

/// What the lines of each document of a file come to, by its year and number.
using VatBases = QHash<QString, QMap<QString, totals::VatBase>>;

void add(VatBases& sums, const DocumentLines& table, const Record& line) {
    totals::VatBase& base = sums[line[table.fac_aa] + u'/' + line[table.fac_no]][line[table.fac_tva]];
    base.ht += line[table.fac_ht];
    base.vat += line[table.fac_ttc] - line[table.fac_ht];
}

void checkTotals(references::Files::Searched searched, const Family& family, const VatBases& sums, Faults& faults) {
    const DocumentHeaders& table = family.headers;
    for (const Record& header : searched.database.select(table)) {
        const Place place = placeOf(searched, family, header);
        Record expected = header;
        totals::put(table, expected, sums.value(place.key),
                    header[table.fac_port].isZero() ? Decimal() : header[table.fac_tvp]);
        if (const QString differing = difference(table, header, expected); !differing.isEmpty())
            faults.append({catalogueEntry(searched.file).name, family.name + u' ' + header[table.fac_no],
                           QStringLiteral("totaux autres que ceux des lignes : ") + differing, &kind::Totals, place});
    }
}

} // namespace

const Paper* Papers::find(const QString& series, const Family& family, const QString& number) const {
    const auto found = papers_.find(keyOf(series, family, number));
    return found == papers_.end() ? nullptr : &found->second;
}

Papers::Papers(references::Files& files, Faults& faults) {
    for (const Family& family : families()) {
        for (const references::Files::Searched& searched : files.searched())
            if (isHolding(searched)) readHeaders(searched, family, faults);
        for (references::Files::Searched searched : files.searched()) {
            if (!isHolding(searched)) continue;
            const auto sums = readLines(searched, family, faults);
            if (family.isPriced) checkTotals(searched, family, sums, faults);
        }
    }
}

void Papers::readHeaders(const references::Files::Searched& searched, const Family& family, Faults& faults) {
    const DocumentHeaders& table = family.headers;
    Database file = searched.database;
    for (const Record& header : file.select(table)) {
        Paper paper{&family,
                    seriesOf(searched),
                    catalogueEntry(searched.file).name,
                    searched.database.path(),
                    header[table.fac_aa],
                    header[table.fac_no],
                    header[table.fac_clt],
                    header[table.fac_datf],
                    header[table.fac_pat],
                    depotOf(family, header),
                    header[table.fac_blv],
                    header[table.fac_cpt] == documents::Transferred};
        const auto fault = [&](const QString& text) {
            faults.append({paper.file, paper.name(), text, &kind::Papers, paper.place()});
        };
        if (paper.year != paper.date.right(4) || header[table.tri_datf] != sortKey(paper.date))
            fault(QStringLiteral("année ou clé de tri autre que la date %1").arg(paper.date));
        if (isTransfer(family)) {
            paper.from = header[strbtre.fac_depd];
            paper.renewal = transfer_notes::renewedOn(header);
            if (const QString date = header[strbtre.fac_dat]; date != paper.date)
                fault(QStringLiteral("date %1 et %2").arg(date, paper.date));
        }
        const auto [twin, isNew] = papers_.emplace(keyOf(paper.series, family, paper.number), paper);
        if (!isNew)
            fault(twin->second.year == paper.year ? QStringLiteral("aussi dans %1").arg(twin->second.file)
                                                  : QStringLiteral("numéro aussi donné en %1").arg(twin->second.year));
    }
}

void Papers::checkLine(const Family& family, const Record& line, const Paper& paper, Faults& faults) {
    const DocumentLines& table = family.lines;
    const auto fault = [&](const QString& text, const Kind& kind) {
        faults.append({paper.file, paper.name(), QStringLiteral("ligne %1 : ").arg(line[table.fac_lg]) + text, &kind,
                       paper.place()});
    };
    if (const QString client = line[table.fac_clt]; !client.isEmpty() && client != paper.client)
        fault(QStringLiteral("client %1 sur un document du client %2").arg(client, paper.client), kind::Papers);
    if (family.isPriced && !isPricedRight(table, line))
        fault(QStringLiteral("montants autres que quantité, prix et remise"), kind::Amounts);
    const QString unit = line[table.fac_imm], note = line[table.fac_nbl];
    if (&table == &strfacl && !note.isEmpty()) invoiced_.append({&paper, note});
    if (unit.isEmpty()) return;
    units_[unit].append({&paper, line[table.fac_ref], line[table.fac_dep], line[table.fac_id1], note,
                         line[table.fac_qte] < Decimal(), line[table.fac_fimm], line[table.fac_ste],
                         line[table.fac_dst], line[table.fac_dpr]});
}

namespace {

/// Whether the headers and lines of a file's documents belong together.
class Structure {
public:
    Structure(const references::Files::Searched& searched, const Family& family, Faults& faults)
        : file_(searched.database), name_(catalogueEntry(searched.file).name), family_(family), faults_(faults) {}

    /// False for the hidden line.
    bool add(const Record& line) {
        const DocumentLines& table = family_.lines;
        const QString key = line[table.fac_aa] + u'/' + line[table.fac_no], number = line[table.fac_lg];
        const bool isHidden = number == numbering::HiddenLine;
        (isHidden ? hidden_ : lined_).insert(key);
        if (isHidden) return false;
        if (const QString one = key + u'/' + number; numbered_.contains(one))
            tell({key}, QStringLiteral("ligne %1 en double").arg(number));
        else
            numbered_.insert(one);
        return true;
    }

    void finish() {
        QSet<QString> headers, empty;
        for (const Record& header : file_.select(family_.headers)) {
            const QString key = header[family_.headers.fac_aa] + u'/' + header[family_.headers.fac_no];
            headers.insert(key);
            if (!lined_.contains(key) && !hidden_.contains(key) && !isBeingTyped(header, key)) empty.insert(key);
        }
        tell((lined_ | hidden_) - headers, QStringLiteral("lignes sans en-tête"));
        tell(empty, QStringLiteral("aucune ligne"));
        tell(lined_ - hidden_, QStringLiteral("enregistrement 000 absent"));
    }

private:
    /// Between its header and its first line a document has none; what a program left so is told at once on its own
    /// workstation, elsewhere from the next day on.
    bool isBeingTyped(const Record& header, const QString& key) {
        const QString program = header[family_.headers.fac_pst];
        if (program.isEmpty() || station::isGone(program)) return false;
        bool wasWrittenToday = false;
        Journal::read(file_, JournalKeys::of(key),
                      strjournal.jou_tab == family_.headers.name && strjournal.jou_dat == sortKey(Clock::today()),
                      [&wasWrittenToday](const Record&) { wasWrittenToday = true; });
        return wasWrittenToday;
    }

    void tell(const QSet<QString>& keys, const QString& text) {
        for (const QString& key : keys)
            faults_.append(
                {name_, family_.name + u' ' + key, text, &kind::Papers, {file_.path(), &family_.headers, key}});
    }

    Database file_;
    const QString name_;
    const Family& family_;
    Faults& faults_;
    QSet<QString> hidden_, lined_, numbered_;
};

} // namespace

QHash<QString, QMap<QString, totals::VatBase>> Papers::readLines(const references::Files::Searched& searched,
                                                                 const Family& family, Faults& faults) {
    const DocumentLines& table = family.lines;
    QHash<QString, QMap<QString, totals::VatBase>> sums;
    Structure structure(searched, family, faults);
    Database file = searched.database;
    for (const Record& line : file.select(table)) {
        if (!structure.add(line)) continue;
        add(sums, table, line);
        if (const Paper* paper = find(seriesOf(searched), family, line[table.fac_no]))
            checkLine(family, line, *paper, faults);
    }
    structure.finish();
    return sums;
}

namespace {

/// The delivery notes that the user's own proformas name are there.
void checkDelivered(references::Files::Searched searched, const Family& family, const Papers& papers, Faults& faults) {
    for (const Record& header : searched.database.select(strface, strface.fac_cpt == documents::Transferred))
        if (const QString note = header[strface.fac_blv]; !papers.find({}, families()[0], note))
            faults.append({catalogueEntry(searched.file).name, family.name + u' ' + header[strface.fac_no],
                           QStringLiteral("bon de livraison %1 absent").arg(note), &kind::Notes,
                           placeOf(searched, family, header)});
}

} // namespace

void checkProformas(references::Files& files, const Papers& papers, Faults& faults) {
    static const Family proformas{strface, strfacl, QStringLiteral("proforma"), false, true},
        secondBook{strface, strfacl, QStringLiteral("facture OSTRANE"), false, true};
    for (references::Files::Searched searched : files.searched()) {
        if (searched.file != DataFile::Proforma && searched.file != DataFile::Ostrane) continue;
        const Family& family = searched.file == DataFile::Proforma ? proformas : secondBook;
        Structure structure(searched, family, faults);
        VatBases sums;
        for (const Record& line : searched.database.select(strfacl)) {
            if (!structure.add(line)) continue;
            add(sums, strfacl, line);
            if (!isPricedRight(strfacl, line))
                faults.append(
                    {catalogueEntry(searched.file).name,
                     family.name + u' ' + line[strfacl.fac_no],
                     QStringLiteral("ligne %1 : montants autres que quantité, prix et remise")
                         .arg(line[strfacl.fac_lg]),
                     &kind::Amounts,
                     {searched.database.path(), &strface, line[strfacl.fac_aa] + u'/' + line[strfacl.fac_no]}});
        }
        structure.finish();
        checkTotals(searched, family, sums, faults);
        if (&family == &proformas && !searched.isOthers) checkDelivered(searched, family, papers, faults);
    }
}

void checkNotes(const Papers& papers, Faults& faults) {
    const Family &notes = families()[0], &invoices = families()[2];
    QSet<std::pair<const Paper*, const Paper*>> held;
    for (const Papers::Invoiced& line : papers.invoiced()) {
        const Paper& invoice = *line.invoice;
        const Paper* note = papers.find(invoice.series, notes, line.note);
        held.insert({note, &invoice});
        const auto fault = [&](const QString& text) {
            faults.append({invoice.file, invoice.name(), text.arg(line.note), &kind::Notes, invoice.place()});
        };
        if (!note)
            fault(QStringLiteral("bon de livraison %1 absent"));
        else if (!note->isTransferred || note->invoice != invoice.number)
            fault(QStringLiteral("le bon de livraison %1 ne la désigne pas"));
        else if (note->client != invoice.client)
            fault(QStringLiteral("le bon de livraison %1 est à un autre client"));
    }
    for (const auto& [key, note] : papers.all()) {
        if (note.family != &notes || !note.isTransferred) continue;
        const Paper* invoice = papers.find(note.series, invoices, note.invoice);
        const QString text =
            invoice ? QStringLiteral("la facture %1 n'en porte aucune ligne") : QStringLiteral("facture %1 absente");
        if (!invoice || !held.contains(std::pair(&note, invoice)))
            faults.append({note.file, note.name(), text.arg(note.invoice), &kind::Notes, note.place()});
    }
}

void checkRenewals(const Papers& papers, Faults& faults) {
    for (const auto& [key, note] : papers.all()) {
        if (note.renewal.isEmpty()) continue;
        const Paper* next = papers.find(note.series, *note.family, note.renewal);
        const QString renewed = QStringLiteral("renouvelé sur le bon ") + note.renewal;
        const auto fault = [&](const QString& text) {
            faults.append({note.file, note.name(), renewed + text, &kind::Papers, note.place()});
        };
        if (!next)
            fault(QStringLiteral(" absent"));
        else if (next->from != note.depot)
            fault(QStringLiteral(", qui part du dépôt ") + next->from);
    }
}

} // namespace molven::check

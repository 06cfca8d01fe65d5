#include "dossier/check/checks.h"

#include "data/journal.h"
#include "data/journal_tables.h"
#include "dossier/check/ledger.h"
#include "reference/parameters.h"
#include "sales/record_trail.h"
#include "stock/unit_deeds.h"
#include "stock/units.h"

#include <QSet>

namespace molven::check {

namespace {

/// A file of units, current or archived.
struct UnitsFile {
    QString name;
    Database database;
};

/// One unit beside the lines that name it.
class UnitCheck {
public:
    UnitCheck(const Papers& papers, const UnitsFile& file, const Record& unit, const QList<UnitLine>& lines,
              Faults& faults)
        : papers_(papers), file_(file), unit_(unit), lines_(lines), state_(unit[strproduit.tes_vte]), faults_(faults) {}

    void run() {
        if (state_.size() != 1 || !QStringLiteral("NLOA").contains(state_))
            return tell(QStringLiteral("état inconnu : ") + state_);
        if (unit_[strproduit.num_dep] == ReturnedDepot) return;
        if (checkSales() && checkDeliveries())
            if (const UnitLine* line = holdingLine()) checkAgainst(*line);
    }

private:
    void tell(const QString& text, const Kind& kind = kind::Units) {
        faults_.append({file_.name, unit_[strproduit.imm_art], text, &kind});
    }
    QString document() const { return unit_[strproduit.num_vte]; }

    /// A unit sold is on one invoice more than on credit notes, any other on as many.
    bool checkSales() {
        QStringList sold;
        qsizetype takenBack = 0;
        for (const UnitLine& line : lines_) {
            if (!line.paper->family->sells) continue;
            if (line.takesBack)
                ++takenBack;
            else
                sold.append(line.paper->number);
        }
        sold = sold.mid(takenBack);
        if (sold.size() > 1) return tell(QStringLiteral("vendue deux fois : ") + sold.join(u' ')), false;
        const bool isSold = state_ == state::Sold;
        if (isSold && !lineOfDocument())
            return tell(QStringLiteral("vendue sans ligne sur la facture ou le bon de consignation ") + document()),
                   false;
        if (isSold != !sold.isEmpty())
            return tell(isSold ? QStringLiteral("vendue, mais reprise par un avoir")
                               : QStringLiteral("vendue par le document %1, mais pas dans cet état").arg(sold.first())),
                   false;
        return true;
    }

    bool checkDeliveries() {
        QStringList open;
        for (const UnitLine& line : lines_)
            if (line.paper->family == &families()[0] && !line.paper->isTransferred) open.append(line.paper->number);
        if (open.size() > 1) return tell(QStringLiteral("sur plusieurs bons de livraison : ") + open.join(u' ')), false;
        const bool isDelivered = state_ == state::Delivered;
        if (isDelivered && open != QStringList{document()})
            return tell(QStringLiteral("livrée sans ligne sur le bon de livraison ") + document()), false;
        if (!isDelivered && !open.isEmpty())
            return tell(QStringLiteral("sur le bon de livraison %1, mais pas livrée").arg(open.first())), false;
        return true;
    }

    /// Whether the line's document may have put the unit in its state.
    bool suits(const UnitLine& line) const {
        const Family& family = *line.paper->family;
        if (state_ == state::Sold) return family.sells && !line.takesBack;
        if (state_ == state::Delivered) return &family == &families()[0];
        return unit_[strproduit.nbl_dep] == TakenBack ? line.takesBack : !family.isPriced;
    }
    bool agrees(const UnitLine& line) const {
        return unit_[strproduit.clt_vte] == line.paper->client && unit_[strproduit.dat_vte] == line.paper->date;
    }

    /// The line of the document that the unit names: documents of two families may bear one number.
    const UnitLine* lineOfDocument() const {
        const UnitLine* found = nullptr;
        for (const UnitLine& line : lines_)
            if (line.paper->number == document() && suits(line) && (!found || agrees(line) || !agrees(*found)))
                found = &line;
        return found;
    }

    /// The line that put the unit where it is; null for a unit that no document holds.
    const UnitLine* holdingLine() {
        if (state_ == state::InSet) return nullptr;
        if (const UnitLine* line = lineOfDocument()) return line;
        if (!document().isEmpty() && document() != u"000000")
            tell(QStringLiteral("en stock, sans ligne sur son document ") + document());
        return nullptr;
    }

    void checkAgainst(const UnitLine& line) {
        const Paper& paper = *line.paper;
        const QString name = paper.name();
        if (line.reference.compare(unit_[strproduit.ref_art], Qt::CaseInsensitive) != 0)
            tell(QStringLiteral("article %1 sur %2").arg(line.reference, name));
        if (!agrees(line)) tell(QStringLiteral("client ou date autres que ceux de ") + name);
        const bool isTransfer = !paper.family->isPriced;
        const QString depot = isTransfer ? paper.depot : line.depot;
        const bool isHome = line.takesBack && unit_[strproduit.num_dep] == MainDepot;
        if (!depot.isEmpty() && !isHome && unit_[strproduit.num_dep] != depot)
            tell(QStringLiteral("dépôt %1 pour %2 sur %3").arg(unit_[strproduit.num_dep], depot, name));
        if (state_ == state::InStock) return; // its data may have been corrected since it came back
        checkPatient(line);
        checkLot(line);
        checkIdentity(line, strproduit.fou_imm, line.serial);
        checkIdentity(line, strproduit.num_ste, line.sterilisation);
        checkIdentity(line, strproduit.dat_ste, line.sterilised);
        checkIdentity(line, strproduit.dat_per, line.expiry);
    }

    void checkIdentity(const UnitLine& line, const Text& field, const QString& written) {
        if (written.isEmpty() || unit_[field] == written || wasChanged(field)) return;
        tell(QStringLiteral("%1 « %2 », « %3 » sur %4")
                 .arg(record_trail::fieldTitle(strproduit.name, field.name), unit_[field], written, line.paper->name()),
             kind::Patients);
    }

    bool wasChanged(const Field& field) const { return lastDeed(file_.database, unit_, field).has_value(); }

    /// The patient entered on the unit itself stands with a date or hospital of its own.
    void checkPatient(const UnitLine& line) {
        const Paper* note = line.note.isEmpty() ? nullptr : papers_.find(line.paper->series, families()[0], line.note);
        const Paper& entered = note ? *note : *line.paper;
        const QString patient = unit_[strproduit.reg_pat];
        if (patient == entered.patient || patient == line.paper->patient) return;
        if (patient.isEmpty())
            return tell(QStringLiteral("patient absent : %1 sur %2").arg(entered.patient, entered.name()),
                        kind::Patients);
        if (unit_[strproduit.reg_dat] != entered.date || unit_[strproduit.reg_clt] != entered.client) return;
        const auto deed = lastDeed(file_.database, unit_, strproduit.reg_pat);
        if (deed == units::ImplantationDeed || (!deed && entered.patient.isEmpty())) return;
        tell(QStringLiteral("patient %1, %2 sur %3")
                 .arg(patient, entered.patient.isEmpty() ? QStringLiteral("aucun") : entered.patient, entered.name()),
             kind::Patients);
    }

    void checkLot(const UnitLine& line) {
        static const QString Lot = QStringLiteral("N° Lot : ");
        if (!line.identification.startsWith(Lot)) return;
        const QString printed = line.identification.mid(Lot.size()).section(QStringLiteral("  N° pièce"), 0, 0);
        const QString lot = unit_[strproduit.lot_art];
        if (lot.trimmed() != printed.trimmed() && !wasChanged(strproduit.lot_art))
            tell(QStringLiteral("lot « %1 », « %2 » sur %3").arg(lot, printed, line.paper->name()), kind::Patients);
    }

    const Papers& papers_;
    const UnitsFile& file_;
    const Record& unit_;
    const QList<UnitLine>& lines_;
    const QString state_;
    Faults& faults_;
};

} // namespace

namespace {

/// Which numbers and serials units bear; one number a unit, and one serial within a supplier's reference, or within the
/// article when that is empty.
class Bearers {
public:
    void add(const UnitsFile& file, const Record& unit, Faults& faults) {
        const QString number = unit[strproduit.imm_art], key = unit[strproduit.pro_ann] + number;
        QString& holder = holders_[recordKey(key)];
        if (holder == file.name)
            faults.append({file.name, key, QStringLiteral("immatriculation en double"), &kind::Units});
        else if (!holder.isEmpty())
            faults.append({file.name, number, QStringLiteral("immatriculation aussi dans ") + holder, &kind::Units});
        holder = file.name;
        numbers_.insert(recordKey(number));
        const QString serial = unit[strproduit.fou_imm].trimmed(), reference = unit[strproduit.fou_ref].trimmed();
        if (serial.isEmpty()) return;
        const QString within = reference.isEmpty() ? u'/' + unit[strproduit.ref_art] : reference;
        QString& other = serials_[recordKey(QString(within + u'|' + serial).toUpper())];
        if (!other.isEmpty() && other != number)
            faults.append({file.name, number, QStringLiteral("N° de série %1 aussi porté par %2").arg(serial, other),
                           &kind::Values});
        other = number;
    }
    bool know(const QString& number) const { return numbers_.contains(recordKey(number)); }

private:
    QHash<RecordKey, QString> holders_, serials_; ///< the file of a number, the number of a serial
    QSet<RecordKey> numbers_;
};

} // namespace

std::optional<QString> lastDeed(Database file, const Record& unit, const Field& field) {
    const QString key = unit[strproduit.pro_ann] + u'/' + unit[strproduit.imm_art];
    std::optional<QString> deed;
    Journal::read(file, JournalKeys::of(key),
                  strjournal.jou_tab == strproduit.name && strjournal.jou_gen == QStringLiteral("M") &&
                      contains(strjournal.jou_val, u'"' + field.name + u'"'),
                  [&deed](const Record& entry) { deed = entry[strjournal.jou_act]; });
    return deed;
}

void checkUnits(references::Files& files, const Papers& papers, Faults& faults) {
    Bearers bearers;
    Conformities conformities(files[DataFile::Molven]);
    for (const references::Files::Searched& holder : files.searched()) {
        if (holder.file != DataFile::Molven && holder.file != DataFile::Historic) continue;
        UnitsFile file{catalogueEntry(holder.file).name, holder.database};
        for (const Record& unit : file.database.select(strproduit)) {
            const QString number = unit[strproduit.imm_art];
            bearers.add(file, unit, faults);
            UnitCheck(papers, file, unit, papers.units().value(number), faults).run();
            if (const QString text = conformities.faultOf(file.database, unit); !text.isEmpty())
                faults.append({file.name, number, text, &kind::Conformity});
            checkUnitValues(file.name, unit, faults);
        }
    }
    conformities.tellLeft(faults);
    for (auto lines = papers.units().begin(); lines != papers.units().end(); ++lines)
        if (!bearers.know(lines.key()))
            faults.append({lines->first().paper->file, lines.key(),
                           QStringLiteral("immatriculation absente, portée par ") + lines->first().paper->name(),
                           &kind::Units});
}

} // namespace molven::check

#include "dossier/check/checks.h"

#include "reference/articles.h"
#include "reference/parameters.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <QSet>

namespace molven::check {

namespace {

const QString MolvenFile = QStringLiteral("molven.mdb");

/// One unit beside the lines that name it.
class UnitCheck {
public:
    UnitCheck(const Papers& papers, const Record& unit, const QList<UnitLine>& lines, Faults& faults)
        : papers_(papers), unit_(unit), lines_(lines), state_(unit[strproduit.tes_vte]), faults_(faults) {}

    void run() {
        if (state_.size() != 1 || !QStringLiteral("NLOA").contains(state_))
            return tell(QStringLiteral("état inconnu : ") + state_);
        if (unit_[strproduit.num_dep] == ReturnedDepot) return;
        if (checkSales() && checkDeliveries())
            if (const UnitLine* line = holdingLine()) checkAgainst(*line);
    }

private:
    void tell(const QString& text, const Kind& kind = kind::Units) {
        faults_.append({MolvenFile, unit_[strproduit.imm_art], text, &kind});
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
        if (isSold && !lineOf(true))
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

    /// The line of the document that the unit names, of a sale or another.
    const UnitLine* lineOf(bool sale) const {
        for (auto line = lines_.rbegin(); line != lines_.rend(); ++line)
            if (line->paper->number == document() && sale == (line->paper->family->sells && !line->takesBack))
                return &*line;
        return nullptr;
    }

    /// The line that put the unit where it is; null for a unit that no document holds.
    const UnitLine* holdingLine() {
        if (state_ == state::InSet) return nullptr;
        if (const UnitLine* line = lineOf(state_ == state::Sold)) return line;
        if (!document().isEmpty() && document() != u"000000")
            tell(QStringLiteral("en stock, sans ligne sur son document ") + document());
        return nullptr;
    }

    void checkAgainst(const UnitLine& line) {
        const Paper& paper = *line.paper;
        const QString name = paper.name();
        if (line.reference.compare(unit_[strproduit.ref_art], Qt::CaseInsensitive) != 0)
            tell(QStringLiteral("article %1 sur %2").arg(line.reference, name));
        if (unit_[strproduit.clt_vte] != paper.client || unit_[strproduit.dat_vte] != paper.date)
            tell(QStringLiteral("client ou date autres que ceux de ") + name);
        const bool isTransfer = !paper.family->isPriced;
        const QString depot = isTransfer ? paper.depot : line.depot;
        const bool isHome = line.takesBack && unit_[strproduit.num_dep] == MainDepot;
        if (!depot.isEmpty() && !isHome && unit_[strproduit.num_dep] != depot)
            tell(QStringLiteral("dépôt %1 pour %2 sur %3").arg(unit_[strproduit.num_dep], depot, name));
        checkPatient(line);
        checkLot(line);
    }

    /// The patient entered on the unit itself stands with a date or hospital of its own.
    void checkPatient(const UnitLine& line) {
        const Paper* note = line.note.isEmpty() ? nullptr : papers_.find(line.paper->series, families()[0], line.note);
        const Paper& entered = note ? *note : *line.paper;
        const QString patient = unit_[strproduit.reg_pat];
        if (state_ == state::InStock || entered.patient.isEmpty() || patient == entered.patient ||
            patient == line.paper->patient)
            return;
        if (patient.isEmpty())
            tell(QStringLiteral("patient absent : %1 sur %2").arg(entered.patient, entered.name()), kind::Patients);
        else if (unit_[strproduit.reg_dat] == entered.date && unit_[strproduit.reg_clt] == entered.client)
            tell(QStringLiteral("patient %1, %2 sur %3").arg(patient, entered.patient, entered.name()), kind::Patients);
    }

    void checkLot(const UnitLine& line) {
        static const QString Lot = QStringLiteral("N° Lot : ");
        if (!line.identification.startsWith(Lot)) return;
        const QString printed = line.identification.mid(Lot.size()).section(QStringLiteral("  N° pièce"), 0, 0);
        if (const QString lot = unit_[strproduit.lot_art]; lot.trimmed() != printed.trimmed())
            tell(QStringLiteral("lot « %1 », « %2 » sur %3").arg(lot, printed, line.paper->name()), kind::Patients);
    }

    const Papers& papers_;
    const Record& unit_;
    const QList<UnitLine>& lines_;
    const QString state_;
    Faults& faults_;
};

} // namespace

void checkUnits(references::Files& files, const Papers& papers, Faults& faults) {
    QSet<QString> seen, numbers;
    for (const Record& unit : files[DataFile::Molven].select(strproduit)) {
        const QString number = unit[strproduit.imm_art], key = unit[strproduit.pro_ann] + number;
        if (seen.contains(key))
            faults.append({MolvenFile, key, QStringLiteral("immatriculation en double"), &kind::Units});
        seen.insert(key);
        numbers.insert(number);
        UnitCheck(papers, unit, papers.units().value(number), faults).run();
    }
    for (const Record& unit : files[DataFile::Historic].select(strproduit)) {
        const QString number = unit[strproduit.imm_art];
        if (seen.contains(unit[strproduit.pro_ann] + number))
            faults.append({QStringLiteral("historic.mdb"), number,
                           QStringLiteral("immatriculation aussi dans molven.mdb"), &kind::Units});
        numbers.insert(number);
    }
    for (auto lines = papers.units().begin(); lines != papers.units().end(); ++lines)
        if (!numbers.contains(lines.key()))
            faults.append({lines->first().paper->file, lines.key(),
                           QStringLiteral("immatriculation absente, portée par ") + lines->first().paper->name(),
                           &kind::Units});
}

QHash<QString, qint64> unitsInStock(Database molven) {
    QHash<QString, qint64> counted;
    const auto counts = molven.countBy(strproduit, strproduit.ref_art, strproduit.tes_vte != state::Sold);
    for (auto count = counts.begin(); count != counts.end(); ++count) counted[count.key().toUpper()] += count.value();
    return counted;
}

void checkQuantities(references::Files& files, Faults& faults) {
    QHash<QString, qint64> inStock = unitsInStock(files[DataFile::Molven]);
    for (const Record& row : files[DataFile::Molven].select(strarticle, strarticle.art_aig == follow_up::ByUnit)) {
        const QString reference = row[strarticle.art_ref];
        const Decimal counted = static_cast<long long>(inStock.take(reference.toUpper()));
        if (const Decimal stock = row[strarticle.art_stk]; stock != counted)
            faults.append({MolvenFile, reference,
                           QStringLiteral("art_stk = %1 pour %2 unités").arg(stock.toString(), counted.toString()),
                           &kind::Quantities});
    }
    for (auto left = inStock.begin(); left != inStock.end(); ++left)
        faults.append(
            {MolvenFile, left.key(), QStringLiteral("unités d'un article absent ou non suivi"), &kind::Units});
}

void checkSets(references::Files& files, Faults& faults) {
    QHash<QString, std::pair<QString, QString>> places; // unit -> set and its depot
    for (const Record& line : files[DataFile::Ancillaire].select(strstock, strstock.stk_imm_art != QString())) {
        const QString unit = line[strstock.stk_imm_art];
        if (places.contains(unit))
            faults.append(
                {QStringLiteral("ancillaire.mdb"), unit, QStringLiteral("sur deux lignes d'ancillaire"), &kind::Sets});
        places.insert(unit, {line[strstock.stk_anc_imm], line[strstock.stk_num_dep]});
    }
    const Criterion concerned = strproduit.tes_vte == state::InSet || strproduit.stk_anc_imm != QString();
    for (const Record& unit : files[DataFile::Molven].select(strproduit, concerned)) {
        const QString number = unit[strproduit.imm_art];
        const auto [set, depot] = places.take(number);
        const auto fault = [&](const QString& text) { faults.append({MolvenFile, number, text, &kind::Sets}); };
        if (set.isEmpty())
            fault(QStringLiteral("dans un ancillaire qui ne la contient pas"));
        else if (unit[strproduit.tes_vte] != state::InSet || unit[strproduit.stk_anc_imm] != set)
            fault(QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(set));
        else if (unit[strproduit.num_dep] != depot)
            fault(QStringLiteral("dépôt %1, son ancillaire %2 est en %3").arg(unit[strproduit.num_dep], set, depot));
    }
    for (auto place = places.begin(); place != places.end(); ++place)
        faults.append({QStringLiteral("ancillaire.mdb"), place.key(),
                       QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(place->first), &kind::Sets});
}

} // namespace molven::check

#include "sales/unit_rules.h"

#include "data/errors.h"
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
    QString buyer; ///< credit notes: client whose own sale may have put a unit in any depot

    Criterion criterion() const {
        const Criterion there = isOneOf(strproduit.num_dep, depots);
        if (buyer.isEmpty()) return there;
        return there || (strproduit.clt_vte == buyer && strproduit.num_dep != ReturnedDepot);
    }
    bool holds(const Record& unit) const {
        const QString depot = unit[strproduit.num_dep];
        return depots.contains(depot, Qt::CaseInsensitive) ||
               (!buyer.isEmpty() && unit[strproduit.clt_vte] == buyer && depot != ReturnedDepot);
    }
};

Source sourceOf(SalesBook& book, const Record& header) {
    if (book.kind().isTransfer())
        return {{header[strbtre.fac_depd]}, QStringLiteral("Cette immatriculation est au dépôt"), {}};
    const QString own = clientDepot(book, header);
    if (book.kind().isCredit)
        return {{own},
                QStringLiteral("Cette immatriculation n'est pas dans le depot client"),
                header[book.kind().headers.fac_clt]};
    if (!book.kind().isDelivery() && book.rules().sellsFromDepot261() &&
        header[book.kind().headers.fac_dep] == SecondaryDepot)
        return {{SecondaryDepot}, QStringLiteral("Cette immatriculation n'est pas au depot 261"), {}};
    if (book.kind().isDelivery() && !book.deliversFromClientDepot())
        return {{MainDepot}, QStringLiteral("Cette immatriculation n'est pas dans le depot 001"), {}};
    return {{MainDepot, own},
            QStringLiteral("Cette immatriculation n'est ni dans le depot 001, ni dans celui du client"),
            {}};
}

[[noreturn]] void refuse(const QString& message) { throw Refusal(message, strlivl.fac_imm.name); }

enum class Obstacle { None, Delivered, Sold, NotSold, Elsewhere };

Obstacle obstacleOf(const DocumentKind& kind, const Source& source, const Record& unit) {
    const QString unitState = unit[strproduit.tes_vte];
    if (unitState == state::Delivered) return Obstacle::Delivered;
    if (kind.isCredit && unitState != state::Sold) return Obstacle::NotSold;
    if (!kind.isCredit && unitState == state::Sold) return Obstacle::Sold;
    return unitState == state::InSet || !source.holds(unit) ? Obstacle::Elsewhere : Obstacle::None;
}

QString words(Obstacle obstacle, const Source& source) {
    switch (obstacle) {
    case Obstacle::Delivered:
        return QStringLiteral("Cette immatriculation a été livrée");
    case Obstacle::Sold:
        return QStringLiteral("Cette immatriculation a été vendue");
    case Obstacle::NotSold:
        return QStringLiteral("Cette immatriculation n'a pas été vendue");
    default:
        return source.refusal;
    }
}

QString transferWords(Obstacle obstacle, const Record& unit) {
    const QString refused = QStringLiteral("Non transferable -- Immat : ") + unit[strproduit.imm_art];
    const QString document = unit[strproduit.num_vte], depot = unit[strproduit.num_dep];
    if (obstacle == Obstacle::Delivered) return refused + QStringLiteral(" a été livré , BL N° : ") + document;
    if (obstacle == Obstacle::Sold) return refused + QStringLiteral(" a été vendue , FACT N° : ") + document;
    return refused + QStringLiteral(" est au dépot : ") + depot;
}

void requireNoObstacle(const DocumentKind& kind, const Source& source, const Record& unit, bool isTyped) {
    const Obstacle obstacle = obstacleOf(kind, source, unit);
    if (obstacle == Obstacle::None) return;
    refuse(isTyped || !kind.isTransfer() ? words(obstacle, source) : transferWords(obstacle, unit));
}

Record checked(SalesBook& book, const Source& source, const QString& number, bool isTyped) {
    const auto unit = units::find(book.molven, Immatriculation::fromText(number));
    if (!unit) refuse(QStringLiteral("Immatriculation inconnue"));
    requireNoObstacle(book.kind(), source, *unit, isTyped);
    return *unit;
}

} // namespace

Record check(SalesBook& book, const Record& header, const QString& typed) {
    return checked(book, sourceOf(book, header), typed, true);
}

QList<Record> checkAll(SalesBook& book, const Record& header, const QStringList& numbers, const LeftBy& leftBy) {
    const Reading together(book.workspace);
    units::foresee(book.molven, numbers);
    if (!book.kind().isTransfer()) parties::foreseeClient(book.molven, header[book.kind().headers.fac_clt]);
    const Source source = sourceOf(book, header);
    QHash<QString, qsizetype> taken;
    QList<Record> found;
    for (const QString& number : numbers) {
        if (const auto before = taken.constFind(number); leftBy && before != taken.constEnd())
            requireNoObstacle(book.kind(), source, leftBy(*before, found[*before]), false);
        taken.insert(number, found.size());
        found.append(checked(book, source, number, false));
    }
    return found;
}

Criterion available(SalesBook& book, const Record& header, const QString& reference) {
    const QString unitState = book.kind().isCredit ? state::Sold : state::InStock;
    return strproduit.ref_art == reference && strproduit.tes_vte == unitState && sourceOf(book, header).criterion();
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

Warnings warnings(SalesBook& book, const Record& header, const Record& unit) {
    Warnings found;
    const QString named = QStringLiteral("Immatriculation ") + unit[strproduit.imm_art];
    if (book.kind().isCredit) {
        const QString buyer = unit[strproduit.clt_vte];
        if (!buyer.isEmpty() && buyer != header[book.kind().headers.fac_clt])
            found.doubts.append(named + QStringLiteral(" : vendue au client ") + buyer);
        return found;
    }
    if (book.kind().isTransfer() && header[strbtre.fac_depa] == MainDepot) return found;
    const QString expiry = unit[strproduit.dat_per];
    if (unit[strproduit.fab_con] == list::Scrapped)
        found.doubts.append(named + QStringLiteral(" : ") + units::conformityText(book.molven, unit));
    if (units::expiryOf(unit) == units::Expiry::Past)
        found.doubts.append(named + QStringLiteral(" périmée depuis ") + expiry);
    else if (units::expiryOf(unit) == units::Expiry::Soon)
        found.notes.append(named + QStringLiteral(" : péremption proche, ") + expiry);
    return found;
}

} // namespace molven::unit_rules

#include "stock/unit_integration.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/receipt.h"
#include "stock/units.h"

#include <QSet>

#include <algorithm>

namespace molven::unit_integration {

namespace {

/// What the sender's unit is called: by his number, or by the serial of a partner who has none.
QString serialOf(const Record& received) {
    const QString number = received[tripro.imm_art].trimmed();
    return number.isEmpty() ? received[tripro.fou_imm].trimmed() : number;
}

/// The same unit, whoever delivered it.
Criterion sameUnit(const Record& received) {
    return strproduit.fou_imm == serialOf(received) && strproduit.fou_ref == received[tripro.ref_art].trimmed();
}

bool isIn(const UnitFiles& files, const Criterion& units) {
    const QList<Database> all = files.all();
    return std::any_of(all.begin(), all.end(), [&](Database file) { return file.count(strproduit, units) > 0; });
}

class Integration {
public:
    Integration(const Session& session, UnitFiles files, const Order& order)
        : session_(session), rules_(session.rules()), files_(files), order_(order) {}

    bool isPresent(const Record& received) {
        const Criterion same = sameUnit(received) && strproduit.fou_cde == order_.supplier;
        return isIn(files_, same);
    }

    const std::optional<Record>& articleOf(const Record& received) {
        const QString reference = received[tripro.ref_art].trimmed();
        auto known = articles_.find(reference);
        if (known == articles_.end())
            known = articles_.insert(reference, files_.molven.find(strarticle,
                                                                   strarticle.art_rfou == reference &&
                                                                       strarticle.art_rfou != QString() &&
                                                                       strarticle.art_aig == follow_up::ByUnit,
                                                                   strarticle.art_ref));
        return *known;
    }

    QString create(const Record& received, const Immatriculation& number) {
        Record unit(strproduit);
        const Record& article = *articleOf(received);
        fillFromSender(unit, received);
        unit[strproduit.ref_art] = QString(article[strarticle.art_ref]);
        unit[strproduit.pro_typ] = QString(article[strarticle.art_typ]);
        for (const Assignment& held : units::fromArticle(article)) unit.set(held.field, held.value);
        fillOrder(unit, received);
        unit[strproduit.imm_art] = number.number();
        unit[strproduit.pro_ann] = number.century();
        unit[strproduit.tes_vte] = state::InStock;
        for (const Text* never : {&strproduit.dat_rel, &strproduit.dat_sel}) unit[*never] = QStringLiteral("00000000");
        unit[strproduit.dat_cre] = sortKey(Clock::today());
        unit[strproduit.mot_pas] = session_.code_util;
        files_.molven.insert(unit);
        if (unit[strproduit.pro_typ] == u"F") files_.molven.insert(units::conformityChange(files_.molven, unit));
        received_[unit[strproduit.ref_art]][unit.value(strproduit.pro_pac)] += Decimal(1);
        return number.number();
    }

    void updateArticles() {
        for (auto article = received_.begin(); article != received_.end(); ++article)
            for (auto price = article->begin(); price != article->end(); ++price)
                receipts::addToArticle(files_.molven, rules_, article.key(), price.value(),
                                       Decimal::fromText(price.key()));
    }

private:
    void fillFromSender(Record& unit, const Record& received) {
        const ProductUnits& from = tripro;
        for (const Text* field :
             {&from.lot_art, &from.ino_cer, &from.pee_cer, &from.reg_art, &from.pie_art, &from.num_ste, &from.dat_ste,
              &from.dat_per, &from.nof_art, &from.fab_con, &from.fab_cau})
            unit.set(*strproduit.field(field->name), received.value(*field));
        for (const Assignment& placed : units::placedIn(files_.molven, rules_, MainDepot))
            unit.set(placed.field, placed.value);
        if (rules_.keepsSterilisationIndex()) {
            unit[strproduit.ind_ste] = QString(received[from.ind_ste]);
            unit[strproduit.num_conf] = QString(received[from.num_conf]);
            // A family of depots that is known to the sender alone says nothing here.
            if (codes::find(files_.molven, codes::DepotFamily, received[from.fam_dep]))
                unit[strproduit.fam_dep] = QString(received[from.fam_dep]);
        }
        if (unit[strproduit.fab_con].isEmpty()) unit[strproduit.fab_con] = QStringLiteral("O");
        unit[strproduit.fou_imm] = serialOf(received);
        unit[strproduit.fou_ref] = received[from.ref_art].trimmed();
        unit[strproduit.pro_pac] = Decimal(received[from.pro_vte]);
        const QString currency = received[from.pro_mon];
        unit[strproduit.pro_mon] = codes::find(files_.molven, codes::Currency, currency) ? currency : session_.spe_mon;
    }

    void fillOrder(Record& unit, const Record& received) {
        unit[strproduit.fou_cde] = order_.supplier;
        unit[strproduit.num_liv] = QString(received[tripro.num_vte]);
        if (order_.supplier == rules_.sisterSupplier()) unit[strproduit.num_cde] = QString(received[tripro.num_vte]);
        unit[strproduit.dat_cde] = order_.orderDate;
        unit[strproduit.tri_cde] = sortKey(order_.orderDate);
        unit[strproduit.dat_liv] = order_.deliveryDate;
        unit[strproduit.tri_liv] = sortKey(order_.deliveryDate);
    }

    const Session& session_;
    const CompanyRules rules_;
    UnitFiles files_;
    const Order order_;
    QHash<QString, std::optional<Record>> articles_; ///< by the sender's reference
    QMap<QString, QMap<QString, Decimal>> received_; ///< quantity by article and price
};

} // namespace

Order checked(UnitFiles files, Order order) {
    order.supplier = padded(order.supplier, 6);
    require(parties::findSupplier(files.molven, order.supplier).has_value(), QStringLiteral("Code fournisseur inconnu"),
            QStringLiteral("txtfou_cde"));
    require(dateFromText(order.orderDate).isValid(), QStringLiteral("date invalide"), QStringLiteral("Mskdatcde"));
    require(dateFromText(order.deliveryDate).isValid(), QStringLiteral("date invalide"), QStringLiteral("Mskdatliv"));
    return order;
}

qsizetype fromAnotherSupplier(UnitFiles files, const QList<Record>& received, const QString& supplier) {
    return std::count_if(received.begin(), received.end(), [&](const Record& unit) {
        const Criterion other = sameUnit(unit) && strproduit.fou_cde != supplier;
        return !serialOf(unit).isEmpty() && isIn(files, other);
    });
}

Outcome integrate(const Session& session, UnitFiles files, const QList<Record>& received, const Order& order,
                  const Progress& progress) {
    Transaction transaction(files.molven.workspace(), QStringLiteral("Intégration"));
    Integration integration(session, files, checked(files, order));
    Outcome outcome;
    QList<Record> taken;
    QSet<QStringList> seen;
    for (const Record& unit : received) {
        const QStringList name{serialOf(unit), unit[tripro.ref_art].trimmed()};
        if (integration.isPresent(unit) || seen.contains(name)) {
            ++outcome.present;
        } else if (!integration.articleOf(unit)) {
            outcome.unknown.append(unit);
        } else {
            taken.append(unit);
            seen.insert(name);
        }
    }
    require(outcome.present < received.size(),
            QStringLiteral("Ce fichier a déjà été intégré : ") + counted(received.size(), QStringLiteral("produit")),
            QStringLiteral("txtno"));
    if (taken.isEmpty()) return outcome;
    const auto first = Immatriculation::next(files, dateFromText(order.deliveryDate), static_cast<int>(taken.size()));
    for (qsizetype i = 0; i < taken.size(); ++i) {
        tell(progress, i, taken.size());
        outcome.created.append(integration.create(taken[i], first.plus(static_cast<int>(i))));
    }
    integration.updateArticles();
    transaction.commit();
    return outcome;
}

} // namespace molven::unit_integration

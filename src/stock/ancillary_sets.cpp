#include "stock/ancillary_sets.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "stock/set_types.h"
#include "stock/unit_locks.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::ancillary_sets {

namespace {

const QString HeaderLine = QStringLiteral("000");
const QString CompositionDeed = QStringLiteral("Composition d'un ancillaire");

Criterion unitLinesOf(const QString& serial) {
    return strstock.stk_anc_imm == serial && strstock.stk_anc_imm_lg != HeaderLine;
}

Record lineOf(const QString& serial, const QString& type, const QString& label, const QString& line) {
    Record record(strstock);
    record[strstock.stk_anc_imm] = serial;
    record[strstock.stk_anc_code] = type;
    record[strstock.stk_anc_lib] = label;
    record[strstock.stk_anc_imm_lg] = line;
    record[strstock.stk_num_dep] = SetDepot;
    record[strstock.stk_tes_vte] = state::InStock;
    record[strstock.stk_dat_vte] = EmptyDate;
    return record;
}

/// The number of sets that a type says there are.
void putCount(Database ancillaire, const QString& type) {
    const qint64 sets =
        ancillaire.count(strstock, strstock.stk_anc_code == type && strstock.stk_anc_imm_lg == HeaderLine);
    ancillaire.update(strancillaire, {{strancillaire.anc_stk, QString::number(sets)}}, strancillaire.anc_code == type);
}

QList<Assignment> withoutDocument() {
    QList<Assignment> emptied;
    for (const Field* field :
         QList<const Field*>{&strproduit.clt_dep, &strproduit.nom_dep, &strproduit.nbl_dep, &strproduit.num_vte,
                             &strproduit.dat_vte, &strproduit.tri_vte, &strproduit.clt_vte, &strproduit.ref_vte})
        emptied.append({*field, {}});
    return emptied;
}

} // namespace

QString create(Database ancillaire, const QString& type) {
    const Locks locks = Locks::of({unit_locks::sets()});
    return Transaction::run(ancillaire.workspace(), QStringLiteral("Création d'un ancillaire"), locks, [&] {
        const auto known = ancillaire.find(strancillaire, strancillaire.anc_code == type);
        if (!known || ancillaire.count(strnomenclature, set_types::componentsOf(type)) == 0)
            throw Refusal(QStringLiteral("Cet ancillaire n'a pas de composant"));
        const Decimal last = Decimal::fromText(ancillaire.greatest(strstock, strstock.stk_anc_imm));
        const QString serial = format(last + 1, QStringLiteral("00000000"));
        const Record& read = *known;
        ancillaire.insert(lineOf(serial, read[strancillaire.anc_code], read[strancillaire.anc_lib], HeaderLine));
        putCount(ancillaire, type);
        return serial;
    });
}

QStringList unitsOf(Database ancillaire, const QString& serial) {
    QStringList units;
    for (const Record& line : lines(ancillaire, serial)) units.append(line[strstock.stk_imm_art]);
    return units;
}

Locks locksOf(const QString& serial, const QStringList& units) {
    return Locks::of(unit_locks::units(units)).with({unit_locks::set(serial)});
}

Record header(Database ancillaire, const QString& serial) {
    const auto found =
        ancillaire.find(strstock, strstock.stk_anc_imm == serial && strstock.stk_anc_imm_lg == HeaderLine);
    if (!found) throw Refusal(QStringLiteral("Cet ancillaire n'existe pas"), strstock.stk_anc_imm.name);
    return *found;
}

void requireAtHome(const Record& header) {
    if (header[strstock.stk_num_dep] != SetDepot)
        throw Refusal(QStringLiteral("Impossible, cet ancillaire n'est plus au dépôt principal"),
                      strstock.stk_anc_imm.name);
}

void requireUnitAtHome(const Record& line) {
    if (line[strstock.stk_num_dep] != SetDepot)
        throw Refusal(QStringLiteral("Impossible, ce produit n'est pas stocké au dépôt initial"),
                      strproduit.imm_art.name);
}

Recordset lines(Database ancillaire, const QString& serial) {
    return ancillaire.select(strstock, unitLinesOf(serial), strstock.stk_anc_imm_lg);
}

QList<Component> components(Database ancillaire, const Record& header) {
    const auto placed = ancillaire.countBy(strstock, strstock.stk_ref_art, unitLinesOf(header[strstock.stk_anc_imm]));
    QList<Component> found;
    for (const Record& line : ancillaire.select(strnomenclature, set_types::componentsOf(header[strstock.stk_anc_code]),
                                                strnomenclature.anc_lg)) {
        Component component{line[strnomenclature.anc_article], line[strnomenclature.anc_libart],
                            line[strnomenclature.anc_qte].toInteger()};
        for (auto count = placed.begin(); count != placed.end(); ++count)
            if (count.key().compare(component.reference, Qt::CaseInsensitive) == 0) component.placed += count.value();
        found.append(component);
    }
    return found;
}

bool isComplete(Database ancillaire, const Record& header) {
    const qint64 units = ancillaire.count(strstock, unitLinesOf(header[strstock.stk_anc_imm]));
    return units > 0 && units == set_types::unitsOf(ancillaire, header[strstock.stk_anc_code]);
}

QList<Record> offered(Database molven, const QString& reference) {
    QList<Record> found;
    for (const Record& unit : molven.select(strproduit,
                                            strproduit.ref_art == reference && strproduit.tes_vte == state::InStock &&
                                                strproduit.num_dep == MainDepot,
                                            {strproduit.pro_ann, strproduit.imm_art}))
        found.append(unit);
    if (found.isEmpty())
        throw Refusal(QStringLiteral("Aucun produit en stock pour la référence ") + reference,
                      strnomenclature.anc_article.name);
    const auto monthOf = [](const Record& unit) {
        const QString expiry = unit[strproduit.dat_per];
        return isMonthYear(expiry) ? expiry.right(4) + expiry.left(2) : QStringLiteral("999999");
    };
    std::stable_sort(found.begin(), found.end(),
                     [&](const Record& a, const Record& b) { return monthOf(a) < monthOf(b); });
    return found;
}

QStringList earliest(Database molven, const Component& component) {
    QStringList units;
    for (const Record& unit : offered(molven, component.reference).mid(0, component.lacking()))
        units.append(unit[strproduit.imm_art]);
    return units;
}

QList<Assignment> freed(const Files& files) {
    return units::placedIn(files.molven, files.rules, MainDepot) + withoutDocument() +
           QList<Assignment>{
               {strproduit.tes_vte, state::InStock}, {strproduit.stk_anc_imm, {}}, {strproduit.stk_anc_cod, {}}};
}

QList<Assignment> atHome(const Files& files) {
    return units::placedIn(files.molven, files.rules, SetDepot) + withoutDocument() +
           QList<Assignment>{{strproduit.tes_vte, state::InSet}};
}

namespace {

/// The unit of that number, in stock at the main depot.
Record freeUnit(Database molven, const Immatriculation& key) {
    const auto unit = units::find(molven, key);
    if (!unit) throw Refusal(QStringLiteral("Immatriculation inconnue"), strproduit.imm_art.name);
    if (unit->value(strproduit.tes_vte) != state::InStock || unit->value(strproduit.num_dep) != MainDepot)
        throw Refusal(QStringLiteral("Aucun produit en stock pour la référence ") + unit->value(strproduit.ref_art),
                      strproduit.imm_art.name);
    return *unit;
}

void placeUnit(const Files& files, const Record& set, const Record& unit) {
    Database molven = files.molven, ancillaire = files.ancillaire;
    const QString serial = set[strstock.stk_anc_imm], type = set[strstock.stk_anc_code];
    const int last = ancillaire.greatest(strstock, strstock.stk_anc_imm_lg, strstock.stk_anc_imm == serial).toInt();
    Record line = lineOf(serial, type, set[strstock.stk_anc_lib], padded(QString::number(last + 1), 3));
    line[strstock.stk_ref_art] = unit[strproduit.ref_art];
    line[strstock.stk_lib_art] = unit[strproduit.pro_li1];
    line[strstock.stk_imm_art] = unit[strproduit.imm_art];
    ancillaire.insert(line);
    molven.update(strproduit,
                  atHome(files) + QList<Assignment>{{strproduit.stk_anc_imm, serial}, {strproduit.stk_anc_cod, type}},
                  Immatriculation::fromText(unit[strproduit.imm_art]).criterion());
}

} // namespace

void place(const Files& files, const QString& serial, const QString& immatriculation) {
    Database molven = files.molven;
    Transaction::run(molven.workspace(), CompositionDeed, locksOf(serial, {immatriculation}), [&] {
        const Record unit = freeUnit(molven, Immatriculation::fromText(immatriculation));
        const Record set = header(files.ancillaire, serial);
        requireAtHome(set);
        placeUnit(files, set, unit);
    });
}

namespace {

/// Places units that the set lacks; its caller's transaction has them for itself.
void placeLacking(const Files& files, const QString& serial, const QStringList& numbers) {
    const Record set = header(files.ancillaire, serial);
    requireAtHome(set);
    QList<Component> wanted = components(files.ancillaire, set);
    for (const QString& number : numbers) {
        const Record unit = freeUnit(files.molven, Immatriculation::fromText(number));
        const QString reference = unit[strproduit.ref_art];
        const auto component = std::find_if(wanted.begin(), wanted.end(), [&](const Component& one) {
            return one.reference.compare(reference, Qt::CaseInsensitive) == 0;
        });
        if (component == wanted.end() || component->lacking() == 0)
            throw Refusal((component == wanted.end()
                               ? QStringLiteral("Immatriculation %1 : la référence %2 n'est pas dans la nomenclature")
                               : QStringLiteral("Immatriculation %1 : l'ancillaire a toutes ses unités de la référence "
                                                "%2"))
                              .arg(unit[strproduit.imm_art], reference),
                          strproduit.imm_art.name);
        ++component->placed;
        placeUnit(files, set, unit);
    }
}

} // namespace

void fill(const Files& files, const QString& serial, const QStringList& numbers) {
    Database molven = files.molven;
    Transaction::run(molven.workspace(), CompositionDeed, locksOf(serial, numbers),
                     [&] { placeLacking(files, serial, numbers); });
}

void takeOut(const Files& files, const QString& serial, const QString& immatriculation) {
    Database molven = files.molven, ancillaire = files.ancillaire;
    const Locks locks = locksOf(serial, {immatriculation});
    Transaction::run(molven.workspace(), QStringLiteral("Retrait d'un ancillaire"), locks, [&] {
        Recordset line = ancillaire.select(strstock, unitLinesOf(serial) && strstock.stk_imm_art == immatriculation);
        if (line.isEmpty())
            throw Refusal(QStringLiteral("L'immatriculation %1 n'est plus dans cet ancillaire").arg(immatriculation),
                          strproduit.imm_art.name);
        requireUnitAtHome(line.record());
        line.remove();
        molven.update(strproduit, freed(files), Immatriculation::fromText(immatriculation).criterion());
    });
}

void remove(const Files& files, const QString& serial) {
    Database molven = files.molven, ancillaire = files.ancillaire;
    const Locks locks = locksOf(serial, unitsOf(ancillaire, serial)).with({unit_locks::sets()});
    Transaction::run(molven.workspace(), QStringLiteral("Suppression d'un ancillaire"), locks, [&] {
        const Record set = header(ancillaire, serial);
        requireAtHome(set);
        const QStringList units = unitsOf(ancillaire, serial);
        Transaction ofAll(molven.workspace(), {}, locksOf(serial, units));
        for (const QString& unit : units)
            molven.update(strproduit, freed(files), Immatriculation::fromText(unit).criterion());
        ancillaire.remove(strstock, strstock.stk_anc_imm == serial);
        putCount(ancillaire, set[strstock.stk_anc_code]);
        ofAll.commit();
    });
}

} // namespace molven::ancillary_sets

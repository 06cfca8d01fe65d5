#include "stock/receipt.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/code_kinds.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/prices.h"
#include "stock/gs1.h"
#include "stock/unit_locks.h"
#include "stock/units.h"

#include <QSet>

#include <utility>

namespace molven::receipts {

namespace {

bool filled(const QString& value) { return !value.trimmed().isEmpty(); }

} // namespace

Record followedArticle(Database molven, const QString& reference) {
    require(filled(reference), "Ces zones sont obligatoires en saisie", "ref_art");
    const auto article = articles::find(molven, reference);
    require(article.has_value(), "Cet article n'existe pas", "ref_art");
    require((*article)[strarticle.art_aig] == follow_up::ByUnit, "référence non tenue en stock", "ref_art");
    return *article;
}

namespace {

/// The number typed when it is a whole one from 1 to `greatest`, else 0.
int wholeNumber(const QString& typed, int greatest) {
    const auto number = Decimal::parse(typed);
    const bool counts =
        number && !(*number < Decimal(1)) && !(*number > Decimal(greatest)) && number->rounded(0) == *number;
    return counts ? static_cast<int>(number->toInteger()) : 0;
}

int quantityOf(const Receipt& receipt) { return wholeNumber(receipt.quantity, Immatriculation::LastOfMonth); }

void checkDates(const Receipt& receipt) {
    require(dateFromText(receipt.deliveryDate).isValid(), "date livraison invalide", "dat_liv");
    require(isEmptyDate(receipt.plannedDate) || dateFromText(receipt.plannedDate).isValid(),
            "date prevue livraison invalide", "dat_dlv");
    require(isEmptyDate(receipt.orderDate) || dateFromText(receipt.orderDate).isValid(), "date commande invalide",
            "dat_cde");
}

/// A scan that could not be read is no lot and no serial.
void requireNoScan(const QString& text, const QString& field) {
    if (!gs1::isScan(text.trimmed())) return;
    gs1::parse(text.trimmed(), Clock::today(), field);
    throw Refusal(QStringLiteral("Code scanné incorrect"), field);
}

constexpr int MostPieces = 999; ///< three digits on the label

void checkManufactured(const Receipt& receipt) {
    require(filled(receipt.certificate1) && filled(receipt.certificate2) && filled(receipt.registerEntry) &&
                filled(receipt.pieces),
            "Les zones FABRIQUE sont obligatoires en saisie", "ino_cer");
    require(wholeNumber(receipt.pieces, MostPieces) > 0, "Nombre de pièces incorrect", "pie_art");
}

/// What is asked of a manufactured unit at its receipt only: its pieces are counted and its conformity is decided once.
void checkFirstEntry(Database molven, const Receipt& receipt, const Record& article) {
    const bool counted = article[strarticle.art_gpie] == u"O";
    require(!counted || wholeNumber(receipt.pieces, MostPieces) == quantityOf(receipt),
            "incohérence avec la quantité à entrer", "pie_art");
    units::checkConformity(molven, {receipt.conformity, receipt.cause}, strproduit.fab_con.name,
                           strproduit.fab_cau.name);
}

void checkGraft(const Receipt& receipt) {
    require(filled(receipt.certificate1) && filled(receipt.certificate2) && !isEmptyDate(receipt.registerEntry),
            "Les zones GREFFON sont obligatoires en saisie", "ino_cer");
    require(dateFromText(receipt.registerEntry).isValid(), "date prélèvement incorrecte", "reg_art");
    require(!filled(receipt.pieces) || wholeNumber(receipt.pieces, MostPieces) > 0, "Nombre de pièces incorrect",
            "pie_art");
}

void checkSterilisation(const Receipt& receipt) {
    require(isEmptyDate(receipt.sterilisationDate) || isMonthYear(receipt.sterilisationDate),
            "date stérilisation incorrecte", "dat_ste");
    require(isEmptyDate(receipt.expiryDate) || isMonthYear(receipt.expiryDate), "date péremption incorrecte",
            "dat_per");
}

/// A serial is one unit's for ever: told apart within the receipt, and from the units of the same supplier's reference
/// (of the same article when it has none), `changed` apart.
void checkSerials(UnitFiles files, const Receipt& receipt, const QString& changed) {
    const QStringList& serials = receipt.supplierSerials;
    if (serials.isEmpty()) return;
    const QString field = strproduit.fou_imm.name;
    QSet<QString> seen;
    for (const QString& serial : serials) {
        require(serial.trimmed().size() <= strproduit.fou_imm.size, "N° série fournisseur trop long", "fou_imm");
        if (seen.contains(serial.trimmed().toUpper()))
            throw Refusal(QStringLiteral("N° de série saisi deux fois : ") + serial, field);
        seen.insert(serial.trimmed().toUpper());
    }
    if (serials.size() != quantityOf(receipt) || seen.contains(QString()))
        throw Refusal(QStringLiteral("Saisir un N° de série par produit ou aucun : %1 pour une quantité de %2")
                          .arg(serials.size())
                          .arg(receipt.quantity),
                      field);
    const Criterion sameKind = filled(receipt.supplierReference)
                                   ? strproduit.fou_ref == receipt.supplierReference.trimmed()
                                   : strproduit.ref_art == receipt.reference;
    for (Database file : files.all())
        if (const auto holder = file.find(strproduit, isOneOf(strproduit.fou_imm, serials) && sameKind &&
                                                          strproduit.imm_art != changed))
            throw Refusal(QStringLiteral("Le N° de série %1 est déjà celui de l'immatriculation %2")
                              .arg(holder->value(strproduit.fou_imm), holder->value(strproduit.imm_art)),
                          field);
}

QString monthYear(const QString& typed) { return isEmptyDate(typed) ? QString() : typed.trimmed(); }
QString dayDate(const QString& typed) { return isEmptyDate(typed) ? QString() : typed.trimmed(); }

void fillOrder(Record& unit, const Receipt& receipt) {
    unit[strproduit.num_cde] = receipt.orderNumber.trimmed();
    unit[strproduit.dat_cde] = dayDate(receipt.orderDate);
    unit[strproduit.tri_cde] = sortKey(receipt.orderDate);
    unit[strproduit.fou_cde] = padded(receipt.supplier, 6);
    unit[strproduit.num_liv] = receipt.deliveryNumber.trimmed();
    unit[strproduit.dat_liv] = dayDate(receipt.deliveryDate);
    unit[strproduit.tri_liv] = sortKey(receipt.deliveryDate);
    unit[strproduit.dat_dlv] = dayDate(receipt.plannedDate);
    unit[strproduit.tri_dlv] = sortKey(receipt.plannedDate);
}

void fillByType(Record& unit, const Receipt& receipt, const QString& type) {
    unit[strproduit.pro_typ] = type;
    unit[strproduit.lot_art] = receipt.lot.trimmed();
    if (type == u"N") return;
    unit[strproduit.ino_cer] = receipt.certificate1.trimmed();
    unit[strproduit.pee_cer] = receipt.certificate2.trimmed();
    unit[strproduit.reg_art] = receipt.registerEntry.trimmed();
    unit[strproduit.pie_art] = receipt.pieces.trimmed();
    if (type == u"F") unit[strproduit.nof_art] = receipt.manufacturingOrder.trimmed();
}

void fillConformity(Record& unit, Database molven, const Receipt& receipt) {
    if (unit[strproduit.pro_typ] != u"F") return;
    unit[strproduit.fab_con] = receipt.conformity;
    unit[strproduit.fab_cau] = units::causeOf(molven, {receipt.conformity, receipt.cause});
}

void fillFromArticle(Record& unit, const Record& article) {
    unit[strproduit.ref_art] = QString(article[strarticle.art_ref]);
    for (const Assignment& held : units::fromArticle(article)) unit.set(held.field, held.value);
}

/// What the user enters of a unit, at its receipt or later.
void fillTyped(Record& unit, Database molven, const CompanyRules& rules, const Receipt& receipt,
               const Record& article) {
    fillOrder(unit, receipt);
    fillByType(unit, receipt, article[strarticle.art_typ]);
    if (article[strarticle.art_ste] == u"O") {
        unit[strproduit.num_ste] = receipt.sterilisationBatch.trimmed();
        unit[strproduit.dat_ste] = monthYear(receipt.sterilisationDate);
        unit[strproduit.dat_per] = monthYear(receipt.expiryDate);
        if (rules.keepsSterilisationIndex()) unit[strproduit.ind_ste] = receipt.sterilisationIndex.trimmed();
    }
    for (const Assignment& placed :
         units::placedIn(molven, rules, codes::completed(molven, codes::Depot, receipt.depot)))
        unit.set(placed.field, placed.value);
    unit[strproduit.pro_pac] = *Decimal::parse(receipt.purchasePrice);
    unit[strproduit.fou_ref] = receipt.supplierReference.trimmed();
}

/// The record that every unit of the receipt starts from.
Record unitOf(Database molven, const CompanyRules& rules, const Receipt& receipt, const Record& article) {
    Record unit(strproduit);
    fillFromArticle(unit, article);
    fillTyped(unit, molven, rules, receipt, article);
    fillConformity(unit, molven, receipt);
    unit[strproduit.tes_vte] = state::InStock;
    unit[strproduit.pro_mon] = receipt.currency;
    unit[strproduit.dat_rel] = QStringLiteral("00000000");
    unit[strproduit.dat_sel] = QStringLiteral("00000000");
    if (!receipt.operatorWord.isEmpty()) {
        unit[strproduit.dat_cre] = sortKey(Clock::today());
        unit[strproduit.mot_pas] = receipt.operatorWord;
    }
    if (rules.allocatesEan()) {
        unit[strproduit.pro_ean] = receipt.scannedEan.left(13);
        unit[strproduit.pro_ang] = receipt.eanCompanion;
    }
    return unit;
}

/// Throws Refusal with the first fault of an entry, in the order of the screen; `changed` is the number of the unit
/// whose receipt is entered again, empty at the first entry.
void check(UnitFiles files, const Receipt& receipt, const Record& article, const QString& changed = {}) {
    Database molven = files.molven;
    require(filled(receipt.supplier), "Ces zones sont obligatoires en saisie", "fou_cde");
    require(parties::findSupplier(molven, receipt.supplier).has_value(), "Ce fournisseur n'existe pas", "fou_cde");
    require(codes::find(molven, codes::Depot, receipt.depot).has_value(), "Ce dépôt n'existe pas", "num_dep");
    checkDates(receipt);
    require(quantityOf(receipt) > 0, "Quantité incorrecte", "txtqte");
    const auto price = Decimal::parse(receipt.purchasePrice);
    require(price && *price > Decimal(0), "Prix Achat obligatoire", "pro_pac");
    require(isPrice(*price), "Prix incorrect", "pro_pac");
    requireNoScan(receipt.lot, strproduit.lot_art.name);
    for (const QString& serial : receipt.supplierSerials) requireNoScan(serial, strproduit.fou_imm.name);
    require(receipt.lot.trimmed().size() <= strproduit.lot_art.size, "N° Lot trop long", "lot_art");
    checkSerials(files, receipt, changed);
    const QString type = article[strarticle.art_typ];
    if (type == u"F") checkManufactured(receipt);
    if (type == u"F" && changed.isEmpty()) checkFirstEntry(molven, receipt, article);
    if (type == u"G") checkGraft(receipt);
    if (type == u"N") require(filled(receipt.lot), "Le N° LOT est obligatoire en saisie", "lot_art");
    if (article[strarticle.art_ste] == u"O") checkSterilisation(receipt);
}

} // namespace

/// (old stock x old average + new quantity x new price) / new stock.
void addToArticle(Database molven, const CompanyRules& rules, const QString& reference, const Decimal& quantity,
                  const Decimal& price) {
    const Record article = articles::find(molven, reference).value();
    const Decimal stock = article[strarticle.art_stk] + quantity;
    const Decimal value = article[strarticle.art_stk] * article[strarticle.art_pam] + price * quantity;
    const Decimal average =
        stock.isZero() ? article[strarticle.art_pam] : (value / stock).rounded(rules.purchasePriceDecimals());
    molven.update(strarticle,
                  {{strarticle.art_stk, stock.toString()},
                   {strarticle.art_dpa, price.toString()},
                   {strarticle.art_pam, average.toString()}},
                  strarticle.art_ref == reference);
}

namespace {

constexpr qsizetype Together = 1000; ///< units that are written by one change

void insertAll(Database molven, const QList<Record>& received) {
    molven.insert(received);
    QList<Record> decided;
    for (const Record& unit : received)
        if (unit[strproduit.pro_typ] == u"F") decided.append(units::conformityChange(molven, unit));
    molven.insert(decided);
}

Created receiveAlone(UnitFiles files, const CompanyRules& rules, const Receipt& receipt, const Progress& progress) {
    Database molven = files.molven;
    const Record article = followedArticle(molven, receipt.reference);
    check(files, receipt, article);
    const int quantity = quantityOf(receipt);
    Record unit = unitOf(molven, rules, receipt, article);
    const Immatriculation first = receipt.firstNumber.isEmpty()
                                      ? Immatriculation::next(files, dateFromText(receipt.deliveryDate), quantity)
                                      : Immatriculation::imposed(files, receipt.firstNumber, quantity);
    QList<Record> together;
    for (int i = 0; i < quantity; ++i) {
        tell(progress, i, quantity);
        const Immatriculation immatriculation = first.plus(i);
        unit[strproduit.imm_art] = immatriculation.number();
        unit[strproduit.pro_ann] = immatriculation.century();
        unit[strproduit.fou_imm] = receipt.supplierSerials.value(i).trimmed();
        together.append(unit);
        if (together.size() == Together || i == quantity - 1) insertAll(molven, std::exchange(together, {}));
    }
    addToArticle(molven, rules, article[strarticle.art_ref], quantity, unit[strproduit.pro_pac]);
    return {first.number(), first.plus(quantity - 1).number()};
}

} // namespace

Created receive(UnitFiles files, const CompanyRules& rules, const Receipt& receipt, const Progress& progress) {
    return Transaction::run(files.molven.workspace(), ReceiptDeed, receiptLocks({receipt.reference}),
                            [&] { return receiveAlone(files, rules, receipt, progress); });
}

Locks receiptLocks(const QStringList& references) {
    QStringList names{unit_locks::numbers()};
    for (const QString& reference : references) names.append(unit_locks::article(reference));
    return Locks::of(names);
}

void change(UnitFiles files, const CompanyRules& rules, const Receipt& receipt, const Record& before) {
    const Locks locks = Locks::of({unit_locks::unit(before[strproduit.imm_art])});
    Transaction::run(files.molven.workspace(), {}, locks, [&] {
        const Record article = followedArticle(files.molven, receipt.reference);
        check(files, receipt, article, before[strproduit.imm_art]);
        Record unit = before;
        fillTyped(unit, files.molven, rules, receipt, article);
        unit[strproduit.fou_imm] = receipt.supplierSerials.value(0).trimmed();
        units::change(files.molven, unit, before);
    });
}

} // namespace molven::receipts

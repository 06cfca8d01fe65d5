#include "stock/receipt.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/units.h"

namespace molven::receipts {

namespace {

bool filled(const QString& value) { return !value.trimmed().isEmpty(); }

void require(bool held, const char* message, const char* field) {
    if (!held) throw Refusal(QString::fromUtf8(message), QString::fromLatin1(field));
}

} // namespace

Record followedArticle(Database molven, const QString& reference) {
    require(filled(reference), "Ces zones sont obligatoires en saisie", "ref_art");
    const auto article = articles::find(molven, reference);
    require(article.has_value(), "Cet article n'existe pas", "ref_art");
    require(std::as_const(*article)[strarticle.art_aig] == follow_up::ByUnit, "référence non tenue en stock",
            "ref_art");
    return *article;
}

namespace {

int quantityOf(const Receipt& receipt) {
    const auto typed = Decimal::parse(receipt.quantity);
    if (!typed || *typed < Decimal(1) || *typed > Decimal(Immatriculation::LastOfMonth) || typed->rounded(0) != *typed)
        return 0;
    return static_cast<int>(typed->toInteger());
}

void checkDates(const Receipt& receipt) {
    require(dateFromText(receipt.deliveryDate).isValid(), "date livraison invalide", "dat_liv");
    require(isEmptyDate(receipt.plannedDate) || dateFromText(receipt.plannedDate).isValid(),
            "date prevue livraison invalide", "dat_dlv");
    require(isEmptyDate(receipt.orderDate) || dateFromText(receipt.orderDate).isValid(), "date commande invalide",
            "dat_cde");
}

void checkManufactured(Database molven, const Receipt& receipt, const Record& article) {
    require(filled(receipt.certificate1) && filled(receipt.certificate2) && filled(receipt.registerEntry) &&
                filled(receipt.pieces),
            "Les zones FABRIQUE sont obligatoires en saisie", "ino_cer");
    const bool counted = article[strarticle.art_gpie] == u"O";
    require(!counted || Decimal::parse(receipt.pieces) == Decimal(quantityOf(receipt)),
            "incohérence avec la quantité à entrer", "pie_art");
    if (receipt.conformity != u"O" && filled(receipt.cause))
        require(parameters::find(molven, receipt.conformity, receipt.cause).has_value(), "Cette cause n'existe pas",
                "fab_cau");
}

void checkGraft(const Receipt& receipt) {
    require(filled(receipt.certificate1) && filled(receipt.certificate2) && !isEmptyDate(receipt.registerEntry),
            "Les zones GREFFON sont obligatoires en saisie", "ino_cer");
    require(dateFromText(receipt.registerEntry).isValid(), "date prélèvement incorrecte", "reg_art");
}

void checkSterilisation(const Receipt& receipt) {
    require(isEmptyDate(receipt.sterilisationDate) || isMonthYear(receipt.sterilisationDate),
            "date stérilisation incorrecte", "dat_ste");
    require(isEmptyDate(receipt.expiryDate) || isMonthYear(receipt.expiryDate), "date péremption incorrecte",
            "dat_per");
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
    if (type != u"F") return;
    unit[strproduit.nof_art] = receipt.manufacturingOrder.trimmed();
    unit[strproduit.fab_con] = receipt.conformity;
    unit[strproduit.fab_cau] = receipt.cause.trimmed();
}

void fillFromArticle(Record& unit, const Record& article) {
    unit[strproduit.ref_art] = QString(article[strarticle.art_ref]);
    unit[strproduit.pro_vte] = article[strarticle.art_ttc]; // labels print it as the price with VAT
    unit[strproduit.pro_li1] = article[strarticle.art_li1];
    unit[strproduit.pro_tip] = article[strarticle.art_tip];
    unit[strproduit.pro_lpp] = article[strarticle.art_lpp];
    unit[strproduit.pro_nho] = article[strarticle.art_nho];
    unit[strproduit.pro_tar] = article[strarticle.art_tar];
}

/// The record that every unit of the receipt starts from.
Record unitOf(Database molven, const CompanyRules& rules, const Receipt& receipt, const Record& article) {
    Record unit(strproduit);
    fillFromArticle(unit, article);
    fillOrder(unit, receipt);
    fillByType(unit, receipt, article[strarticle.art_typ]);
    if (article[strarticle.art_ste] == u"O") {
        unit[strproduit.num_ste] = receipt.sterilisationBatch.trimmed();
        unit[strproduit.dat_ste] = monthYear(receipt.sterilisationDate);
        unit[strproduit.dat_per] = monthYear(receipt.expiryDate);
        if (rules.keepsSterilisationIndex()) unit[strproduit.ind_ste] = receipt.sterilisationIndex.trimmed();
    }
    unit[strproduit.num_dep] = receipt.depot.trimmed();
    if (rules.hasDepotFamilies()) unit[strproduit.fam_dep] = parameters::depotFamily(molven, receipt.depot);
    unit[strproduit.tes_vte] = state::InStock;
    unit[strproduit.pro_pac] = Decimal::fromText(receipt.purchasePrice);
    unit[strproduit.fou_imm] = receipt.supplierSerial.trimmed();
    unit[strproduit.fou_ref] = receipt.supplierReference.trimmed();
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

/// Average price weighted by quantity: (old stock x old average + new quantity x new price) / new stock.
void updateArticle(Database molven, const CompanyRules& rules, const Record& article, const Decimal& quantity,
                   const Decimal& price) {
    const Decimal stock = article[strarticle.art_stk] + quantity;
    const Decimal value = article[strarticle.art_stk] * article[strarticle.art_pam] + price * quantity;
    const Decimal average =
        stock.isZero() ? article[strarticle.art_pam] : (value / stock).rounded(rules.purchasePriceDecimals());
    molven.update(strarticle,
                  {{strarticle.art_stk, stock.toString()},
                   {strarticle.art_dpa, price.toString()},
                   {strarticle.art_pam, average.toString()}},
                  strarticle.art_ref == article[strarticle.art_ref]);
}

} // namespace

void check(Database molven, const Receipt& receipt) {
    const Record article = followedArticle(molven, receipt.reference);
    require(filled(receipt.supplier), "Ces zones sont obligatoires en saisie", "fou_cde");
    require(parties::findSupplier(molven, receipt.supplier).has_value(), "Ce fournisseur n'existe pas", "fou_cde");
    require(parameters::find(molven, list::Depot, receipt.depot).has_value(), "Ce dépôt n'existe pas", "num_dep");
    checkDates(receipt);
    require(quantityOf(receipt) > 0, "Quantité incorrecte", "txtqte");
    const auto price = Decimal::parse(receipt.purchasePrice);
    require(price && !(*price < Decimal(0)), "Prix Achat obligatoire", "pro_pac");
    require(receipt.lot.trimmed().size() <= strproduit.lot_art.size, "N° Lot trop long", "lot_art");
    require(receipt.supplierSerial.trimmed().size() <= strproduit.fou_imm.size, "N° série fournisseur trop long",
            "fou_imm");
    const QString type = article[strarticle.art_typ];
    if (type == u"F") checkManufactured(molven, receipt, article);
    if (type == u"G") checkGraft(receipt);
    if (type == u"N") require(filled(receipt.lot), "Le N° LOT est obligatoire en saisie", "lot_art");
    if (article[strarticle.art_ste] == u"O") checkSterilisation(receipt);
}

Created receive(Database molven, const CompanyRules& rules, const Receipt& receipt, const Progress& progress) {
    Transaction transaction(molven.workspace(), QStringLiteral("Réception"));
    check(molven, receipt);
    const Record article = *articles::find(molven, receipt.reference);
    const int quantity = quantityOf(receipt);
    Record unit = unitOf(molven, rules, receipt, article);
    const Immatriculation first = receipt.firstNumber.isEmpty()
                                      ? Immatriculation::next(molven, dateFromText(receipt.deliveryDate), quantity)
                                      : Immatriculation::imposed(molven, receipt.firstNumber, quantity);
    for (int i = 0; i < quantity; ++i) {
        if (progress && !progress(i, quantity)) throw Refusal(QStringLiteral("Opération abandonnée"));
        const Immatriculation immatriculation = first.plus(i);
        unit[strproduit.imm_art] = immatriculation.number();
        unit[strproduit.pro_ann] = immatriculation.century();
        molven.insert(unit);
        if (std::as_const(unit)[strproduit.pro_typ] == u"F") molven.insert(units::conformityChange(molven, unit));
    }
    updateArticle(molven, rules, article, quantity, std::as_const(unit)[strproduit.pro_pac]);
    transaction.commit();
    return {first.number(), first.plus(quantity - 1).number()};
}

} // namespace molven::receipts

// What becomes of the boxes of a receipt: scanned into, emptied, filled with a unit that is modified. The screen itself
// is built in receipt_form.cpp.

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "screens/stock/receipt_form.h"
#include "screens/stock/serial_list.h"
#include "screens/stock/unit_card.h"
#include "stock/gs1.h"
#include "stock/units.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QGroupBox>
#include <QPushButton>

namespace molven {

namespace {

/// What stays as it was received when a unit is modified; conformity has a change of its own, with its history.
const QList<const Text*> KeptByChange{&strproduit.ref_art, &strproduit.dat_liv, &strproduit.imm_art,
                                      &strproduit.fab_con, &strproduit.fab_cau};

} // namespace

QStringList ReceiptForm::contents() const {
    QStringList texts;
    for (const FieldBox& box : panel_->boxes()) texts.append(panel_->edit(*box.field)->value().trimmed());
    return texts + QStringList{quantity_->value().trimmed(), serials_->serials().join(u'\n')};
}

bool ReceiptForm::mayDiscard() {
    if (contents() == untouched_) return true;
    const QString about = changed_ ? units::title(*changed_)
                                   : QStringLiteral("Entrée en stock : %1, quantité %2")
                                         .arg(panel_->edit(strproduit.ref_art)->value(), quantity_->value());
    return givesUp(about);
}

/// Makes ready for the next article of the same delivery.
void ReceiptForm::clearUnit() {
    for (const FieldBox& box : panel_->boxes()) {
        const bool ofDelivery =
            QList<const Field*>{&strproduit.fou_cde, &strproduit.num_cde, &strproduit.dat_cde, &strproduit.num_liv,
                                &strproduit.dat_liv, &strproduit.dat_dlv, &strproduit.num_dep}
                .contains(box.field);
        if (!ofDelivery) panel_->edit(*box.field)->put({});
    }
    panel_->edit(strproduit.fab_con)->put(QStringLiteral("O"));
    quantity_->put(QStringLiteral("1"));
    serials_->clear();
    serials_->expect(1);
    scannedEan_.clear();
    isTradeGoods_ = false;
    showArticle();
    untouched_ = contents();
}

void ReceiptForm::clearReceipt() {
    changed_.reset();
    showMode();
    quantity_->setEditable(true);
    for (const Text* field : KeptByChange) panel_->edit(*field)->setEditable(true);
    for (const FieldBox& box : panel_->boxes()) panel_->edit(*box.field)->put({});
    panel_->edit(strproduit.dat_liv)->put(dateText(Clock::today()));
    panel_->edit(strproduit.num_dep)->put(MainDepot);
    clearUnit();
}

void ReceiptForm::fill(const Receipt& receipt) {
    if (!mayDiscard()) return;
    clearReceipt();
    panel_->edit(strproduit.ref_art)->put(receipt.reference);
    quantity_->put(receipt.quantity);
    serials_->expect(quantity());
    const std::pair<const Text*, QString> values[]{{&strproduit.num_cde, receipt.orderNumber},
                                                   {&strproduit.num_liv, receipt.deliveryNumber},
                                                   {&strproduit.lot_art, receipt.lot},
                                                   {&strproduit.num_ste, receipt.sterilisationBatch},
                                                   {&strproduit.dat_ste, receipt.sterilisationDate},
                                                   {&strproduit.dat_per, receipt.expiryDate}};
    for (const auto& [field, value] : values) panel_->edit(*field)->put(value);
    panel_->edit(strproduit.pro_pac)->put(receipt.purchasePrice);
    if (quantity() > 1)
        for (const QString& serial : receipt.supplierSerials) serials_->add(serial, strproduit.fou_imm.name);
    else
        panel_->edit(strproduit.fou_imm)->put(receipt.supplierSerials.value(0));
    showArticle();
    validate_->setFocus();
}

/// A supplier's barcode in one of the boxes fills all that it says. False for a text that a person typed.
bool ReceiptForm::takeScan(Edit* edit) {
    const QString text = edit->text();
    if (!gs1::isScan(text)) return false;
    const Gs1Code code = gs1::parse(text, Clock::today(), edit->objectName());
    const auto article = articles::findScanned(molven_, code.ean(), code.supplierReference);
    if (!article && (!code.gtin.isEmpty() || !code.supplierReference.isEmpty()))
        throw Refusal(QStringLiteral("Référence inconnue : ") +
                          (code.gtin.isEmpty() ? code.supplierReference : code.gtin),
                      edit->objectName());
    requireSameGoods(code, article);
    edit->put({});
    scannedEan_ = code.ean();
    scannedReference_ = article ? article->value(strarticle.art_ref) : QString();
    const auto put = [this](const Text& field, const QString& value) {
        if (!value.isEmpty()) panel_->edit(field)->put(value);
    };
    if (article) put(strproduit.ref_art, (*article)[strarticle.art_ref]);
    put(strproduit.lot_art, code.lot);
    put(strproduit.dat_per, code.expiry.toString(QStringLiteral("MM/yyyy")));
    put(strproduit.fou_imm, code.serial);
    put(strproduit.fou_ref, code.supplierReference);
    listSerial();
    return true;
}

/// The units of one receipt are the same article of the same lot: a scan of another kind must not rename those before.
void ReceiptForm::requireSameGoods(const Gs1Code& code, const std::optional<Record>& article) const {
    if (serials_->serials().isEmpty()) return;
    const auto differs = [this](const Text& field, const QString& scanned) {
        const QString typed = panel_->edit(field)->value().trimmed();
        return !gs1::isScan(typed) && !typed.isEmpty() && !scanned.isEmpty() &&
               typed.compare(scanned, Qt::CaseInsensitive) != 0;
    };
    const QString reference = article ? article->value(strarticle.art_ref) : QString();
    if (differs(strproduit.ref_art, reference) || differs(strproduit.lot_art, code.lot) ||
        differs(strproduit.dat_per, code.expiry.toString(QStringLiteral("MM/yyyy"))))
        throw Refusal(QStringLiteral("Ce produit n'est pas de la même référence, du même lot et de la même péremption "
                                     "que ceux déjà lus"),
                      strproduit.fou_imm.name);
}

/// The same boxes receive units and change one: which of both is seen at once.
void ReceiptForm::showMode() {
    box_->setTitle(changed_ ? QStringLiteral("Modification de l'immatriculation ") + (*changed_)[strproduit.imm_art]
                            : QStringLiteral("Entrée en stock"));
    style::markChanging(*box_, changed_.has_value());
    validate_->setText(changed_ ? QStringLiteral("&Valider la modification") : QStringLiteral("&Valider l'entrée"));
}

/// Brings a unit's receipt back into the boxes.
void ReceiptForm::startChanging(const Record& unit) {
    serials_->clear();
    serials_->expect(1);
    changed_ = unit;
    showMode();
    panel_->load(unit);
    quantity_->put(QStringLiteral("1"));
    quantity_->setEditable(false);
    for (const Text* field : KeptByChange) panel_->edit(*field)->setEditable(false);
    showArticle();
    untouched_ = contents();
    panel_->edit(strproduit.fou_cde)->setFocus();
}

/// Brings up what another workstation wrote of the unit being changed, and leaves what the user typed; the captions of
/// the boxes that the other changed are told.
void ReceiptForm::readAgain() {
    const Record before = *changed_;
    const auto now = units::find(molven_, Immatriculation::fromText(before[strproduit.imm_art]));
    if (!now) throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
    units::requireChangeable(*now);
    const QStringList shown = untouched_;
    QStringList typed, changedElsewhere;
    for (const FieldBox& box : panel_->boxes()) typed.append(panel_->edit(*box.field)->text());
    const QStringList read = contents();
    startChanging(*now);
    for (qsizetype i = 0; i < panel_->boxes().size(); ++i) {
        const FieldBox& box = panel_->boxes()[i];
        if (read[i] != shown[i]) panel_->edit(*box.field)->setText(typed[i]);
        if (before.value(*box.field) != now->value(*box.field))
            changedElsewhere.append(QString(box.caption).remove(u'&').remove(QStringLiteral(" :")));
    }
    throw Refusal(QStringLiteral("L'immatriculation %1 a été modifiée par un autre poste (%2). Vérifiez et validez.")
                      .arg(before[strproduit.imm_art], changedElsewhere.join(QStringLiteral(", "))));
}

void ReceiptForm::writeChange() {
    try {
        receipts::change(files_, session().rules(), typed(), *changed_);
    } catch (const DataError& error) {
        if (error.number != DataError::RecordChanged) throw;
        return readAgain();
    }
    units_->refresh();
    clearReceipt();
    units_->focusSearch();
}

} // namespace molven

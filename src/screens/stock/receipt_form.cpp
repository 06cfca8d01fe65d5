#include "screens/stock/receipt_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "screens/stock/unit_card.h"
#include "stock/gs1.h"
#include "stock/units.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<FieldBox> boxes() {
    const auto& u = strproduit;
    return {{&u.ref_art, QStringLiteral("Référence :"), {}, 0, {}, false, false, QStringLiteral("Cmdrefstk")},
            {&u.fou_cde, QStringLiteral("Fournisseur :"), {}, 0, {}, false, false, QStringLiteral("Cmdfoustk")},
            {&u.num_cde, QStringLiteral("N° commande :"), {}, 14},
            {&u.dat_cde, QStringLiteral("Date commande :"), {}, 0, {}, true},
            {&u.num_liv, QStringLiteral("N° BL fournisseur :"), {}, 14},
            {&u.dat_liv, QStringLiteral("Date réception :"), QStringLiteral("Mskdlivstk"), 0, {}, true},
            {&u.dat_dlv, QStringLiteral("Livraison prévue :"), {}, 0, {}, true},
            {&u.num_dep,
             QStringLiteral("Dépôt :"),
             QStringLiteral("Txtdepstk"),
             4,
             {},
             false,
             false,
             QStringLiteral("Cmddepstk")},
            {&u.pro_pac, QStringLiteral("Prix d'achat :"), {}, 10},
            {&u.lot_art, QStringLiteral("N° lot :"), {}, 14},
            {&u.num_ste, QStringLiteral("Lot stérilisation :"), {}, 14},
            {&u.dat_ste, QStringLiteral("Date stérilisation :"), {}, 0, {}, true},
            {&u.dat_per, QStringLiteral("Péremption :"), {}, 0, {}, true},
            {&u.ind_ste, QStringLiteral("Indice stérilisation :")},
            {&u.ino_cer, QStringLiteral("Certificat / N° tissu :"), {}, 14},
            {&u.pee_cer, QStringLiteral("2e certificat / N° donneur :"), {}, 14},
            {&u.reg_art, QStringLiteral("Registre / prélèvement :"), {}, 14},
            {&u.pie_art, QStringLiteral("Nombre de pièces :"), {}, 6},
            {&u.nof_art, QStringLiteral("Ordre fabrication :"), {}, 14},
            {&u.fab_con, QStringLiteral("Conformité O/X/Y/Z :")},
            {&u.fab_cau, QStringLiteral("Cause :")},
            {&u.fou_imm, QStringLiteral("N° série fournisseur :"), {}, 16},
            {&u.fou_ref, QStringLiteral("Réf. fournisseur :"), {}, 16},
            {&u.imm_art, QStringLiteral("Immat. imposée :")}};
}

QLabel* namedLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ReceiptForm::ReceiptForm(Desk& desk)
    : Form(desk, QStringLiteral("T_proges")), molven_(workspace_.open(session().molven())) {
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(buildReceipt(), 3);
    units_ = new UnitCard(*this);
    units_->changeWanted = [this](const Record& unit) { startChanging(unit); };
    layout->addWidget(units_, 2);
    setPickers();
    clearReceipt();
    resize(1260, 740);
    applyTitle(QStringLiteral("Gestion des entrées en stock"));
    panel_->edit(strproduit.ref_art)->setFocus();
}

QWidget* ReceiptForm::buildReceipt() {
    auto* box = new QGroupBox(QStringLiteral("Entrée en stock"), this);
    panel_ = new RecordPanel(boxes(), 2, box);
    for (const FieldBox& fieldBox : panel_->boxes()) bind(fieldBox.field->name, panel_->edit(*fieldBox.field));
    quantity_ = new Edit(box);
    quantity_->setObjectName(QStringLiteral("txtqte"));
    quantity_->setMaxLength(4);
    quantity_->setFixedWidth(60);
    quantity_->setAlignment(Qt::AlignRight);
    created_ = namedLabel(QStringLiteral("lblcrepro"), box);
    createdLast_ = namedLabel(QStringLiteral("lblcreprofin"), box);
    auto* fresh = button(QStringLiteral("CmdAjout"), QStringLiteral("&Nouvelle entrée"), [this] {
        clearReceipt();
        panel_->edit(strproduit.ref_art)->setFocus();
    });
    auto* validate = button(QStringLiteral("Cmdvalstk"), QStringLiteral("&Valider l'entrée"), [this] {
        if (changed_)
            writeChange();
        else
            receive();
    });
    auto* finish = button(QStringLiteral("Cmdfinstk"), QStringLiteral("&Fin de l'entrée"), [this] {
        clearReceipt();
        units_->focusSearch();
    });
    auto* quantityRow = new QHBoxLayout;
    auto* caption = new QLabel(QStringLiteral("&Quantité :"), box);
    caption->setBuddy(quantity_);
    quantityRow->addWidget(caption);
    quantityRow->addWidget(quantity_);
    quantityRow->addSpacing(20);
    quantityRow->addWidget(new QLabel(QStringLiteral("Créées du :"), box));
    quantityRow->addWidget(created_);
    quantityRow->addWidget(new QLabel(QStringLiteral("au :"), box));
    quantityRow->addWidget(createdLast_);
    quantityRow->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(fresh);
    buttons->addStretch();
    buttons->addWidget(validate);
    buttons->addWidget(finish);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(panel_);
    layout->addLayout(quantityRow);
    layout->addStretch();
    layout->addLayout(buttons);
    return box;
}

void ReceiptForm::setPickers() {
    const auto picker = [this](const Text& field, const Text& from,
                               const std::function<PickList(const pick_lists::Chosen&)>& makeList) {
        onPick(
            panel_->edit(field),
            [this, &field, &from, makeList] {
                pick(makeList([this, &field, &from](const Record& row) {
                    panel_->edit(field)->put(row[from]);
                    showArticle();
                }));
            },
            panel_->listButton(field));
        onLeft(panel_->edit(field), [this] { showArticle(); });
    };
    for (const Text* field : {&strproduit.ref_art, &strproduit.lot_art, &strproduit.fou_imm}) {
        Edit* edit = panel_->edit(*field);
        edit->setMaxLength(120); // room for a scan
        edit->takesScans = true;
    }
    for (const Text* field : {&strproduit.lot_art, &strproduit.fou_imm})
        onLeft(panel_->edit(*field), [this, edit = panel_->edit(*field)] {
            if (takeScan(edit)) return showArticle();
            if (edit == panel_->edit(strproduit.lot_art) && isTradeGoods_ && edit->value().trimmed().isEmpty())
                throw Refusal(QStringLiteral("N° Lot obligatoire"), strproduit.lot_art.name);
        });
    picker(strproduit.ref_art, strarticle.art_ref, [this](const pick_lists::Chosen& chosen) {
        return pick_lists::articles(molven_, chosen, strarticle.art_aig == follow_up::ByUnit);
    });
    picker(strproduit.fou_cde, strfournis.fou_cod,
           [this](const pick_lists::Chosen& chosen) { return pick_lists::suppliers(molven_, chosen); });
    picker(strproduit.num_dep, strparam.num_par, [this](const pick_lists::Chosen& chosen) {
        return pick_lists::parameters(molven_, list::Depot, QStringLiteral("LES DEPOTS"), chosen);
    });
}

/// The words beside the codes, and what the article presets.
void ReceiptForm::showArticle() {
    takeScan(panel_->edit(strproduit.ref_art));
    const QString reference = panel_->edit(strproduit.ref_art)->value().trimmed();
    const QString depot = panel_->edit(strproduit.num_dep)->value().trimmed();
    panel_->setHint(strproduit.num_dep, depot.isEmpty() ? QString() : parameters::label(molven_, list::Depot, depot));
    panel_->setHint(strproduit.ref_art, {});
    if (!reference.isEmpty()) {
        const Record article = receipts::followedArticle(molven_, reference);
        panel_->edit(strproduit.ref_art)->put(article[strarticle.art_ref]);
        panel_->setHint(strproduit.ref_art, article[strarticle.art_li1]);
        if (panel_->edit(strproduit.fou_cde)->value().isEmpty())
            panel_->edit(strproduit.fou_cde)->put(article[strarticle.art_fou]);
        if (panel_->edit(strproduit.fou_ref)->value().isEmpty())
            panel_->edit(strproduit.fou_ref)->put(article[strarticle.art_rfou]);
        showByType(article);
    }
    const auto supplier = parties::findSupplier(molven_, panel_->edit(strproduit.fou_cde)->value());
    panel_->setHint(strproduit.fou_cde, supplier ? QString(std::as_const(*supplier)[strfournis.fou_nom]) : QString());
}

/// Opens the boxes that the article's type needs.
void ReceiptForm::showByType(const Record& article) {
    const QString type = article[strarticle.art_typ];
    isTradeGoods_ = type == u"N";
    const bool manufactured = type == u"F", certified = manufactured || type == u"G";
    const bool sterile = article[strarticle.art_ste] == u"O";
    for (const Text* field : {&strproduit.ino_cer, &strproduit.pee_cer, &strproduit.reg_art, &strproduit.pie_art})
        panel_->edit(*field)->setEnabled(certified);
    for (const Text* field : {&strproduit.nof_art, &strproduit.fab_con, &strproduit.fab_cau})
        panel_->edit(*field)->setEnabled(manufactured);
    for (const Text* field : {&strproduit.num_ste, &strproduit.dat_ste, &strproduit.dat_per})
        panel_->edit(*field)->setEnabled(sterile);
    panel_->edit(strproduit.ind_ste)->setEnabled(sterile && session().rules().keepsSterilisationIndex());
}

Receipt ReceiptForm::typed() const {
    const auto value = [this](const Field& field) { return panel_->edit(field)->value().trimmed(); };
    Receipt receipt;
    receipt.reference = value(strproduit.ref_art);
    receipt.firstNumber = value(strproduit.imm_art);
    receipt.supplier = value(strproduit.fou_cde);
    receipt.orderNumber = value(strproduit.num_cde);
    receipt.orderDate = value(strproduit.dat_cde);
    receipt.deliveryNumber = value(strproduit.num_liv);
    receipt.deliveryDate = value(strproduit.dat_liv);
    receipt.plannedDate = value(strproduit.dat_dlv);
    receipt.quantity = quantity_->value().trimmed();
    receipt.purchasePrice = value(strproduit.pro_pac);
    receipt.depot = value(strproduit.num_dep);
    receipt.lot = value(strproduit.lot_art);
    receipt.certificate1 = value(strproduit.ino_cer);
    receipt.certificate2 = value(strproduit.pee_cer);
    receipt.registerEntry = value(strproduit.reg_art);
    receipt.pieces = value(strproduit.pie_art);
    receipt.manufacturingOrder = value(strproduit.nof_art);
    receipt.conformity = value(strproduit.fab_con);
    receipt.cause = value(strproduit.fab_cau);
    receipt.sterilisationBatch = value(strproduit.num_ste);
    receipt.sterilisationDate = value(strproduit.dat_ste);
    receipt.expiryDate = value(strproduit.dat_per);
    receipt.sterilisationIndex = value(strproduit.ind_ste);
    receipt.supplierSerial = value(strproduit.fou_imm);
    receipt.supplierReference = value(strproduit.fou_ref);
    return receipt;
}

/// A long receipt shows how far it is and can be abandoned.
receipts::Progress ReceiptForm::progress() {
    auto dialog = std::make_shared<QProgressDialog>(QStringLiteral("Création des produits"), QStringLiteral("&Annuler"),
                                                    0, 0, this);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMinimumDuration(500);
    return [dialog](int done, int total) {
        if (done % 50 > 0) return true;
        dialog->setMaximum(total);
        dialog->setValue(done);
        return !dialog->wasCanceled();
    };
}

void ReceiptForm::receive() {
    Receipt receipt = typed();
    receipt.operatorWord = session().code_util;
    receipt.scannedEan = scannedEan_;
    receipt.currency = parameters::companyCurrency(molven_, session().spe_mon);
    const receipts::Created created = receipts::receive(molven_, session().rules(), receipt, progress());
    created_->setText(created.first);
    createdLast_->setText(created.last);
    units_->list(strproduit.pro_ann == QStringLiteral("20") && strproduit.imm_art >= created.first &&
                 strproduit.imm_art <= created.last);
    prompt().tell(QStringLiteral("Nous allons créer l'immat ") + created.first);
    clearUnit();
    panel_->edit(strproduit.ref_art)->setFocus();
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
    scannedEan_.clear();
    isTradeGoods_ = false;
    showArticle();
}

void ReceiptForm::clearReceipt() {
    changed_.reset();
    quantity_->setEditable(true);
    for (const Text* field : {&strproduit.ref_art, &strproduit.dat_liv, &strproduit.imm_art})
        panel_->edit(*field)->setEditable(true);
    for (const FieldBox& box : panel_->boxes()) panel_->edit(*box.field)->put({});
    panel_->edit(strproduit.dat_liv)->put(dateText(Clock::today()));
    panel_->edit(strproduit.num_dep)->put(MainDepot);
    clearUnit();
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
    edit->put({});
    scannedEan_ = code.ean();
    const auto put = [this](const Text& field, const QString& value) {
        if (!value.isEmpty()) panel_->edit(field)->put(value);
    };
    if (article) put(strproduit.ref_art, std::as_const(*article)[strarticle.art_ref]);
    put(strproduit.lot_art, code.lot);
    put(strproduit.dat_per, code.expiry.toString(QStringLiteral("MM/yyyy")));
    put(strproduit.fou_imm, code.serial);
    put(strproduit.fou_ref, code.supplierReference);
    return true;
}

/// Brings a unit's receipt back into the boxes.
void ReceiptForm::startChanging(const Record& unit) {
    changed_ = unit;
    panel_->load(unit);
    quantity_->put(QStringLiteral("1"));
    quantity_->setEditable(false);
    for (const Text* field : {&strproduit.ref_art, &strproduit.dat_liv, &strproduit.imm_art})
        panel_->edit(*field)->setEditable(false);
    showArticle();
    panel_->edit(strproduit.fou_cde)->setFocus();
}

void ReceiptForm::writeChange() {
    Receipt receipt = typed();
    receipt.pieces = QStringLiteral("1"); // the pieces were counted at the receipt
    receipts::check(molven_, receipt);
    Record unit = *changed_;
    panel_->store(unit);
    unit[strproduit.fou_cde] = padded(receipt.supplier, 6);
    unit[strproduit.tri_cde] = sortKey(receipt.orderDate);
    unit[strproduit.tri_dlv] = sortKey(receipt.plannedDate);
    units::change(molven_, unit, *changed_);
    units_->refresh();
    clearReceipt();
    units_->focusSearch();
}

} // namespace molven

#include "screens/stock/receipt_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "screens/price_notice.h"
#include "screens/stock/serial_list.h"
#include "screens/stock/unit_card.h"
#include "stock/gs1.h"
#include "stock/units.h"
#include "ui/access_keys.h"
#include "ui/pick_lists.h"
#include "ui/progress.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<BoxGroup> receiptGroups() {
    const auto& u = strproduit;
    return {{QStringLiteral("Livraison"),
             {{&u.ref_art, QStringLiteral("Référence :"), {}, 0, {}, false, false, QStringLiteral("Cmdrefstk")},
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
              {&u.pro_pac, QStringLiteral("Prix d'achat :"), {}, 10}}},
            {QStringLiteral("Lot et stérilisation"),
             {{&u.lot_art, QStringLiteral("N° lot :"), {}, 14},
              {&u.num_ste, QStringLiteral("Lot stérilisation :"), {}, 14},
              {&u.dat_ste, QStringLiteral("Date stérilisation :"), {}, 0, {}, true},
              {&u.dat_per, QStringLiteral("Péremption :"), {}, 0, {}, true},
              {&u.ind_ste, QStringLiteral("Indice stérilisation :")}}},
            {QStringLiteral("Certificats et pièces"),
             {{&u.ino_cer, QStringLiteral("Certificat / N° tissu :"), {}, 14},
              {&u.pee_cer, QStringLiteral("2e certificat / N° donneur :"), {}, 14},
              {&u.reg_art, QStringLiteral("Registre / prélèvement :"), {}, 14},
              {&u.pie_art, QStringLiteral("Nombre de pièces :"), {}, 6}}},
            {QStringLiteral("Fabrication"),
             {{&u.nof_art, QStringLiteral("Ordre fabrication :"), {}, 14},
              {&u.fab_con, QStringLiteral("Conformité O/X/Y/Z :")},
              {&u.fab_cau, QStringLiteral("Cause :")}}},
            {QStringLiteral("Identification"),
             {{&u.fou_imm, QStringLiteral("N° sé&rie fournisseur :"), {}, 16},
              {&u.fou_ref, QStringLiteral("Réf. fournisseur :"), {}, 16},
              {&u.imm_art, QStringLiteral("Immat. imposée :")}}}};
}

QLabel* namedLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ReceiptForm::ReceiptForm(Desk& desk)
    : Form(desk, QStringLiteral("T_proges")), files_(openUnitFiles(workspace_, session())), molven_(files_.molven) {
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(buildReceipt(), 3);
    units_ = new UnitCard(*this);
    units_->changeWanted = [this](const Record& unit) {
        if (mayDiscard()) startChanging(unit);
    };
    layout->addWidget(units_, 2);
    setPickers();
    setScans();
    clearReceipt();
    resize(1260, 740);
    applyTitle(QStringLiteral("Gestion des entrées en stock"));
    setDefaultButton(validate_);
    panel_->edit(strproduit.ref_art)->setFocus();
}

QWidget* ReceiptForm::buildReceipt() {
    auto* box = box_ = new QGroupBox(this);
    panel_ = new RecordPanel(receiptGroups(), 2, box);
    panel_->markRequired({&strproduit.ref_art, &strproduit.fou_cde, &strproduit.pro_pac});
    for (const FieldBox& fieldBox : panel_->boxes()) bind(fieldBox.field->name, panel_->edit(*fieldBox.field));
    serials_ = new SerialList(box);
    fresh_ = leaveButton(QStringLiteral("CmdAjout"), QStringLiteral("&Nouvelle entrée"), [this] {
        if (!mayDiscard()) return;
        clearReceipt();
        panel_->edit(strproduit.ref_art)->setFocus();
    });
    validate_ = button(QStringLiteral("Cmdvalstk"), QStringLiteral("&Valider l'entrée"), [this] {
        if (changed_)
            writeChange();
        else
            receive();
    });
    auto* finish = leaveButton(QStringLiteral("Cmdfinstk"), QStringLiteral("&Fin de l'entrée"), [this] {
        if (!mayDiscard()) return;
        clearReceipt();
        units_->focusSearch();
    });
    auto* delivery = button(QStringLiteral("Cmdlecliv"), QStringLiteral("&Lire une livraison"),
                            [this] { this->desk().open(QStringLiteral("T_lecliv")); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(fresh_);
    buttons->addWidget(delivery);
    buttons->addStretch();
    buttons->addWidget(validate_);
    buttons->addWidget(finish);
    auto* layout = new QVBoxLayout(box);
    auto* designation = panel_->findChild<QLabel*>(QStringLiteral("lbl") + strproduit.ref_art.name);
    style::makeHeading(*designation);
    layout->addWidget(designation); // beside the code only its first letters would show
    layout->addWidget(panel_);
    layout->addLayout(quantityRow(box));
    layout->addWidget(priceNotice(session(), box));
    layout->addWidget(serials_, 1);
    layout->addStretch(1);
    layout->addLayout(buttons);
    // What validates comes first behind the boxes.
    tabThrough({panel_->edit(*panel_->boxes().last().field), quantity_, validate_, finish, fresh_, delivery});
    return box;
}

QLayout* ReceiptForm::quantityRow(QWidget* box) {
    quantity_ = new Edit(box);
    quantity_->setObjectName(QStringLiteral("txtqte"));
    quantity_->setMaxLength(4);
    quantity_->setFixedWidth(style::boxWidth(4));
    quantity_->setAlignment(Qt::AlignRight);
    createdWords_ = new QWidget(box);
    createdWords_->hide();
    created_ = namedLabel(QStringLiteral("lblcrepro"), createdWords_);
    createdLast_ = namedLabel(QStringLiteral("lblcreprofin"), createdWords_);
    auto* words = new QHBoxLayout(createdWords_);
    style::nest(*words);
    words->addWidget(new QLabel(QStringLiteral("Créées du :"), createdWords_));
    words->addWidget(created_);
    words->addWidget(new QLabel(QStringLiteral("au :"), createdWords_));
    words->addWidget(createdLast_);
    onLeft(quantity_, [this] { quantityTyped(); });
    auto* row = new QHBoxLayout;
    auto* caption = new QLabel(QStringLiteral("Q&uantité :"), box);
    caption->setBuddy(quantity_);
    row->addWidget(caption);
    row->addWidget(quantity_);
    row->addSpacing(style::WideGap);
    row->addWidget(createdWords_);
    row->addStretch();
    return row;
}

/// Return takes a scan in where one may come, validates the receipt or the open tray elsewhere.
void ReceiptForm::keyPressEvent(QKeyEvent* event) {
    auto* box = dynamic_cast<Edit*>(focusWidget());
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        const bool scansSerials = box && box == panel_->edit(strproduit.fou_imm) && quantity() > 1;
        if (scansSerials && !box->text().trimmed().isEmpty()) {
            if (box->leave() && serials_->isFull()) validate_->setFocus();
            return;
        }
        const bool inReceipt = box && !units_->isAncestorOf(box) && !box->takesScans;
        setDefaultButton(inReceipt ? validate_ : units_->validateButton(focusWidget()));
    }
    setCancelButton(units_->cancelButton() ? units_->cancelButton() : changed_ ? fresh_ : nullptr);
    Form::keyPressEvent(event);
}

QPushButton* ReceiptForm::validation() const {
    return units_->isAncestorOf(focusWidget()) ? units_->validateButton(focusWidget()) : validate_;
}

bool ReceiptForm::hasUnsavedWork() const { return contents() != untouched_ || units_->hasUnsavedWork(); }

void ReceiptForm::setPickers() {
    codes_.emplace(*this, *panel_, QHash<DataFile, Database>{{DataFile::Molven, molven_}});
    codes_->wire([this](const Field& field) {
        if (&field == &strproduit.ref_art)
            showArticle();
        else
            codes_->showWords();
    });
    codes_->list(strproduit.ref_art, [this] {
        return pick_lists::articles(molven_, codes_->put(strproduit.ref_art, strarticle.art_ref),
                                    strarticle.art_aig == follow_up::ByUnit);
    });
}

void ReceiptForm::setScans() {
    for (const Text* field : {&strproduit.ref_art, &strproduit.lot_art, &strproduit.fou_imm}) {
        Edit* edit = panel_->edit(*field);
        edit->setMaxLength(120); // room for a scan
        edit->takesScans = true;
    }
    onLeft(panel_->edit(strproduit.lot_art), [this, edit = panel_->edit(strproduit.lot_art)] {
        if (takeScan(edit)) return showArticle();
        if (isTradeGoods_ && edit->value().trimmed().isEmpty())
            throw Refusal(QStringLiteral("N° Lot obligatoire"), strproduit.lot_art.name);
    });
    onLeft(panel_->edit(strproduit.fou_imm), [this, edit = panel_->edit(strproduit.fou_imm)] {
        if (takeScan(edit)) showArticle();
        listSerial();
    });
}

int ReceiptForm::quantity() const {
    const auto typed = Decimal::parse(quantity_->value());
    return typed ? static_cast<int>(typed->toInteger()) : 1;
}

/// With several units, what the serial box holds goes to the list and makes room for the next.
void ReceiptForm::listSerial() {
    Edit* box = panel_->edit(strproduit.fou_imm);
    const QString serial = box->value().trimmed();
    if (quantity() <= 1 || serial.isEmpty()) return;
    serials_->add(serial, strproduit.fou_imm.name);
    box->put({});
}

void ReceiptForm::quantityTyped() {
    serials_->expect(quantity());
    Edit* box = panel_->edit(strproduit.fou_imm);
    if (quantity() == 1 && serials_->serials().size() == 1 && box->value().trimmed().isEmpty()) {
        box->put(serials_->serials().first());
        serials_->clear();
    }
    listSerial();
}

/// What the article of the reference brings: its words, what it presets, the boxes that its type needs.
void ReceiptForm::showArticle() {
    takeScan(panel_->edit(strproduit.ref_art));
    const QString reference = panel_->edit(strproduit.ref_art)->value().trimmed();
    codes_->showWords();
    if (!reference.isEmpty()) {
        const Record article = receipts::followedArticle(molven_, reference);
        panel_->edit(strproduit.ref_art)->put(article[strarticle.art_ref]);
        if (!changed_) presetFrom(article);
        showByType(article);
    }
    codes_->showWords();
}

/// A supplier's reference that came with another article goes with it; what the user typed stays.
void ReceiptForm::presetFrom(const Record& article) {
    Edit* supplier = panel_->edit(strproduit.fou_cde);
    if (supplier->value().isEmpty()) supplier->put(article[strarticle.art_fou]);
    Edit* reference = panel_->edit(strproduit.fou_ref);
    if (reference->value().isEmpty() || reference->value() == presetReference_)
        reference->put(article[strarticle.art_rfou]);
    presetReference_ = article[strarticle.art_rfou];
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
    receipt.supplierSerials = serials_->serials();
    if (const QString serial = value(strproduit.fou_imm); !serial.isEmpty()) receipt.supplierSerials.append(serial);
    receipt.supplierReference = value(strproduit.fou_ref);
    return receipt;
}

void ReceiptForm::receive() {
    if (!units_->mayLeaveTray()) return;
    Receipt receipt = typed();
    receipt.operatorWord = session().code_util;
    if (receipt.reference == scannedReference_) receipt.scannedEan = scannedEan_;
    receipt.currency = parameters::companyCurrency(molven_, session().spe_mon);
    created_->clear();
    createdLast_->clear();
    const receipts::Created created =
        receipts::receive(files_, session().rules(), receipt, progress(*this, QStringLiteral("Création des produits")));
    created_->setText(created.first);
    createdLast_->setText(created.last);
    createdWords_->show();
    units_->list(strproduit.pro_ann == QStringLiteral("20") && strproduit.imm_art >= created.first &&
                 strproduit.imm_art <= created.last);
    notify(QStringLiteral("Nous allons créer l'immat ") + created.first);
    clearUnit();
    panel_->edit(strproduit.ref_art)->setFocus();
}

} // namespace molven

#include "screens/stock/receipt_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/labels.h"
#include "stock/units.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
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
            {&u.fou_ref, QStringLiteral("Réf. fournisseur :"), {}, 16}};
}

QLabel* namedLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ReceiptForm::ReceiptForm(Desk& desk)
    : Form(desk, QStringLiteral("T_proges")),
      molven_(workspace_.open(session().molven())),
      tri_(workspace_.open(session().tri())) {
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(buildReceipt(), 3);
    layout->addWidget(buildUnits(), 2);
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
    auto* validate = button(QStringLiteral("Cmdvalstk"), QStringLiteral("&Valider l'entrée"), [this] { receive(); });
    auto* finish = button(QStringLiteral("Cmdfinstk"), QStringLiteral("&Fin de l'entrée"), [this] {
        clearReceipt();
        number_->setFocus();
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

QWidget* ReceiptForm::buildUnits() {
    auto* box = new QGroupBox(QStringLiteral("Produits"), this);
    const auto searchBox = [this, box](const QString& name, int characters) {
        auto* edit = new Edit(box);
        edit->setObjectName(name);
        edit->setMaxLength(characters);
        edit->setFixedWidth(characters * 9 + 14);
        return edit;
    };
    number_ = searchBox(QStringLiteral("txtrecimm"), 8);
    reference_ = searchBox(QStringLiteral("txtrecref"), 13);
    onLeft(number_, [this] { findByNumber(); });
    onLeft(reference_, [this] { findByReference(); });
    units_ = new Grid(QStringLiteral("DBGrid1"), pick_lists::unitColumns(), box);
    units_->clickedRow = units_->chosen = [this](const Record& unit) { showUnit(unit); };
    place_ = namedLabel(QStringLiteral("Lbltrac1"), box);
    document_ = namedLabel(QStringLiteral("Lbltrac2"), box);
    conformity_ = namedLabel(QStringLiteral("Lblconform"), box);
    auto* remove = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeUnit(); });
    auto* labels = button(QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { printLabels(); });
    auto* quit = button(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });

    auto* search = new QHBoxLayout;
    search->addWidget(new QLabel(QStringLiteral("Immatriculation :"), box));
    search->addWidget(number_);
    search->addWidget(new QLabel(QStringLiteral("Référence :"), box));
    search->addWidget(reference_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(remove);
    buttons->addWidget(labels);
    buttons->addStretch();
    buttons->addWidget(quit);
    auto* layout = new QVBoxLayout(box);
    layout->addLayout(search);
    layout->addWidget(units_, 1);
    for (QLabel* label : {place_, document_, conformity_}) layout->addWidget(label);
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

void ReceiptForm::receive() {
    Receipt receipt = typed();
    receipt.operatorWord = session().code_util;
    receipt.currency = parameters::companyCurrency(molven_, session().spe_mon);
    const receipts::Created created = receipts::receive(molven_, session().rules(), receipt);
    created_->setText(created.first);
    createdLast_->setText(created.last);
    listUnits(strproduit.pro_ann == QStringLiteral("20") && strproduit.imm_art >= created.first &&
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
    showArticle();
}

void ReceiptForm::clearReceipt() {
    for (const FieldBox& box : panel_->boxes()) panel_->edit(*box.field)->put({});
    panel_->edit(strproduit.dat_liv)->put(dateText(Clock::today()));
    panel_->edit(strproduit.num_dep)->put(MainDepot);
    clearUnit();
}

void ReceiptForm::listUnits(const Criterion& criterion) {
    listed_ = criterion;
    units_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return molven_.select(strproduit, listed_ && filter,
                              order.terms.isEmpty() ? Order{strproduit.pro_ann, strproduit.imm_art} : order);
    });
    if (units_->rows().rowCount() == 0) return;
    units_->selectRow(0);
    showUnit(*units_->current());
}

void ReceiptForm::findByNumber() {
    if (number_->text().trimmed().isEmpty()) return;
    const Immatriculation typedNumber = Immatriculation::fromText(number_->text());
    number_->put(typedNumber.number());
    if (!units::find(molven_, typedNumber))
        throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
    listUnits(typedNumber.criterion());
}

void ReceiptForm::findByReference() {
    const QString reference = reference_->text().trimmed();
    if (reference.isEmpty()) return;
    if (molven_.count(strproduit, strproduit.ref_art == reference) == 0)
        throw Refusal(QStringLiteral("Aucun produit pour la Référence : ") + reference, QStringLiteral("txtrecref"));
    listUnits(strproduit.ref_art == reference);
}

void ReceiptForm::showUnit(const Record& unit) {
    unit_ = unit;
    const units::Situation situation = units::situation(unit, session().rules());
    place_->setText(situation.place);
    document_->setText(situation.document);
    conformity_->setText(units::conformityText(molven_, unit));
}

const Record& ReceiptForm::requireUnit() const {
    if (!unit_) throw Refusal(QStringLiteral("Aucune immatriculation sélectionnée"), QStringLiteral("txtrecimm"));
    return *unit_;
}

void ReceiptForm::removeUnit() {
    const Immatriculation unit = Immatriculation::fromText(requireUnit()[strproduit.imm_art]);
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "))) return;
    units::remove(molven_, unit);
    unit_.reset();
    for (QLabel* label : {place_, document_, conformity_}) label->clear();
    units_->rows().refresh();
}

void ReceiptForm::printLabels() {
    requireUnit();
    labels::fill(molven_, tri_, session().rules(),
                 molven_.select(strproduit, listed_, {strproduit.pro_ann, strproduit.imm_art}));
    desk().open(QStringLiteral("T_etibarre"));
}

} // namespace molven

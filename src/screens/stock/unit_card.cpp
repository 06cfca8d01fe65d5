#include "screens/stock/unit_card.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "sales/unit_removal.h"
#include "screens/shell/trail_form.h"
#include "stock/labels.h"
#include "stock/units.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace molven {

UnitCard::UnitCard(Form& form)
    : QGroupBox(QStringLiteral("Produits"), &form),
      form_(form),
      molven_(workspace_.open(form.session().molven())),
      tri_(workspace_.open(form.session().tri())) {
    units_ = new Grid(QStringLiteral("DBGrid1"), pick_lists::unitColumns(), this);
    units_->becameCurrent = units_->chosen = [this](const Record& unit) { bringUp(unit); };
    const auto label = [this](const QString& name) {
        auto* made = new QLabel(this);
        made->setObjectName(name);
        made->setTextFormat(Qt::PlainText);
        return made;
    };
    title_ = label(QStringLiteral("Lblproduit"));
    style::makeHeading(*title_);
    place_ = label(QStringLiteral("Lbltrac1"));
    document_ = label(QStringLiteral("Lbltrac2"));
    conformityWords_ = label(QStringLiteral("Lblconform"));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buildSearch());
    layout->addWidget(units_, 1);
    for (QLabel* text : {title_, place_, document_, conformityWords_}) layout->addWidget(text);
    buildTray();
    layout->addWidget(tray_);
    layout->addLayout(buildButtons());
    setPickers();
}

Edit* UnitCard::searchBox(const QString& name, int characters, const std::function<void()>& find) {
    auto* edit = new Edit(this);
    edit->setObjectName(name);
    edit->setMaxLength(characters);
    edit->setFixedWidth(style::boxWidth(std::min(characters, 14)));
    form_.onLeft(edit, find);
    return edit;
}

QLayout* UnitCard::buildSearch() {
    number_ = searchBox(QStringLiteral("txtrecimm"), Immatriculation::LongestScan, [this] { findByNumber(); });
    number_->isKey = true;
    reference_ = searchBox(QStringLiteral("txtrecref"), 13, [this] { findByReference(); });
    supplierSerial_ = searchBox(QStringLiteral("txtrecfimm"), 30, [this] { findBySupplierSerial(); });
    supplierReference_ = searchBox(QStringLiteral("txtrecfref"), 20, [this] { findBySupplierReference(); });
    const std::pair<const char*, Edit*> boxes[] = {{"Immatriculation :", number_},
                                                   {"Référence :", reference_},
                                                   {"N° série fourn. :", supplierSerial_},
                                                   {"Réf. fourn. :", supplierReference_}};
    auto* layout = new QGridLayout;
    int place = 0;
    for (const auto& [caption, edit] : boxes) {
        layout->addWidget(new QLabel(QString::fromUtf8(caption), this), place / 2, place % 2 * 2, Qt::AlignRight);
        layout->addWidget(edit, place / 2, place % 2 * 2 + 1);
        ++place;
    }
    layout->setColumnStretch(4, 1);
    return layout;
}

QLayout* UnitCard::buildButtons() {
    const auto made = [this](const char* name, const char* caption, const std::function<void()>& handler) {
        return form_.button(QString::fromLatin1(name), QString::fromUtf8(caption), handler);
    };
    QPushButton* buttons[] = {
        made("CmdModifier", "&Modifier",
             [this] {
                 units::requireChangeable(freshUnit());
                 changeWanted(requireUnit());
             }),
        made("cmdpose", "&Pose", [this] { openImplantation(); }),
        made("Cmdchgconf", "&Conformité", [this] { openConformity(); }),
        made("Cmdvisconf", "&Historique conf.", [this] { showConformityHistory(); }),
        made("CmdSupprime", "&Supprimer", [this] { remove(); }),
        made("Cmdetiq", "É&tiquettes", [this] { makeLabels(); }),
        form_.leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { form_.close(); })};
    auto* layout = new QGridLayout;
    int place = 0;
    for (QPushButton* button : buttons) {
        layout->addWidget(button, place / 4, place % 4);
        ++place;
    }
    layout->addWidget(trailButton(form_,
                                  [this] {
                                      return TrailSubject{TrailSubject::Kind::Unit, requireUnit()[strproduit.imm_art]};
                                  }),
                      place / 4, place % 4);
    return layout;
}

void UnitCard::buildTray() {
    const auto& u = strproduit;
    tray_ = new QStackedWidget(this);
    buildEntry(
        conformity_,
        {{.field = &u.fab_con, .caption = QStringLiteral("Conformité O/X/Y/Z :"), .control = QStringLiteral("txtconf")},
         {.field = &u.fab_cau, .caption = QStringLiteral("Cause :"), .control = QStringLiteral("txtconfcau")}},
        QStringLiteral("conf"), [this] { changeConformity(); });
    buildEntry(implantation_,
               {{.field = &u.reg_pat, .caption = QStringLiteral("Patient :"), .characters = 28},
                {.field = &u.reg_clt, .caption = QStringLiteral("Client :")},
                {.field = &u.reg_dat, .caption = QStringLiteral("Date :"), .isDate = true}},
               QStringLiteral("pose"), [this] { implant(); });
    for (const FieldBox& box : implantation_.boxes->boxes())
        form_.bind(box.field->name, implantation_.boxes->edit(*box.field));
    tray_->hide();
}

void UnitCard::buildEntry(Entry& entry, const QList<FieldBox>& boxes, const QString& suffix,
                          const std::function<void()>& validate) {
    entry.page = new QWidget(this);
    entry.boxes = new RecordPanel(boxes, 1, entry.page);
    entry.codes.emplace(form_, *entry.boxes, QHash<DataFile, Database>{{DataFile::Molven, molven_}});
    entry.codes->wire([&entry](const Field&) { entry.codes->showWords(); });
    entry.validate = form_.button(QStringLiteral("Cmdok") + suffix, QStringLiteral("&OK"), validate);
    entry.cancel =
        form_.leaveButton(QStringLiteral("Cmdann") + suffix, QStringLiteral("&Annuler"), [this] { leaveTray(); });
    auto* row = new QHBoxLayout(entry.page);
    style::nest(*row);
    row->addWidget(entry.boxes, 1);
    for (QPushButton* button : {entry.validate, entry.cancel}) row->addWidget(button, 0, Qt::AlignBottom);
    tray_->addWidget(entry.page);
}

void UnitCard::setPickers() {
    const auto ofSupplier = [this](Edit* edit, const Text& field, const QString& title, const Order& order) {
        form_.onPick(edit, [this, edit, &field, title, order] {
            PickList list =
                pick_lists::units(molven_, title, field != QString(), [this, edit, &field](const Record& unit) {
                    edit->put(unit[field]);
                    this->list(Immatriculation::fromText(unit[strproduit.imm_art]).criterion());
                });
            list.columns.prepend({&field, title, 140});
            list.query = [this, &field, order](const Criterion& filter, const Order& asked) {
                return molven_.select(strproduit, field != QString() && filter, asked.orElse(order));
            };
            form_.pick(list);
        });
    };
    ofSupplier(supplierSerial_, strproduit.fou_imm, QStringLiteral("N° série fournisseur"), strproduit.fou_imm);
    ofSupplier(supplierReference_, strproduit.fou_ref, QStringLiteral("Réf. fournisseur"),
               {strproduit.fou_ref, strproduit.fou_imm});
}

void UnitCard::focusSearch() { number_->setFocus(); }

void UnitCard::openTray(Entry& entry, const Record& shown) {
    trayShown_ = shown;
    entry.boxes->load(shown);
    entry.codes->showWords();
    tray_->setCurrentWidget(entry.page);
    tray_->setFixedHeight(entry.page->sizeHint().height());
    tray_->show();
    entry.boxes->edit(*entry.boxes->boxes().first().field)->setFocus();
}

const UnitCard::Entry* UnitCard::openEntry() const {
    if (tray_->isHidden()) return nullptr;
    return tray_->currentWidget() == conformity_.page ? &conformity_ : &implantation_;
}

bool UnitCard::hasUnsavedWork() const {
    const Entry* entry = openEntry();
    return entry && entry->boxes->differsFrom(*trayShown_);
}

bool UnitCard::mayLeaveTray() { return !hasUnsavedWork() || form_.givesUp(title_->text()); }

void UnitCard::leaveTray() {
    if (!mayLeaveTray()) return;
    tray_->hide();
    units_->setFocus();
}

QPushButton* UnitCard::validateButton(const QWidget* focused) const {
    const Entry* entry = openEntry();
    return entry && tray_->isAncestorOf(focused) ? entry->validate : nullptr;
}

QPushButton* UnitCard::cancelButton() const {
    const Entry* entry = openEntry();
    return entry ? entry->cancel : nullptr;
}

void UnitCard::list(const Criterion& criterion) {
    listed_ = criterion;
    tray_->hide();
    units_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return molven_.select(strproduit, listed_ && filter,
                              order.orElse(Order{strproduit.pro_ann, strproduit.imm_art}));
    });
    if (units_->rows().rowCount() == 0) return showNone();
    units_->selectRow(0);
    show(*units_->current());
}

void UnitCard::refresh() {
    const int row = units_->currentIndex().row();
    tray_->hide();
    units_->rows().refresh();
    if (row >= 0 && row < units_->rows().rowCount()) units_->selectRow(row);
    if (const auto unit = units_->current()) show(*unit);
}

void UnitCard::findByNumber() {
    if (number_->text().trimmed().isEmpty()) return;
    const Immatriculation typed = Immatriculation::fromText(number_->text());
    number_->put(typed.number());
    if (!units::find(molven_, typed))
        throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
    search(typed.criterion());
}

void UnitCard::findByReference() {
    const QString reference = reference_->text().trimmed();
    if (reference.isEmpty()) return;
    if (molven_.count(strproduit, strproduit.ref_art == reference) == 0)
        throw Refusal(QStringLiteral("Aucun produit pour la Référence : ") + reference, QStringLiteral("txtrecref"));
    search(strproduit.ref_art == reference);
}

void UnitCard::findBySupplierSerial() {
    const QString serial = supplierSerial_->text().trimmed();
    if (serial.isEmpty()) return;
    if (molven_.count(strproduit, strproduit.fou_imm == serial) == 0)
        throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecfimm"));
    search(strproduit.fou_imm == serial);
}

void UnitCard::findBySupplierReference() {
    const QString reference = supplierReference_->text().trimmed();
    if (reference.isEmpty()) return;
    if (molven_.count(strproduit, strproduit.fou_ref == reference) == 0)
        throw Refusal(QStringLiteral("Aucun produit pour la Référence : ") + reference, QStringLiteral("txtrecfref"));
    search(strproduit.fou_ref == reference);
}

void UnitCard::search(const Criterion& criterion) {
    if (mayLeaveTray()) list(criterion);
}

void UnitCard::bringUp(const Record& unit) {
    const bool same = unit_ && unit.value(strproduit.imm_art) == unit_->value(strproduit.imm_art);
    if (same && !tray_->isHidden()) return;
    if (mayLeaveTray()) return show(unit);
    units_->followRecord(*unit_, {&strproduit.pro_ann, &strproduit.imm_art});
}

void UnitCard::show(const Record& unit) {
    unit_ = unit;
    number_->put(unit[strproduit.imm_art]);
    title_->setText(units::title(unit));
    const units::Situation situation = units::situation(unit, form_.session().rules());
    place_->setText(situation.place);
    document_->setText(situation.document);
    conformityWords_->setText(units::conformityText(molven_, unit));
    tray_->hide();
}

void UnitCard::showNone() {
    unit_.reset();
    number_->put({});
    for (QLabel* label : {title_, place_, document_, conformityWords_}) label->clear();
    tray_->hide();
}

const Record& UnitCard::requireUnit() const {
    if (!unit_) throw Refusal(QStringLiteral("Aucune immatriculation sélectionnée"), QStringLiteral("txtrecimm"));
    return *unit_;
}

const Record& UnitCard::freshUnit() {
    const auto fresh = units::find(molven_, Immatriculation::fromText(requireUnit()[strproduit.imm_art]));
    if (!fresh) throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
    unit_ = fresh;
    return *unit_;
}

void UnitCard::remove() {
    const Record& unit = requireUnit();
    if (!form_.prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "),
                                units::title(unit)))
        return;
    unit_removal::remove(form_.session(), Immatriculation::fromText(unit[strproduit.imm_art]));
    showNone();
    units_->rows().refresh();
}

void UnitCard::makeLabels() {
    requireUnit();
    labels::fill(molven_, tri_, form_.session().rules(),
                 molven_.select(strproduit, listed_, {strproduit.pro_ann, strproduit.imm_art}));
    form_.desk().open(QStringLiteral("T_etibarre"));
}

void UnitCard::openConformity() {
    if (!mayLeaveTray()) return;
    openTray(conformity_, freshUnit());
}

void UnitCard::changeConformity() {
    const auto typed = [this](const Text& field) { return conformity_.boxes->edit(field)->value().trimmed(); };
    units::changeConformity(molven_, requireUnit(), typed(strproduit.fab_con).toUpper(), typed(strproduit.fab_cau));
    refresh();
}

void UnitCard::showConformityHistory() {
    const QString number = requireUnit()[strproduit.imm_art], century = requireUnit()[strproduit.pro_ann];
    const Criterion history = strconform.conf_ann == century && strconform.conf_imm == number;
    form_.pick({QStringLiteral("HISTORIQUE DE CONFORMITE : ") + number,
                {{&strconform.conf_date, QStringLiteral("Date"), 100},
                 {&strconform.conf_lib, QStringLiteral("Conformité"), 120},
                 {&strconform.conf_cau, QStringLiteral("Cause"), 60},
                 {&strconform.conf_lca, QStringLiteral("Libellé"), 340}},
                [this, history](const Criterion& filter, const Order& order) {
                    return molven_.select(strconform, history && filter, order.orElse(Order(strconform.conf_dat)));
                },
                [](const Record&) {}});
}

void UnitCard::openImplantation() {
    if (!mayLeaveTray()) return;
    units::requireSold(freshUnit());
    const units::Implantation known = units::implantationOf(requireUnit());
    Record shown = requireUnit();
    shown[strproduit.reg_pat] = known.patient;
    shown[strproduit.reg_clt] = known.client;
    shown[strproduit.reg_dat] = known.date;
    openTray(implantation_, shown);
}

void UnitCard::implant() {
    const Record unit = requireUnit();
    const units::Implantation known = units::implantationOf(unit);
    const auto value = [this](const Field& field) { return implantation_.boxes->edit(field)->value().trimmed(); };
    const units::Implantation typed{value(strproduit.reg_pat), value(strproduit.reg_clt), value(strproduit.reg_dat)};
    const bool replaces = !known.patient.isEmpty() && known.patient != typed.patient;
    if (replaces && !form_.prompt().confirm(QStringLiteral("Remplacer le patient de cette immatriculation ? ") +
                                                units::patientText(known),
                                            units::title(unit)))
        return;
    try {
        units::implant(molven_, unit, typed);
    } catch (const Refusal&) {
        freshUnit(); // what is typed stays, and the next attempt is about who stands there now
        throw;
    }
    refresh();
}

} // namespace molven

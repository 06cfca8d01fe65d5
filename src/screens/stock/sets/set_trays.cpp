#include "screens/stock/sets/set_trays.h"

#include "data/format.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "sales/documents.h"
#include "sales/scanned_units.h"
#include "stock/unit_tables.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/scan_box.h"
#include "ui/style.h"
#include "ui/unit_marks.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace molven {

namespace {

/// A line of a tray: boxes, then the buttons.
QHBoxLayout* rowOf(std::initializer_list<QWidget*> boxes, std::initializer_list<QPushButton*> buttons) {
    auto* row = new QHBoxLayout;
    for (QWidget* box : boxes) row->addWidget(box);
    row->addStretch();
    for (QPushButton* button : buttons) row->addWidget(button, 0, Qt::AlignTop);
    return row;
}

QLabel* captionOf(const char* text, QWidget* box, QWidget* parent) {
    auto* caption = new QLabel(QString::fromUtf8(text), parent);
    caption->setBuddy(box);
    return caption;
}

} // namespace

SetFilling::SetFilling(Form& form, set_journeys::Files& files)
    : SetTray(form, files),
      left_(new QLabel(this)),
      grid_(new Grid(QStringLiteral("DBGrid5"),
                     {{&strproduit.imm_art, QStringLiteral("Immatriculation"), 110},
                      {&strproduit.pro_li1, QStringLiteral("Désignation"), 260},
                      {&strproduit.lot_art, QStringLiteral("Lot"), 100},
                      expiryColumn(strproduit.dat_per),
                      {&strproduit.fou_imm, QStringLiteral("N° de série fournisseur"), 150}},
                     this)) {
    left_->setObjectName(QStringLiteral("lblreste"));
    grid_->setAccessibleName(QStringLiteral("Produits proposés"));
    grid_->chosen = [this](const Record&) { place(); };
    auto* scans = new ScanBox(
        form, QStringLiteral("txtlect"), [this](const QString& text) { return scan(text); }, this);
    auto* all =
        form.button(QStringLiteral("cmdtout"), QStringLiteral("Tout remplir d'o&ffice"), [this] { placeEarliest(); });
    leave_ =
        form.leaveButton(QStringLiteral("cmdfinremplir"), QStringLiteral("Fin &du remplissage"), [this] { left(); });
    all->setToolTip(QStringLiteral("Prend pour chaque composant les produits qui périment en premier"));
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addLayout(rowOf({left_}, {}));
    layout->addWidget(grid_, 1);
    layout->addLayout(rowOf({captionOf("Lire :", scans, this), scans}, {all, leave_}));
}

std::optional<ancillary_sets::Component> SetFilling::lacking(const QString& component) const {
    const Record set = ancillary_sets::header(files_.ancillaire, serial_);
    std::optional<ancillary_sets::Component> first;
    for (const ancillary_sets::Component& one : ancillary_sets::components(files_.ancillaire, set)) {
        if (one.lacking() == 0) continue;
        if (one.reference.compare(component, Qt::CaseInsensitive) == 0) return one;
        if (!first) first = one;
    }
    return first;
}

void SetFilling::open(const QString& serial, const QString& component) {
    serial_ = serial;
    offer(component);
}

void SetFilling::offer(const QString& component) {
    const auto wanted = lacking(component);
    if (!wanted) throw Refusal(QStringLiteral("Cet ancillaire est complet"), strstock.stk_anc_imm.name);
    offer(*wanted, true);
    grid_->setFocus();
}

void SetFilling::offer(const ancillary_sets::Component& component, bool isTold) {
    component_ = component.reference;
    grid_->rows().setRecords({});
    left_->setText(QStringLiteral(" Il reste %1 immatriculations à sélectionner").arg(component.lacking()) +
                   QStringLiteral("  (%1 %2)").arg(component.reference, component.label));
    const QList<Record> units = ancillary_sets::offered(files_.notes.molven, component.reference);
    grid_->rows().setRecords(units);
    grid_->selectRow(0);
    if (isTold && units.size() < component.lacking())
        form_.notify(QStringLiteral("Il manque des produits en stock pour la référence ") + component.reference);
}

void SetFilling::place() {
    const auto unit = grid_->current();
    if (!unit) throw Refusal(QStringLiteral("Aucune immat selectionnee"));
    placeUnits({(*unit)[strproduit.imm_art]});
}

/// Places units, then offers what the set still lacks.
void SetFilling::placeUnits(const QStringList& units) {
    ancillary_sets::fill(files_.sets(), serial_, units);
    written();
    const auto next = lacking(component_);
    if (!next) return left();
    offer(*next, next->reference != component_);
}

void SetFilling::placeEarliest() {
    const Record set = ancillary_sets::header(files_.ancillaire, serial_);
    QStringList units, missing;
    for (const ancillary_sets::Component& component : ancillary_sets::components(files_.ancillaire, set)) {
        if (component.lacking() == 0) continue;
        QStringList found;
        try {
            found = ancillary_sets::earliest(files_.notes.molven, component);
        } catch (const Refusal& refusal) {
            missing.append(refusal.text);
            continue;
        }
        if (found.size() < component.lacking())
            missing.append(QStringLiteral("Il manque des produits en stock pour la référence ") + component.reference);
        units += found;
    }
    ancillary_sets::fill(files_.sets(), serial_, units);
    written();
    for (const QString& text : missing) form_.notify(text);
    left();
}

bool SetFilling::scan(const QString& text) {
    Record header(strbtre); // where a scanned unit must lie
    header[strbtre.fac_depd] = MainDepot;
    const Record unit = scanned_units::find(files_.notes, header, text);
    placeUnits({unit[strproduit.imm_art]});
    return true;
}

SetSending::SetSending(Form& form, set_journeys::Files& files)
    : SetTray(form, files),
      panel_(new RecordPanel(QList<FieldBox>{{.field = &strbtre.fac_clt,
                                              .caption = QStringLiteral("Veuillez choisir le client "),
                                              .control = QStringLiteral("txtclt"),
                                              .listButton = QStringLiteral("cmdclt")},
                                             {.field = &strbtre.fac_trs,
                                              .caption = QStringLiteral("Transporteur :"),
                                              .control = QStringLiteral("txttrs"),
                                              .listButton = QStringLiteral("Cmdtrs")}},
                             1, this)),
      codes_(form, *panel_, {{DataFile::Molven, files.notes.molven}}) {
    codes_.wire([this](const Field&) { codes_.showWords(); });
    codes_.refuseOnLeaving({&strbtre.fac_clt, &strbtre.fac_trs});
    form_.onPick(panel_->edit(strbtre.fac_clt), [this] {
        form_.pick(pick_lists::clients(
            files_.notes.molven,
            [this](const Record& client) {
                panel_->edit(strbtre.fac_clt)->put(client[strclient.clt_cod]);
                codes_.showWords();
            },
            strclient.clt_cod));
    });
    validate_ = form.button(QStringLiteral("cmdbt_val"), QStringLiteral("Con&firmer l'envoi"), [this] { send(); });
    leave_ = form.leaveButton(QStringLiteral("cmdbt_ann"), QStringLiteral("Aban&donner l'envoi"), [this] { left(); });
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addLayout(rowOf({panel_}, {validate_, leave_}));
    layout->addStretch();
}

void SetSending::open(const QString& serial) {
    serial_ = serial;
    panel_->load(Record(strbtre));
    codes_.showWords();
    form_.bind(strbtre.fac_clt.name, panel_->edit(strbtre.fac_clt));
    form_.bind(strbtre.fac_trs.name, panel_->edit(strbtre.fac_trs));
    panel_->edit(strbtre.fac_clt)->setFocus();
}

bool SetSending::hasUnsavedWork() const { return panel_->differsFrom(Record(strbtre)); }

void SetSending::send() {
    const QString client = panel_->edit(strbtre.fac_clt)->value().trimmed();
    if (client.isEmpty()) throw Refusal(QStringLiteral("Veuillez choisir le client "), strbtre.fac_clt.name);
    const QString name = documents::blank(files_.notes, client).value(strbtre.fac_nom);
    if (!form_.prompt().confirm(QStringLiteral("Cet ancillaire sera mis en dépôt chez le client :"),
                                QStringLiteral("%1 %2, ancillaire %3").arg(client, name, serial_)))
        return;
    set_journeys::send(files_, serial_, client, panel_->edit(strbtre.fac_trs)->value().trimmed());
    left();
    written();
}

SetReturning::SetReturning(Form& form, set_journeys::Files& files)
    : SetTray(form, files),
      count_(new QLabel(this)),
      panel_(new RecordPanel(QList<FieldBox>{{.field = &strlive.fac_pat,
                                              .caption = QStringLiteral("Patient :"),
                                              .control = QStringLiteral("txtpat"),
                                              .characters = 24},
                                             {.field = &strlive.fac_chr,
                                              .caption = QStringLiteral("Chirurgien :"),
                                              .control = QStringLiteral("txtchr"),
                                              .listButton = QStringLiteral("cmdchr")}},
                             1, this)),
      codes_(form, *panel_, {{DataFile::Molven, files.notes.molven}}) {
    count_->setObjectName(QStringLiteral("lblretour"));
    count_->setTextFormat(Qt::PlainText);
    codes_.wire([this](const Field&) { codes_.showWords(); });
    codes_.refuseOnLeaving({&strlive.fac_chr});
    auto* scans = new ScanBox(
        form, QStringLiteral("txtlectret"), [this](const QString& text) { return scan(text); }, this);
    auto* all = form.button(QStringLiteral("cmdret_tout"), QStringLiteral("Tout coc&her"), [this] {
        back_ = QSet<QString>(units_.begin(), units_.end());
        showCount();
    });
    validate_ = form.button(QStringLiteral("cmdret_val"), QStringLiteral("Con&firmer le retour"), [this] { write(); });
    leave_ =
        form.leaveButton(QStringLiteral("cmdret_ann"), QStringLiteral("Aban&donner le retour"), [this] { left(); });
    setTabOrder(all, panel_->edit(strlive.fac_pat));
    setTabOrder(panel_->edit(strlive.fac_pat), panel_->edit(strlive.fac_chr));
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(count_);
    layout->addLayout(rowOf({captionOf("Lire ce qui revient :", scans, this), scans}, {all}));
    layout->addLayout(rowOf({panel_}, {validate_, leave_}));
    layout->addStretch();
}

void SetReturning::open(const Record& set, const QStringList& units) {
    set_ = set;
    units_ = units;
    back_.clear();
    serial_ = set[strstock.stk_anc_imm];
    panel_->load(Record(strlive));
    codes_.showWords();
    form_.bind(strlive.fac_pat.name, panel_->edit(strlive.fac_pat));
    form_.bind(strlive.fac_chr.name, panel_->edit(strlive.fac_chr));
    showCount();
    findChild<QWidget*>(QStringLiteral("txtlectret"))->setFocus();
}

void SetReturning::toggle(const QString& unit) {
    if (!back_.remove(unit)) back_.insert(unit);
    showCount();
}

bool SetReturning::scan(const QString& text) {
    back_.insert(set_journeys::unitScanned(files_, serial_, text));
    showCount();
    return true;
}

void SetReturning::showCount() {
    const qsizetype used = units_.size() - back_.size();
    count_->setText(
        QStringLiteral("Retour Ancillaire N° %1 : %2 au retour, %3 ")
            .arg(serial_, counted(back_.size(), QStringLiteral("unité")), counted(used, QStringLiteral("unité"))) +
        (used > 1 ? QStringLiteral("utilisées") : QStringLiteral("utilisée")) +
        QStringLiteral(" (double clic ou Entrée coche une unité)"));
    if (ticked) ticked();
}

void SetReturning::write() {
    const qsizetype used = units_.size() - back_.size();
    const set_journeys::Return wanted{*set_, QStringList(back_.begin(), back_.end()),
                                      panel_->edit(strlive.fac_pat)->value(),
                                      panel_->edit(strlive.fac_chr)->value().trimmed()};
    if (used > 0 && wanted.patient.trimmed().isEmpty())
        throw Refusal(QStringLiteral("Patient obligatoire"), strlive.fac_pat.name);
    const QString about =
        used == 0 ? QStringLiteral("Toutes les unités reviennent")
                  : QStringLiteral("%1 au retour, %2 à livrer à %3 pour %4")
                        .arg(counted(back_.size(), QStringLiteral("unité")), counted(used, QStringLiteral("unité")),
                             (*set_)[strstock.stk_nom_dep], wanted.patient.trimmed());
    if (!form_.prompt().confirm(set_journeys::returnLabel(serial_), about)) return;
    const set_journeys::Returned done = set_journeys::takeBack(files_, wanted);
    back_.clear();
    left();
    written();
    if (!done.deliveryNote.isEmpty())
        form_.notify(QStringLiteral("Bon de Livraison N° %1 : %2")
                         .arg(done.deliveryNote, counted(used, QStringLiteral("unité"))));
}

} // namespace molven

#include "screens/stock/patient_form.h"

#include "data/format.h"
#include "printing/report.h"
#include "reference/article_tables.h"
#include "reference/party_tables.h"
#include "stock/labels.h"
#include "ui/criteria_panel.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

QList<CriterionBox> criteria() {
    using Kind = CriterionBox::Kind;
    return {{QStringLiteral("DEBIMM"), QStringLiteral("Immat. du :"), 8},
            {QStringLiteral("FINIMM"), QStringLiteral("au :"), 8},
            {QStringLiteral("REF1"), QStringLiteral("Référence :")},
            {QStringLiteral("txtclt_vte"), QStringLiteral("Client :"), 6},
            {QStringLiteral("REFD"), QStringLiteral("Référence de :")},
            {QStringLiteral("REFF"), QStringLiteral("à :")},
            {QStringLiteral("Mskdeb"), QStringLiteral("Document du :"), 10, Kind::Day},
            {QStringLiteral("Mskfin"), QStringLiteral("au :"), 10, Kind::Day},
            {QStringLiteral("txtreg_pat"), QStringLiteral("Patient :"), 30},
            {QStringLiteral("Cmbtri"),
             QStringLiteral("Tri par :"),
             0,
             Kind::Text,
             {QStringLiteral("Référence"), QStringLiteral("Immatriculation"), QStringLiteral("Patient")}}};
}

} // namespace

PatientForm::PatientForm(Desk& desk, const QString& name, DataFile units)
    : Form(desk, name),
      molven_(workspace_.open(session().molven())),
      units_(workspace_.open(session().path(units))),
      tri_(workspace_.open(session().tri())),
      isVirtual_(units == DataFile::Virtuel) {
    grid_ = new Grid(QStringLiteral("DBGrid1"),
                     {{&strproduit.imm_art, QStringLiteral("N° Immatriculation"), 130},
                      {&strproduit.ref_art, QStringLiteral("Référence"), 120},
                      {&strproduit.pro_li1, QStringLiteral("Désignation"), 300},
                      {&strproduit.reg_pat, QStringLiteral("Patient"), 220},
                      {&strproduit.reg_dat, QStringLiteral("Date Pose"), 90},
                      {&strproduit.clt_vte, QStringLiteral("Client"), 70},
                      {&strproduit.num_vte, QStringLiteral("Document"), 80},
                      {&strproduit.lot_art, QStringLiteral("Lot"), 100}},
                     this);
    criteria_ = new CriteriaPanel(*this, criteria(), 4);
    words_ = new QLabel(this);
    words_->setObjectName(QStringLiteral("Label1"));
    words_->setTextFormat(Qt::PlainText);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("Label2"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteria_);
    layout->addWidget(words_);
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons());
    resize(1180, 700);
    applyTitle(isVirtual_ ? QStringLiteral("Tracabilité des produits(posés) virtuels")
                          : QStringLiteral("Tracabilité des produits(posés)"));
    setPickers();
    criteria_->edit(QStringLiteral("DEBIMM"))->setFocus();
}

void PatientForm::setPickers() {
    const auto picker = [this](const char* name, const std::function<PickList(const pick_lists::Chosen&)>& list,
                               const Field& field) {
        Edit* edit = criteria_->edit(QString::fromLatin1(name));
        onPick(edit, [this, edit, list, &field] {
            pick(list([edit, &field](const Record& row) { edit->put(row.value(field)); }));
        });
    };
    for (const auto& [name, width] : {std::pair("DEBIMM", 8), std::pair("FINIMM", 8), std::pair("txtclt_vte", 6)}) {
        Edit* edit = criteria_->edit(QString::fromLatin1(name));
        onLeft(edit, [edit, width = width] { edit->put(padded(edit->value(), width)); });
    }
    const auto articles = [this](const pick_lists::Chosen& chosen) { return pick_lists::articles(molven_, chosen); };
    for (const char* name : {"REF1", "REFD", "REFF"}) picker(name, articles, strarticle.art_ref);
    picker(
        "txtclt_vte", [this](const pick_lists::Chosen& chosen) { return pick_lists::clients(molven_, chosen); },
        strclient.clt_cod);
}

QLayout* PatientForm::buttons() {
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); });
    auto* keepButton = button(QStringLiteral("Cmdok"), QStringLiteral("&Garder la sélection"), [this] { keep(); });
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* labelButton = button(QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { makeLabels(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    setDefaultButton(search);
    auto* row = new QHBoxLayout;
    row->addWidget(search);
    row->addWidget(count_, 1);
    for (QPushButton* made : {keepButton, printButton, labelButton, quit}) row->addWidget(made);
    return row;
}

PatientEnquiry PatientForm::typed() const {
    const auto value = [this](const char* name) { return criteria_->value(QString::fromLatin1(name)); };
    PatientEnquiry enquiry;
    enquiry.firstUnit = value("DEBIMM");
    enquiry.lastUnit = value("FINIMM");
    enquiry.reference = value("REF1");
    enquiry.firstReference = value("REFD");
    enquiry.lastReference = value("REFF");
    enquiry.client = value("txtclt_vte");
    enquiry.patient = value("txtreg_pat");
    enquiry.firstDate = value("Mskdeb");
    enquiry.lastDate = value("Mskfin");
    enquiry.sort = static_cast<PatientEnquiry::Sort>(criteria_->choice(QStringLiteral("Cmbtri")));
    return enquiry;
}

void PatientForm::select() {
    selection_.reset();
    grid_->rows().setRecords({});
    count_->clear();
    const PatientEnquiry enquiry = typed();
    words_->setText(patient_enquiry::words(enquiry));
    patient_enquiry::select(units_, enquiry); // refuses what is not one
    selection_ = enquiry;
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return patient_enquiry::rows(units_, *selection_, filter, order);
    });
    count_->setText(QStringLiteral("Nbre sélection : %1").arg(grid_->rows().rowCount()));
}

const PatientEnquiry& PatientForm::requireSelection() const {
    if (!selection_) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("DEBIMM"));
    return *selection_;
}

void PatientForm::keep() { working_copy::keep(tri_, patient_enquiry::select(units_, requireSelection())); }

void PatientForm::print() {
    const Recordset units = patient_enquiry::select(units_, requireSelection());
    Report report(QStringLiteral("TRACABILITE"), {{QStringLiteral("N° Immatriculation")},
                                                  {QStringLiteral("Référence")},
                                                  {QStringLiteral("Désignation")},
                                                  {QStringLiteral("Patient")},
                                                  {QStringLiteral("Date Pose")},
                                                  {QStringLiteral("Lot")},
                                                  {QStringLiteral("Client")}});
    const QString words = patient_enquiry::words(*selection_);
    report.say(words.isEmpty() ? QStringLiteral("Sélection : tous les produits posés") : words);
    if (isVirtual_) report.say(QStringLiteral("Produits virtuels"));
    for (const Record& unit : units)
        report.row({unit[strproduit.imm_art], unit[strproduit.ref_art], unit[strproduit.pro_li1],
                    unit[strproduit.reg_pat], unit[strproduit.reg_dat], unit[strproduit.lot_art],
                    unit[strproduit.clt_vte]});
    report.count();
    desk().print(report);
}

void PatientForm::makeLabels() {
    const Recordset units = patient_enquiry::select(units_, requireSelection());
    const bool replace = prompt().confirm(QStringLiteral("Voulez-vous effacer le fichier actuel ?"),
                                          QStringLiteral("Étiquettes en attente"));
    labels::fill(molven_, tri_, session().rules(), units, replace ? labels::Waiting::Replaced : labels::Waiting::Kept);
    desk().open(QStringLiteral("T_etibarre"));
}

} // namespace molven

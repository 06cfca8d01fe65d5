#include "screens/stock/patient_form.h"

#include "printing/report.h"
#include "reference/code_kinds.h"
#include "stock/labels.h"
#include "ui/progress.h"

namespace molven {

namespace {

QList<CriterionBox> patientBoxes() {
    using Kind = CriterionBox::Kind;
    const auto box = [](const char* name, const char* caption, int characters) {
        return CriterionBox{
            .name = QString::fromLatin1(name), .caption = QString::fromUtf8(caption), .characters = characters};
    };
    const auto code = [&box](const char* name, const char* caption, const CodeKind& kind, int characters) {
        CriterionBox made = box(name, caption, characters);
        made.code = &kind;
        return made;
    };
    const auto bound = [](CriterionBox made, int digits = 0) {
        made.isBound = true;
        made.digits = digits;
        return made;
    };
    return {bound(box("DEBIMM", "Immat. du :", 8), 8),
            bound(box("FINIMM", "au :", 8), 8),
            code("REF1", "Référence :", codes::Article, 13),
            code("txtclt_vte", "Client :", codes::Client, 6),
            bound(code("REFD", "Référence de :", codes::Article, 13)),
            bound(code("REFF", "à :", codes::Article, 13)),
            {QStringLiteral("Mskdeb"), QStringLiteral("Document du :"), 10, Kind::Day},
            {QStringLiteral("Mskfin"), QStringLiteral("au :"), 10, Kind::Day},
            box("txtreg_pat", "Patient :", 30),
            {QStringLiteral("Cmbtri"),
             QStringLiteral("Tri par :"),
             0,
             Kind::Text,
             {QStringLiteral("Référence"), QStringLiteral("Immatriculation"), QStringLiteral("Patient")}}};
}

QList<GridColumn> patientColumns() {
    return {{&strproduit.imm_art, QStringLiteral("N° Immatriculation"), 130},
            {&strproduit.ref_art, QStringLiteral("Référence"), 120},
            {&strproduit.pro_li1, QStringLiteral("Désignation"), 300},
            {&strproduit.reg_pat, QStringLiteral("Patient"), 220},
            {&strproduit.reg_dat, QStringLiteral("Date Pose"), 90},
            {&strproduit.clt_vte, QStringLiteral("Client"), 70},
            {&strproduit.num_vte, QStringLiteral("Document"), 80},
            {&strproduit.lot_art, QStringLiteral("Lot"), 100}};
}

} // namespace

PatientForm::PatientForm(Desk& desk, const QString& name, DataFile units)
    : SelectionForm(desk, name),
      molven_(workspace_.open(session().molven())),
      units_(units == DataFile::Virtuel ? patient_enquiry::Files{workspace_.open(session().path(units))}
                                        : patient_enquiry::open(workspace_, session())),
      tri_(workspace_.open(session().tri())),
      isVirtual_(units == DataFile::Virtuel) {
    build({.title = isVirtual_ ? QStringLiteral("Tracabilité des produits(posés) virtuels")
                               : QStringLiteral("Tracabilité des produits(posés)"),
           .criteria = patientBoxes(),
           .list = patientColumns(),
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); }}},
           .deeds = {{QStringLiteral("Cmdok"), QStringLiteral("&Garder la sélection"), [this] { keep(); }},
                     {QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }},
                     {QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { makeLabels(); }}},
           .files = {{DataFile::Molven, molven_}},
           .words = QStringLiteral("Label1"),
           .size = {1180, 700}});
    for (const char* box : {"DEBIMM", "FINIMM"})
        picker(QString::fromLatin1(box), strproduit.imm_art, [this](const pick_lists::Chosen& chosen) {
            return pick_lists::units(units_.units, QStringLiteral("LES IMMATRICULATIONS"), {}, chosen);
        });
}

PatientEnquiry PatientForm::typed() const {
    const auto value = [this](const char* name) { return criteria().value(QString::fromLatin1(name)); };
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
    enquiry.sort = static_cast<PatientEnquiry::Sort>(criteria().choice(QStringLiteral("Cmbtri")));
    return enquiry;
}

void PatientForm::select() {
    enquiry_ = typed();
    clearSelection(patient_enquiry::words(enquiry_));
    patiently(*this, workspace_, QStringLiteral("Recherche des produits"), [this] {
        patient_enquiry::select(units_, enquiry_); // refuses what is not one
        showRows([this](const Criterion& filter, const Order& order) {
            return patient_enquiry::rows(units_, enquiry_, filter, order);
        });
    });
}

Recordset PatientForm::selected() {
    requireSelection();
    return patient_enquiry::select(units_, enquiry_);
}

void PatientForm::keep() { working_copy::keep(tri_, selected()); }

void PatientForm::print() {
    const Recordset units = selected();
    Report report(QStringLiteral("TRACABILITE"), {{QStringLiteral("N° Immatriculation")},
                                                  {QStringLiteral("Référence")},
                                                  {QStringLiteral("Désignation")},
                                                  {QStringLiteral("Patient")},
                                                  {QStringLiteral("Date Pose")},
                                                  {QStringLiteral("Lot")},
                                                  {QStringLiteral("Client")}});
    const QString words = patient_enquiry::words(enquiry_);
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
    const Recordset units = selected();
    const bool replace = prompt().confirm(QStringLiteral("Voulez-vous effacer le fichier actuel ?"),
                                          QStringLiteral("Étiquettes en attente"));
    labels::fill(molven_, tri_, session().rules(), units, replace ? labels::Waiting::Replaced : labels::Waiting::Kept);
    desk().open(QStringLiteral("T_etibarre"));
}

} // namespace molven

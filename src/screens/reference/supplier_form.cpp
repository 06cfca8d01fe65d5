#include "screens/reference/supplier_form.h"

#include "dossier/references.h"
#include "reference/parties.h"
#include "screens/reference/document_shelf.h"
#include "screens/shell/trail_form.h"
#include "ui/pick_lists.h"

#include <QVBoxLayout>

namespace molven {

namespace {

QList<BoxGroup> supplierGroups() {
    const auto& f = strfournis;
    return {{QStringLiteral("Identité"),
             {{&f.fou_cod, QStringLiteral("N° Fournisseur :")},
              {&f.fou_nom, QStringLiteral("Nom :"), {}, 30},
              {&f.fou_abr, QStringLiteral("Nom abrégé :")},
              {&f.fou_resp, QStringLiteral("Responsable :"), {}, 30}}},
            {QStringLiteral("Adresse :"),
             {{&f.fou_l1, {}, {}, 30},
              {&f.fou_l2, {}, {}, 30},
              {&f.fou_l3, {}, {}, 30},
              {&f.fou_l4, {}, {}, 30},
              {&f.fou_l5, QStringLiteral("CP Ville :"), {}, 30}}},
            {QStringLiteral("Documents :"), {{&f.fou_chemin, {}, {}, 30}}},
            {QStringLiteral("Téléphone et courriel"),
             {{&f.fou_tel1, QStringLiteral("Téléphone :"), {}, 15},
              {&f.fou_tel2, QStringLiteral("Téléphone 2 :"), {}, 15},
              {&f.fou_fax1, QStringLiteral("Télécopie :"), {}, 15},
              {&f.fou_fax2, QStringLiteral("Télécopie 2 :"), {}, 15},
              {&f.fou_mail, QStringLiteral("Courriel :"), {}, 30}}},
            {QStringLiteral("Conditions"),
             {{&f.fou_fam, QStringLiteral("Famille :")},
              {&f.fou_exp, QStringLiteral("Expédition :")},
              {&f.fou_rglt, QStringLiteral("Règlement :")},
              {&f.fou_clt, QStringLiteral("N° client :")},
              {&f.fou_cpt, QStringLiteral("Compte comptable :")}}}};
}

} // namespace

SupplierForm::SupplierForm(Desk& desk)
    : RecordForm(desk, QStringLiteral("T_fouges")), molven_(workspace_.open(session().molven())) {
    documents_ = new DocumentShelf(*this);
    const PickList suppliers = pick_lists::suppliers(molven_, {});
    build({QStringLiteral("Gestion des fournisseurs"),
           suppliers.columns,
           suppliers.query,
           supplierGroups(),
           2,
           strfournis.fou_cod,
           QStringLiteral("Ce code n'existe pas"),
           QStringLiteral(" N° Fournisseur obligatoire"),
           {{DataFile::Molven, molven_}, {DataFile::Compta, workspace_.open(session().path(DataFile::Compta))}},
           {&strfournis.fou_nom, &strfournis.fou_rglt}});
    underList()->addWidget(documents_);
    extraButtons()->addWidget(trailButton(*this, [this] {
        return TrailSubject{TrailSubject::Kind::Supplier, requireRecord()[strfournis.fou_cod]};
    }));
    documents_->keepFolder = [this](const QString& folder) { keepFolder(folder); };
    keyPicker([this](const pick_lists::Chosen& chosen) { return pick_lists::suppliers(molven_, chosen); });
}

Record SupplierForm::blank() { return parties::blankSupplier(molven_); }

std::optional<Record> SupplierForm::find(const QString& key) { return parties::findSupplier(molven_, key); }

void SupplierForm::write(const Record& record, const std::optional<Record>& before) {
    parties::saveSupplier(molven_, record, before);
}

void SupplierForm::erase(const Record& record) {
    references::remove(session(), record, [&record](references::Files& files) {
        parties::removeSupplier(files[DataFile::Molven], record[strfournis.fou_cod]);
    });
}

QString SupplierForm::nameOf(const Record& record) const {
    return QStringLiteral("Fournisseur %1, %2").arg(record[strfournis.fou_cod], record[strfournis.fou_nom]);
}

void SupplierForm::keepFolder(const QString& folder) {
    if (state() != State::Viewing) return panel().edit(strfournis.fou_chemin)->put(folder);
    const QString code = requireRecord()[strfournis.fou_cod];
    parties::setSupplierFolder(molven_, code, folder);
    show(find(code).value());
}

void SupplierForm::stateChanged() {
    documents_->show(record() ? QString((*record())[strfournis.fou_chemin]) : QString());
}

} // namespace molven

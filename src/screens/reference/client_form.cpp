#include "screens/reference/client_form.h"

#include "data/format.h"
#include "dossier/references.h"
#include "reference/parties.h"
#include "screens/reference/document_shelf.h"
#include "screens/shell/trail_form.h"
#include "ui/pick_lists.h"

#include <QLabel>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<BoxGroup> clientGroups() {
    const auto& c = strclient;
    return {
        {QStringLiteral("Identité"),
         {{&c.clt_cod, QStringLiteral("N° Client :")},
          {&c.clt_nom, QStringLiteral("Nom :"), {}, 28},
          {&c.clt_resp, QStringLiteral("Responsable :"), {}, 28},
          {&c.clt_nic, QStringLiteral("N° identification :")},
          {&c.clt_tva, QStringLiteral("N° TVA :")},
          {.field = &c.clt_pays, .caption = QStringLiteral("Pays :"), .beside = true},
          {&c.clt_svc, QStringLiteral("Code service :"), {}, 28},
          {&c.clt_rou, QStringLiteral("Adresse électronique :"), {}, 28}}},
        {QStringLiteral("Adresse :"),
         {{&c.clt_l1, {}, {}, 28},
          {&c.clt_l2, {}, {}, 28},
          {&c.clt_l3, {}, {}, 28},
          {&c.clt_l4, {}, {}, 28},
          {&c.clt_l5, QStringLiteral("CP Ville :"), {}, 28}}},
        {QStringLiteral("Livraison :"),
         {{&c.clt_liv1, {}, {}, 28},
          {&c.clt_liv2, {}, {}, 28},
          {&c.clt_liv3, {}, {}, 28},
          {&c.clt_liv4, {}, {}, 28},
          {&c.clt_liv5, QStringLiteral("CP Ville :"), {}, 28}}},
        {QStringLiteral("Facturation :"),
         {{&c.clt_fac1, {}, {}, 28},
          {&c.clt_fac2, {}, {}, 28},
          {&c.clt_fac3, {}, {}, 28},
          {&c.clt_fac4, {}, {}, 28},
          {&c.clt_fac5, QStringLiteral("CP Ville :"), {}, 28}}},
        {QStringLiteral("Documents et mémo"),
         {{&c.clt_chemin, QStringLiteral("Documents :"), {}, 28}, {&c.clt_memo, QStringLiteral("Mémo :"), {}, 28}}},
        {QStringLiteral("Téléphone et courriel"),
         {{&c.clt_tel1, QStringLiteral("Téléphone :"), {}, 11},
          {.field = &c.clt_tel2, .caption = QStringLiteral("Téléphone 2 :"), .characters = 11, .beside = true},
          {&c.clt_fax1, QStringLiteral("Télécopie :"), {}, 11},
          {.field = &c.clt_fax2, .caption = QStringLiteral("Télécopie 2 :"), .characters = 11, .beside = true},
          {&c.clt_mail, QStringLiteral("Courriel :"), {}, 28}}},
        {QStringLiteral("Banque"),
         {{&c.clt_bque, QStringLiteral("Banque :")},
          {.field = &c.clt_guic, .caption = QStringLiteral("Guichet :"), .beside = true},
          {&c.clt_ncpt, QStringLiteral("N° compte :")},
          {.field = &c.clt_rib, .caption = QStringLiteral("Clé RIB :"), .beside = true},
          {&c.clt_dom, QStringLiteral("Domiciliation :"), {}, 28}}},
        {QStringLiteral("Comptabilité"),
         {{&c.clt_cpt, QStringLiteral("Compte comptable :")},
          {.field = &c.clt_ccmx, .caption = QStringLiteral("Code comptabilité :"), .characters = 10, .beside = true}}},
        {QStringLiteral("Conditions"),
         {{&c.clt_rgt, QStringLiteral("Règlement :")},
          {&c.clt_exp, QStringLiteral("Expédition :")},
          {&c.clt_fam, QStringLiteral("Famille :")},
          {&c.clt_dep, QStringLiteral("Dépôt :")},
          {&c.clt_rep, QStringLiteral("Représentant :")},
          {&c.clt_rem, QStringLiteral("Code remise :")},
          {&c.clt_fac, QStringLiteral("Facturation O/N :")},
          {.field = &c.clt_edtr, .caption = QStringLiteral("Relevé O/N :"), .beside = true},
          {.field = &c.clt_rbl, .caption = QStringLiteral("Regroupe BL O/N :"), .beside = true}}}};
}

} // namespace

ClientForm::ClientForm(Desk& desk)
    : RecordForm(desk, QStringLiteral("t_cltges")), molven_(workspace_.open(session().molven())) {
    documents_ = new DocumentShelf(*this);
    PickList clients = pick_lists::clients(molven_, {});
    clients.columns.removeLast();
    build({QStringLiteral("Gestion des clients"),
           clients.columns,
           clients.query,
           clientGroups(),
           2,
           strclient.clt_cod,
           QStringLiteral("Ce code n'existe pas"),
           QStringLiteral(" N° Client obligatoire"),
           {{DataFile::Molven, molven_}},
           {&strclient.clt_nom}});
    country_ = new QLabel(session().rules().country(), this);
    country_->setObjectName(QStringLiteral("lblpays"));
    extraRows()->addWidget(country_);
    underList()->addWidget(documents_);
    extraButtons()->addWidget(trailButton(*this, [this] {
        return TrailSubject{TrailSubject::Kind::Client, requireRecord()[strclient.clt_cod]};
    }));
    documents_->keepFolder = [this](const QString& folder) { keepFolder(folder); };
    Edit* account = panel().edit(strclient.clt_cpt);
    onLeft(account, [account] { account->put(padded(account->value(), strclient.clt_cpt.size)); });
    keyPicker([this](const pick_lists::Chosen& chosen) { return pick_lists::clients(molven_, chosen); });
}

Record ClientForm::blank() { return parties::blankClient(molven_); }

std::optional<Record> ClientForm::find(const QString& key) { return parties::findClient(molven_, key); }

void ClientForm::write(const Record& record, const std::optional<Record>& before) {
    parties::saveClient(molven_, record, before);
}

void ClientForm::erase(const Record& record) {
    references::remove(session(), record, [&record](references::Files& files) {
        parties::removeClient(files[DataFile::Molven], record[strclient.clt_cod]);
    });
}

QString ClientForm::nameOf(const Record& record) const {
    return QStringLiteral("Client %1, %2").arg(record[strclient.clt_cod], record[strclient.clt_nom]);
}

void ClientForm::keepFolder(const QString& folder) {
    if (state() != State::Viewing) return panel().edit(strclient.clt_chemin)->put(folder);
    const QString code = requireRecord()[strclient.clt_cod];
    parties::setClientFolder(molven_, code, folder);
    show(find(code).value());
}

void ClientForm::stateChanged() { documents_->show(record() ? QString((*record())[strclient.clt_chemin]) : QString()); }

} // namespace molven

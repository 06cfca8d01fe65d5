#include "screens/reference/code_table_forms.h"

#include "data/errors.h"
#include "reference/article_tables.h"
#include "reference/article_updates.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/tariff_tables.h"
#include "screens/price_notice.h"
#include "ui/pick_lists.h"
#include "ui/progress.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

const QString Money = QStringLiteral("#####0.00");

const ParameterList* listOf(const QString& mode) {
    if (mode == u"PAN1" || mode == u"PAN2") return nullptr;
    const ParameterList* found = parameters::listOfMode(mode);
    if (!found) throw Refusal(QStringLiteral("Cette liste n'existe pas : ") + mode);
    return found;
}

} // namespace

void MolvenTableForm::tellCurrency() {
    auto* rows = static_cast<QBoxLayout*>(layout());
    rows->insertWidget(rows->count() - 1, priceNotice(session(), this)); // over the buttons
}

void MolvenTableForm::saveReimbursement(const article_updates::Reimbursement& list, const Record& record,
                                        const std::optional<Record>& before, const QString& question) {
    code_tables::requireWritable(molven_, list.kind, record, before);
    const bool intoArticles =
        prompt().confirm(question, record.value(*list.kind.key.first()) + u' ' + record[list.price].toString());
    article_updates::saveReimbursement(molven_, list, record, before, intoArticles);
    if (intoArticles)
        prompt().tell(QStringLiteral("Obligatoire : Faire une mise à jour des produits à partir des articles"));
}

ParameterForm::ParameterForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_param")), list_(listOf(mode())) {
    if (list_)
        buildList(*list_);
    else
        buildPan();
}

void ParameterForm::buildList(const ParameterList& list) {
    const bool ofSubFamily = list.letter == list::SubFamily, ofDepot = list.letter == list::Depot;
    const bool ofArticleFamily = list.letter == list::ArticleFamily;
    const QString accountTitle = ofSubFamily ? QStringLiteral("Famille") : QStringLiteral("Compte");
    QList<GridColumn> columns{{&strparam.num_par, QStringLiteral("Code"), 80},
                              {&strparam.lib_par, QStringLiteral("Libellé"), 420},
                              {&strparam.cpt_par, accountTitle, 110}};
    QList<FieldBox> boxes{{&strparam.num_par, QStringLiteral("&Code :"), QStringLiteral("Txtnum"), 6},
                          {&strparam.lib_par, QStringLiteral("Li&bellé :"), {}, 34}};
    if (ofSubFamily)
        boxes.append({&strparam.cpt_par,
                      QStringLiteral("Famille :"),
                      QStringLiteral("txtcf"),
                      6,
                      {},
                      false,
                      false,
                      QStringLiteral("cmdregf")});
    else
        boxes.append({&strparam.cpt_par, QStringLiteral("C&ompte :"), QStringLiteral("Txtcpt"), 10});
    if (ofDepot) {
        columns.append({&strparam.fam_dep, QStringLiteral("Famille"), 80});
        boxes.append({&strparam.fam_dep,
                      QStringLiteral("Famille dépôt :"),
                      QStringLiteral("txtfamd"),
                      6,
                      {},
                      false,
                      false,
                      QStringLiteral("cmdfamd")});
    }
    const bool hasAncillaryFamily = ofArticleFamily && session().rules().linksAncillaryFamilies();
    if (hasAncillaryFamily)
        boxes.append({&strparam.fam_dep,
                      QStringLiteral("Famille ancillaire :"),
                      QStringLiteral("txtregf"),
                      6,
                      {},
                      false,
                      false,
                      QStringLiteral("cmdanc")});
    build({QStringLiteral("Paramètres : ") + list.caption,
           list.caption,
           code_tables::parameters(),
           molven_,
           columns,
           boxes,
           strparam.num_par,
           parameters::ofList(list.letter),
           {{strparam.cod_par, list.letter}}});
    if (ofSubFamily) {
        panel().listButton(strparam.cpt_par)->setText(QStringLiteral("Famille"));
        pickFamily(strparam.cpt_par, list::ArticleFamily, QStringLiteral("LES FAMILLES ARTICLES"));
    }
    if (ofDepot) pickFamily(strparam.fam_dep, list::DepotFamily, QStringLiteral("LES FAMILLES DE DEPOT"));
    if (hasAncillaryFamily)
        pickFamily(strparam.fam_dep, list::AncillaryFamily, QStringLiteral("LES FAMILLES ANCILLAIRES"));
    if (ofArticleFamily)
        extraButtons()->addWidget(
            button(QStringLiteral("cmdarticle"), QStringLiteral("Im&puter les articles"), [this] { pushAccount(); }));
}

void ParameterForm::pickFamily(const Field& field, const QString& letter, const QString& title) {
    picker(field, [this, &field, letter, title] {
        if (molven_.count(strparam, parameters::ofList(letter)) == 0)
            throw Refusal(QStringLiteral("Aucune famille n'est paramétrée"), field.name);
        return pick_lists::parameters(molven_, letter, title, put(field, strparam.num_par));
    });
}

std::optional<Order> ParameterForm::printOrder() {
    if (!list_) return std::nullopt;
    return prompt().ask(QStringLiteral("Edition triée par code ? ")) ? Order(strparam.num_par)
                                                                     : Order(strparam.lib_par);
}

void ParameterForm::pushAccount() {
    const QString account = typed(strparam.cpt_par);
    Database compta = workspace_.open(session().path(DataFile::Compta));
    const auto given = article_updates::setFamilyAccount(molven_, compta, typed(strparam.num_par), account);
    notify(QStringLiteral("Il y a eu %1 articles mis à jour ").arg(given.articles));
    if (!given.isInChart)
        prompt().tell(QStringLiteral("Attention : le compte %1 n'est pas dans le plan comptable").arg(account), {},
                      Icon::Warning);
}

void ParameterForm::buildPan() {
    const QString price = articles::pricePattern(session().rules());
    build({QStringLiteral("Paramètres : les codes PAN"),
           QStringLiteral("les codes PAN"),
           code_tables::panPrices(),
           molven_,
           {{&strpan.pan_ref, QStringLiteral("Référence"), 130},
            {&strpan.pan_lib, QStringLiteral("Libellé"), 380},
            {&strpan.pan_pa, QStringLiteral("Prix d'achat"), 110, price},
            {&strpan.pan_pan, QStringLiteral("PAN"), 110, price}},
           {{&strpan.pan_ref, QStringLiteral("&Référence :"), QStringLiteral("Txtnum")},
            {&strpan.pan_lib, QStringLiteral("Li&bellé :"), {}, 34},
            {&strpan.pan_pa, QStringLiteral("Prix d'ac&hat :"), {}, 12, price},
            {&strpan.pan_pan, QStringLiteral("&PAN :"), {}, 12, price}},
           strpan.pan_ref});
    tellCurrency();
    extraButtons()->addWidget(
        button(QStringLiteral("cmdpan"), QStringLiteral("&Générer les PAN"), [this] { generatePan(); }));
}

void ParameterForm::generatePan() {
    if (!prompt().ask(QStringLiteral("Voulez-vous mettre à jour la table des P.A.N.  ? "))) return;
    article_updates::fillPanTable(molven_, progress(*this, QStringLiteral("Table des PAN")));
    if (prompt().confirm(QStringLiteral("Voulez vous recopier le PA dans le PAN (si PA<>0) ? "),
                         QStringLiteral("Les PAN saisis à la main seront remplacés.")))
        article_updates::copyPurchaseToPan(molven_);
    refresh();
}

PaymentModeForm::PaymentModeForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_parrgt")) {
    build({QStringLiteral("Modes de règlement"),
           QStringLiteral("LISTE DES MODES DE REGLEMENT"),
           code_tables::paymentModes(),
           molven_,
           {{&strparrgt.cde_rglt, QStringLiteral("Code"), 70},
            {&strparrgt.lib_rglt, QStringLiteral("Libellé"), 380},
            {&strparrgt.nbj_rglt, QStringLiteral("Jours"), 70},
            {&strparrgt.fdm_rglt, QStringLiteral("Fin de mois"), 90},
            {&strparrgt.jou_rglt, QStringLiteral("Le"), 60}},
           {{&strparrgt.cde_rglt, QStringLiteral("&Code :")},
            {&strparrgt.lib_rglt, QStringLiteral("Li&bellé :"), {}, 34},
            {&strparrgt.nbj_rglt, QStringLiteral("Nombre de &jours :"), {}, 4},
            {&strparrgt.fdm_rglt, QStringLiteral("&Fin de mois O/N :")},
            {&strparrgt.jou_rglt, QStringLiteral("&Le (jour du mois, 0 : aucun) :"), {}, 3}},
           strparrgt.cde_rglt});
}

InvoicingForm::InvoicingForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_parfac")) {
    build({QStringLiteral("Divers facturation"),
           QStringLiteral("LISTE DES CODES TVA"),
           code_tables::vatCodes(),
           molven_,
           {{&strparfac.par1_cde, QStringLiteral("Code"), 70},
            {&strparfac.par1_lib, QStringLiteral("Libellé"), 400},
            {&strparfac.par1_tx, QStringLiteral("Taux"), 80, QStringLiteral("#0.00")},
            {&strparfac.par1_cpt, QStringLiteral("Compte"), 110}},
           {{&strparfac.par1_cde, QStringLiteral("&Code :")},
            {&strparfac.par1_lib, QStringLiteral("Li&bellé :"), {}, 34},
            {&strparfac.par1_tx, QStringLiteral("&Taux % :"), {}, 8, QStringLiteral("#0.00")},
            {&strparfac.par1_cpt, QStringLiteral("C&ompte :")}},
           strparfac.par1_cde});
    extraButtons()->addWidget(button(QStringLiteral("Cmdtexte"), QStringLiteral("Te&xtes de facture"),
                                     [this] { this->desk().open(QStringLiteral("T_partxt")); }));
    extraButtons()->addWidget(button(QStringLiteral("Cmdmonnaie"), QStringLiteral("Monnai&es"),
                                     [this] { this->desk().open(QStringLiteral("T_monnaie")); }));
    extraButtons()->addWidget(button(QStringLiteral("Cmdemetteur"), QStringLiteral("Emetteu&r"),
                                     [this] { this->desk().open(QStringLiteral("T_emetteur")); }));
}

InvoiceTextForm::InvoiceTextForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_partxt")) {
    build({QStringLiteral("Textes de facture"),
           QStringLiteral("LISTE DES TEXTES DE FACTURE"),
           code_tables::invoiceTexts(),
           molven_,
           {{&strpartxt.txt_cde, QStringLiteral("Code"), 80}, {&strpartxt.txt_lib, QStringLiteral("Texte"), 600}},
           {{&strpartxt.txt_cde, QStringLiteral("&Code :")}, {&strpartxt.txt_lib, QStringLiteral("&Texte :"), {}, 34}},
           strpartxt.txt_cde});
}

CurrencyForm::CurrencyForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_monnaie")) {
    build({QStringLiteral("Monnaies"),
           QStringLiteral("LISTE DES MONNAIES"),
           code_tables::currencies(),
           molven_,
           {{&strmonnaie.mon_cle, QStringLiteral("Code"), 80},
            {&strmonnaie.mon_lib, QStringLiteral("Libellé"), 400},
            {&strmonnaie.mon_euro, QStringLiteral("Euro"), 120}},
           {{&strmonnaie.mon_cle, QStringLiteral("&Code :")},
            {&strmonnaie.mon_lib, QStringLiteral("Li&bellé :"), {}, 34},
            {&strmonnaie.mon_euro, QStringLiteral("&Euro :"), {}, 12}},
           strmonnaie.mon_cle});
}

AccountForm::AccountForm(Desk& desk) : CodeTableForm(desk, QStringLiteral("T_plan")) {
    build({QStringLiteral("Plan comptable"),
           QStringLiteral("LE PLAN COMPTABLE"),
           code_tables::accounts(),
           workspace_.open(session().path(DataFile::Compta)),
           {{&strplan.cpt_aff, QStringLiteral("Compte"), 130}, {&strplan.cpt_lib, QStringLiteral("Libellé"), 500}},
           {{&strplan.cpt_aff, QStringLiteral("&Compte :")}, {&strplan.cpt_lib, QStringLiteral("Li&bellé :"), {}, 34}},
           strplan.cpt_aff});
}

LppForm::LppForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_parlpp")) {
    build({QStringLiteral("Codes LPP"),
           QStringLiteral("LISTE DES LPP"),
           code_tables::lppCodes(),
           molven_,
           {{&strlpp.lpp_code, QStringLiteral("Code"), 110},
            {&strlpp.lpp_lib, QStringLiteral("Libellé"), 430},
            {&strlpp.lpp_ttc, QStringLiteral("Prix TTC"), 100, QStringLiteral("### ##0.00")},
            {&strlpp.lpp_tips, QStringLiteral("Code TIPS"), 110}},
           {{&strlpp.lpp_code, QStringLiteral("&Code :")},
            {&strlpp.lpp_lib, QStringLiteral("Li&bellé :"), {}, 36},
            {&strlpp.lpp_ttc, QStringLiteral("Prix &TTC :"), {}, 12, QStringLiteral("### ##0.00")},
            {&strlpp.lpp_tips, QStringLiteral("Code TI&PS :")}},
           strlpp.lpp_code});
    tellCurrency();
    extraButtons()->addWidget(button(QStringLiteral("Cmdtipslpp"), QStringLiteral("TIPS vers &LPP"),
                                     [this] { this->desk().open(QStringLiteral("T_tipslpp")); }));
}

void LppForm::save(const Record& record, const std::optional<Record>& before) {
    saveReimbursement(article_updates::lpp(), record, before,
                      QStringLiteral("Voulez vous mettre à jour les ARTICLES PV/RESP ? "));
}

TipsForm::TipsForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_partips")) {
    build({QStringLiteral("Codes TIPS"),
           QStringLiteral("LISTE DES TIPS"),
           code_tables::tipsCodes(),
           molven_,
           {{&strpartips.cod_tips, QStringLiteral("Code"), 130},
            {&strpartips.lib_tips, QStringLiteral("Libellé"), 480},
            {&strpartips.ttc_tips, QStringLiteral("Prix TTC"), 110, QStringLiteral("### ##0.00")}},
           {{&strpartips.cod_tips, QStringLiteral("&Code :")},
            {&strpartips.lib_tips, QStringLiteral("Li&bellé :"), {}, 36},
            {&strpartips.ttc_tips, QStringLiteral("Prix &TTC :"), {}, 12, QStringLiteral("### ##0.00")}},
           strpartips.cod_tips});
    tellCurrency();
}

void TipsForm::save(const Record& record, const std::optional<Record>& before) {
    saveReimbursement(article_updates::tips(), record, before,
                      QStringLiteral("Voulez vous mettre à jour les fiches? "));
}

TariffForm::TariffForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_partarif")) {
    build({QStringLiteral("Tarifs spéciaux"),
           QStringLiteral("LISTE DES TARIFS SPECIAUX"),
           code_tables::clientTariffs(),
           molven_,
           {{&strtarifclt.tar_clt, QStringLiteral("Client"), 70},
            {&strtarifclt.tar_nom, QStringLiteral("Nom"), 260},
            {&strtarifclt.tar_ref, QStringLiteral("Référence"), 120},
            {&strtarifclt.tar_lib, QStringLiteral("Désignation"), 260},
            {&strtarifclt.tar_pvt, QStringLiteral("Prix"), 100, Money}},
           {{&strtarifclt.tar_clt, QStringLiteral("C&lient :"), {}, 0, {}, false, false, QStringLiteral("cmdclt")},
            {&strtarifclt.tar_ref, QStringLiteral("&Référence :"), {}, 0, {}, false, false, QStringLiteral("Cmdref")},
            {&strtarifclt.tar_pvt, QStringLiteral("&Prix :"), {}, 12, Money}},
           {strtarifclt.tar_clt, strtarifclt.tar_ref}});
    tellCurrency();
}

void TariffForm::shown() {
    const auto article = codes::find(molven_, codes::ArticleOfTariff, typed(strtarifclt.tar_ref));
    const bool withoutVat = article && (*article)[strarticle.art_tar].startsWith(u'H');
    panel().setHint(strtarifclt.tar_pvt, !article     ? QString()
                                         : withoutVat ? QStringLiteral("  HT")
                                                      : QStringLiteral("  TTC"));
}

DiscountForm::DiscountForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_parrem")) {
    build({QStringLiteral("Remises clients"),
           QStringLiteral("LISTE DES REMISES "),
           code_tables::discounts(),
           molven_,
           {{&strparrem.rem_clt, QStringLiteral("Client"), 80},
            {&strparrem.rem_art, QStringLiteral("Article"), 80},
            {&strparrem.rem_rem, QStringLiteral("Remise %"), 100, QStringLiteral("00.00")},
            {&strparrem.rem_lib, QStringLiteral("Libellé"), 420}},
           {{&strparrem.rem_clt, QStringLiteral("Catégorie &client :")},
            {&strparrem.rem_art, QStringLiteral("Catégorie a&rticle :")},
            {&strparrem.rem_rem, QStringLiteral("Remise &% :"), {}, 8, QStringLiteral("00.00")},
            {&strparrem.rem_lib, QStringLiteral("Li&bellé :"), {}, 34}},
           {strparrem.rem_clt, strparrem.rem_art}});
}

CommissionRateForm::CommissionRateForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_partxrep")) {
    build({QStringLiteral("Commissions représentant"),
           QStringLiteral("LISTE DES COMMISSIONS"),
           code_tables::commissionRates(),
           molven_,
           {{&strtauxrep.c_rep, QStringLiteral("Représentant"), 110},
            {&strtauxrep.c_nom, QStringLiteral("Nom"), 360},
            {&strtauxrep.c_ref, QStringLiteral("Référence"), 130},
            {&strtauxrep.c_tau, QStringLiteral("Taux %"), 90, QStringLiteral("#0.00")}},
           {{&strtauxrep.c_rep, QStringLiteral("&Représentant :"), {}, 0, {}, false, false, QStringLiteral("Cmdrep")},
            {&strtauxrep.c_ref, QStringLiteral("Ré&férence :")},
            {&strtauxrep.c_tau, QStringLiteral("&Taux % :"), {}, 8, QStringLiteral("#0.00")}},
           {strtauxrep.c_rep, strtauxrep.c_ref}});
}

EnglishLabelForm::EnglishLabelForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_utilit")) {
    static const CodeTable labels{strarticle,
                                  {&strarticle.art_ref},
                                  {{strarticle.art_ref, QStringLiteral("Référence obligatoire")}},
                                  {},
                                  QStringLiteral("Référence Inconnue")};
    CodeTableView view{
        QStringLiteral("Libellé en anglais"),
        QStringLiteral("LES LIBELLES EN ANGLAIS"),
        labels,
        molven_,
        {{&strarticle.art_ref, QStringLiteral("Référence"), 130},
         {&strarticle.art_li1, QStringLiteral("Libellé"), 320},
         {&strarticle.art_ang, QStringLiteral("Libellé anglais"), 320}},
        {{&strarticle.art_ref, QStringLiteral("&Référence :"), QStringLiteral("txtref")},
         {&strarticle.art_li1, QStringLiteral("Libellé :"), QStringLiteral("txtli1"), 34, {}, false, true},
         {&strarticle.art_ang, QStringLiteral("Libellé an&glais :"), QStringLiteral("txtang"), 34}},
        strarticle.art_ref};
    view.hasFixedRows = true;
    build(view);
}

} // namespace molven

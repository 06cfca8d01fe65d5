#include "reference/code_kinds.h"

#include "data/code_kind.h"
#include "reference/article_tables.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"

namespace molven::codes {

namespace {

CodeKind entriesOf(const QString& letter, const char* subject, const char* title, const QStringList& besides = {},
                   const QStringList& reserved = {}) {
    return {.table = &strparam,
            .key = &strparam.num_par,
            .words = &strparam.lib_par,
            .list = &strparam.cod_par,
            .letter = letter,
            .subject = QString::fromUtf8(subject),
            .title = QString::fromUtf8(title),
            .besides = besides,
            .reserved = reserved};
}

CodeKind accounts(bool acceptsUnknown) {
    return {.table = &strplan,
            .key = &strplan.cpt_aff,
            .words = &strplan.cpt_lib,
            .file = DataFile::Compta,
            .subject = QStringLiteral("Ce compte"),
            .hint = QStringLiteral("Compte inconnu"),
            .acceptsUnknown = acceptsUnknown};
}

CodeKind articles(int digits) {
    return {.table = &strarticle,
            .key = &strarticle.art_ref,
            .words = &strarticle.art_li1,
            .subject = QStringLiteral("Cet article"),
            .digits = digits};
}

const QStringList NoFamily{QStringLiteral("000")};
const CodeKind AccountOfEntry = accounts(true);

} // namespace

const CodeKind Client{.table = &strclient,
                      .key = &strclient.clt_cod,
                      .words = &strclient.clt_nom,
                      .subject = QStringLiteral("Ce client"),
                      .digits = 6};
const CodeKind Supplier{.table = &strfournis,
                        .key = &strfournis.fou_cod,
                        .words = &strfournis.fou_nom,
                        .subject = QStringLiteral("Ce fournisseur"),
                        .hint = QStringLiteral("Fournisseur inconnu"),
                        .digits = 6};
const CodeKind Article = articles(0);
const CodeKind ArticleOfTariff = articles(13);
const CodeKind PaymentMode{.table = &strparrgt,
                           .key = &strparrgt.cde_rglt,
                           .words = &strparrgt.lib_rglt,
                           .subject = QStringLiteral("Ce mode de règlement"),
                           .hint = QStringLiteral("Mode inconnu"),
                           .digits = 2};
const CodeKind VatCode{.table = &strparfac,
                       .key = &strparfac.par1_cde,
                       .words = &strparfac.par1_lib,
                       .subject = QStringLiteral("Ce code TVA")};
const CodeKind Currency{.table = &strmonnaie,
                        .key = &strmonnaie.mon_cle,
                        .words = &strmonnaie.mon_lib,
                        .subject = QStringLiteral("Cette monnaie")};
const CodeKind Account = accounts(false);
const CodeKind LppCode{.table = &strlpp,
                       .key = &strlpp.lpp_code,
                       .words = &strlpp.lpp_lib,
                       .subject = QStringLiteral("Ce code LPP"),
                       .besides = {QStringLiteral("MULTI")}};
const CodeKind TipsCode{.table = &strpartips,
                        .key = &strpartips.cod_tips,
                        .words = &strpartips.lib_tips,
                        .subject = QStringLiteral("Ce code TIPS")};
const CodeKind DiscountCategory{
    .table = &strparrem, .key = &strparrem.rem_clt, .subject = QStringLiteral("Cette catégorie de remise")};

const CodeKind ClientFamily = entriesOf(list::ClientFamily, "Cette famille", "LES FAMILLES CLIENT", NoFamily);
const CodeKind ArticleFamily = entriesOf(list::ArticleFamily, "Cette famille", "LES FAMILLES", NoFamily);
const CodeKind SubFamily = entriesOf(list::SubFamily, "Cette sous-famille", "LES SOUS-FAMILLES", NoFamily);
const CodeKind SupplierFamily = entriesOf(list::SupplierFamily, "Cette famille", "LES FAMILLES FOURNISSEUR", NoFamily);
const CodeKind AncillaryFamily = entriesOf(list::AncillaryFamily, "Cette famille", "LES FAMILLES", NoFamily);
const CodeKind DepotFamily = entriesOf(list::DepotFamily, "Cette famille", "LES FAMILLES DE DEPOT");
const CodeKind Representative = entriesOf(list::Representative, "Ce représentant", "LES REPRESENTANTS");
const CodeKind Depot = entriesOf(list::Depot, "Ce dépôt", "LES DEPOTS", {}, {MainDepot, SetDepot});
const CodeKind Dispatch = entriesOf(list::Dispatch, "Ce mode d'expédition", "LES MODES D'EXPEDITION");
const CodeKind Surgeon = entriesOf(list::Surgeon, "Ce chirurgien", "LES CHIRURGIENS");
const CodeKind Reworked = entriesOf(list::Reworked, "Cette cause", "LES CAUSES");
const CodeKind Derogated = entriesOf(list::Derogated, "Cette cause", "LES CAUSES");
const CodeKind Scrapped = entriesOf(list::Scrapped, "Cette cause", "LES CAUSES");

const CodeKind FamilyOfArticle{.cases = {{strarticle.art_anc, QStringLiteral("X"), AncillaryFamily}},
                               .otherwise = &ArticleFamily};
const CodeKind AccountOfParameter{.cases = {{strparam.cod_par, list::SubFamily, ArticleFamily}},
                                  .otherwise = &AccountOfEntry};
const CodeKind FamilyOfParameter{
    .cases = {{strparam.cod_par, list::Depot, DepotFamily}, {strparam.cod_par, list::ArticleFamily, AncillaryFamily}}};

const CodeKind YesNo{.title = QStringLiteral("OUI OU NON"),
                     .letters = QStringLiteral("ON"),
                     .meanings = {QStringLiteral("Oui"), QStringLiteral("Non")}};
const CodeKind ArticleType{.title = QStringLiteral("LES TYPES D'ARTICLE"),
                           .letters = QStringLiteral("FNG"),
                           .meanings = {QStringLiteral("Article Fabriqué"), QStringLiteral("Article Négoce"),
                                        QStringLiteral("Article Greffon")}};
const CodeKind Origin{.title = QStringLiteral("LES ORIGINES"),
                      .letters = QStringLiteral("HAN"),
                      .meanings = {QStringLiteral("Origine Humaine"), QStringLiteral("Origine Animale"),
                                   QStringLiteral("Origine Ni Humaine, Ni Animale")}};
const CodeKind PriceBasis{
    .title = QStringLiteral("LES BASES DE PRIX"),
    .letters = QStringLiteral("HT"),
    .meanings = {QStringLiteral("Prix hors taxe"), QStringLiteral("Prix toutes taxes comprises")}};
const CodeKind Reimbursement{.title = QStringLiteral("LES REMBOURSEMENTS"),
                             .letters = QStringLiteral("TL"),
                             .meanings = {QStringLiteral("Code TIPS"), QStringLiteral("Code LPP")}};

} // namespace molven::codes

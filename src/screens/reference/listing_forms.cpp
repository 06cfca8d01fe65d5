#include "screens/reference/listing_forms.h"

#include "reference/articles.h"
#include "reference/code_kinds.h"
#include "reference/party_tables.h"

namespace molven {

ArticleListing::ArticleListing(Desk& desk) : ListingForm(desk, QStringLiteral("T_artedt")) {
    const QString price = articles::pricePattern(session().rules());
    build({QStringLiteral("Edition des articles"),
           workspace_.open(session().molven()),
           strarticle,
           {{&strarticle.art_ref, QStringLiteral("Référence"), 120},
            {&strarticle.art_li1, QStringLiteral("Désignation"), 330},
            {&strarticle.art_fam, QStringLiteral("Famille"), 70},
            {&strarticle.art_fou, QStringLiteral("Fourn."), 70},
            {&strarticle.art_aig, QStringLiteral("Suivi"), 50},
            {&strarticle.art_lpp, QStringLiteral("LPP"), 80},
            {&strarticle.art_pv1, QStringLiteral("Prix HT"), 90, price},
            {&strarticle.art_ttc, QStringLiteral("Prix TTC"), 90, price},
            {&strarticle.art_stk, QStringLiteral("Stock"), 70}},
           strarticle.art_ref,
           QStringLiteral("Référence"),
           0,
           {{QStringLiteral("Référence"), strarticle.art_ref},
            {QStringLiteral("Libellé"), strarticle.art_li1},
            {QStringLiteral("Famille"), {strarticle.art_fam, strarticle.art_ref}, &strarticle.art_fam}},
           &codes::Article});
}

ClientListing::ClientListing(Desk& desk) : ListingForm(desk, QStringLiteral("t_cltedt")) {
    build({QStringLiteral("Edition des clients"),
           workspace_.open(session().molven()),
           strclient,
           {{&strclient.clt_cod, QStringLiteral("Code"), 70},
            {&strclient.clt_nom, QStringLiteral("Nom"), 300},
            {&strclient.clt_l5, QStringLiteral("CP Ville"), 200},
            {&strclient.clt_tel1, QStringLiteral("Téléphone"), 130},
            {&strclient.clt_fam, QStringLiteral("Famille"), 70},
            {&strclient.clt_dep, QStringLiteral("Dépôt"), 60},
            {&strclient.clt_rep, QStringLiteral("Repr."), 60}},
           strclient.clt_cod,
           QStringLiteral("Code"),
           6,
           {{QStringLiteral("Code"), strclient.clt_cod},
            {QStringLiteral("Nom"), strclient.clt_nom},
            {QStringLiteral("Famille"), {strclient.clt_fam, strclient.clt_nom}, &strclient.clt_fam},
            {QStringLiteral("Représentant"), {strclient.clt_rep, strclient.clt_nom}, &strclient.clt_rep}},
           &codes::Client});
}

SupplierListing::SupplierListing(Desk& desk) : ListingForm(desk, QStringLiteral("T_fouedt")) {
    build({QStringLiteral("Edition des fournisseurs"),
           workspace_.open(session().molven()),
           strfournis,
           {{&strfournis.fou_cod, QStringLiteral("Code"), 70},
            {&strfournis.fou_nom, QStringLiteral("Nom"), 320},
            {&strfournis.fou_l5, QStringLiteral("CP Ville"), 220},
            {&strfournis.fou_tel1, QStringLiteral("Téléphone"), 140},
            {&strfournis.fou_fam, QStringLiteral("Famille"), 70},
            {&strfournis.fou_rglt, QStringLiteral("Règl."), 60}},
           strfournis.fou_cod,
           QStringLiteral("Code"),
           6,
           {{QStringLiteral("Code"), strfournis.fou_cod},
            {QStringLiteral("Nom"), strfournis.fou_nom},
            {QStringLiteral("Famille"), {strfournis.fou_fam, strfournis.fou_nom}, &strfournis.fou_fam}},
           &codes::Supplier});
}

} // namespace molven

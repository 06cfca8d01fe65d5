#include "ui/pick_lists.h"

#include "reference/article_tables.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"
#include "stock/unit_tables.h"
#include "ui/unit_marks.h"

namespace molven::pick_lists {

namespace {

/// A list over one table, sorted by `order` until the user sorts it otherwise.
PickList overTable(Database database, const Table& table, const QString& title, const QList<GridColumn>& columns,
                   const Criterion& criterion, const Order& order, const Chosen& chosen) {
    return {title, columns,
            [database, &table, criterion, order](const Criterion& filter, const Order& asked) mutable {
                return database.select(table, criterion && filter, asked.orElse(order));
            },
            chosen};
}

} // namespace

PickList clients(Database molven, const Chosen& chosen, const Order& order) {
    return overTable(molven, strclient, QStringLiteral("LES CLIENTS"),
                     {{&strclient.clt_cod, QStringLiteral("Code"), 80},
                      {&strclient.clt_nom, QStringLiteral("Nom"), 360},
                      {&strclient.clt_l5, QStringLiteral("Ville"), 200}},
                     {}, order.orElse(Order(strclient.clt_nom)), chosen);
}

PickList suppliers(Database molven, const Chosen& chosen) {
    return overTable(
        molven, strfournis, QStringLiteral("LES FOURNISSEURS"),
        {{&strfournis.fou_cod, QStringLiteral("Code"), 80}, {&strfournis.fou_nom, QStringLiteral("Nom"), 400}}, {},
        strfournis.fou_cod, chosen);
}

PickList articles(Database molven, const Chosen& chosen, const Criterion& criterion) {
    return overTable(molven, strarticle, QStringLiteral("LES ARTICLES"),
                     {{&strarticle.art_ref, QStringLiteral("Référence"), 140},
                      {&strarticle.art_li1, QStringLiteral("Désignation"), 380},
                      {&strarticle.art_stk, QStringLiteral("Stock"), 70}},
                     criterion, strarticle.art_ref, chosen);
}

PickList parameters(Database molven, const QString& letter, const QString& title, const Chosen& chosen) {
    return overTable(
        molven, strparam, title,
        {{&strparam.num_par, QStringLiteral("Code"), 80}, {&strparam.lib_par, QStringLiteral("Libellé"), 400}},
        molven::parameters::ofList(letter), strparam.lib_par, chosen);
}

PickList subFamilies(Database molven, const QString& family, const Chosen& chosen) {
    return overTable(
        molven, strparam, QStringLiteral("LES SOUS-FAMILLES"),
        {{&strparam.num_par, QStringLiteral("Code"), 80}, {&strparam.lib_par, QStringLiteral("Libellé"), 400}},
        molven::parameters::ofList(list::SubFamily) && strparam.cpt_par == family, strparam.num_par, chosen);
}

PickList paymentModes(Database molven, const Chosen& chosen) {
    return overTable(
        molven, strparrgt, QStringLiteral("LES MODES DE REGLEMENT"),
        {{&strparrgt.cde_rglt, QStringLiteral("Code"), 80}, {&strparrgt.lib_rglt, QStringLiteral("Libellé"), 400}}, {},
        strparrgt.cde_rglt, chosen);
}

PickList vatCodes(Database molven, const Chosen& chosen, const Criterion& criterion) {
    return overTable(molven, strparfac, QStringLiteral("LES CODES TVA"),
                     {{&strparfac.par1_cde, QStringLiteral("Code"), 80},
                      {&strparfac.par1_lib, QStringLiteral("Libellé"), 300},
                      {&strparfac.par1_tx, QStringLiteral("Taux"), 80, QStringLiteral("#0.00")}},
                     criterion, strparfac.par1_cde, chosen);
}

PickList currencies(Database molven, const Chosen& chosen) {
    return overTable(
        molven, strmonnaie, QStringLiteral("LES MONNAIES"),
        {{&strmonnaie.mon_cle, QStringLiteral("Code"), 80}, {&strmonnaie.mon_lib, QStringLiteral("Libellé"), 300}}, {},
        strmonnaie.mon_cle, chosen);
}

PickList lppCodes(Database molven, const Chosen& chosen) {
    return overTable(molven, strlpp, QStringLiteral("LISTE DES LPP"),
                     {{&strlpp.lpp_code, QStringLiteral("Code"), 100},
                      {&strlpp.lpp_lib, QStringLiteral("Libellé"), 440},
                      {&strlpp.lpp_ttc, QStringLiteral("Prix TTC"), 90, QStringLiteral("### ##0.00")}},
                     {}, strlpp.lpp_code, chosen);
}

PickList tipsCodes(Database molven, const Chosen& chosen) {
    return overTable(molven, strpartips, QStringLiteral("LISTE DES TIPS"),
                     {{&strpartips.cod_tips, QStringLiteral("Code"), 120},
                      {&strpartips.lib_tips, QStringLiteral("Libellé"), 420},
                      {&strpartips.ttc_tips, QStringLiteral("Prix TTC"), 90, QStringLiteral("### ##0.00")}},
                     {}, strpartips.cod_tips, chosen);
}

PickList discounts(Database molven, const Chosen& chosen) {
    return overTable(molven, strparrem, QStringLiteral("LISTE DES REMISES "),
                     {{&strparrem.rem_clt, QStringLiteral("Client"), 80},
                      {&strparrem.rem_art, QStringLiteral("Article"), 80},
                      {&strparrem.rem_rem, QStringLiteral("Remise %"), 100, QStringLiteral("00.00")},
                      {&strparrem.rem_lib, QStringLiteral("Libellé"), 360}},
                     {}, {strparrem.rem_clt, strparrem.rem_art}, chosen);
}

PickList accounts(Database compta, const QString& start, const Chosen& chosen) {
    return overTable(
        compta, strplan, QStringLiteral("LE PLAN COMPTABLE"),
        {{&strplan.cpt_aff, QStringLiteral("Compte"), 120}, {&strplan.cpt_lib, QStringLiteral("Libellé"), 400}},
        startsWith(strplan.cpt_aff, start), strplan.cpt_aff, chosen);
}

namespace {

/// The letters that a field may hold. Never in a file: rows of a list.
struct LetterTable : Table {
    using Table::Table;
    Text let_cod{this, "let_cod", 1};
    Label let_lib{this, "let_lib"};
};
const LetterTable strlettre{"strlettre"};

/// The news of the session. Never in a file: rows of a list.
struct NoticeTable : Table {
    using Table::Table;
    Text avi_heu{this, "avi_heu", 8};
    Label avi_fen{this, "avi_fen"};
    Label avi_txt{this, "avi_txt"};
};
const NoticeTable stravis{"stravis"};

} // namespace

PickList letters(const CodeKind& kind, const std::function<void(const QString&)>& chosen) {
    QList<Record> rows;
    for (qsizetype i = 0; i < kind.letters.size(); ++i) {
        Record row(strlettre);
        row[strlettre.let_cod] = kind.letters[i];
        row[strlettre.let_lib] = kind.meanings.value(i);
        rows.append(row);
    }
    return {kind.title,
            {{&strlettre.let_cod, QStringLiteral("Code"), 80}, {&strlettre.let_lib, QStringLiteral("Libellé"), 400}},
            {},
            [chosen](const Record& row) { chosen(row[strlettre.let_cod]); },
            rows};
}

PickList notices(const QList<Notice>& told) {
    QList<Record> rows;
    for (auto notice = told.rbegin(); notice != told.rend(); ++notice) {
        Record row(stravis);
        row[stravis.avi_heu] = notice->at.toString(QStringLiteral("HH:mm:ss"));
        row[stravis.avi_fen] = notice->window;
        row[stravis.avi_txt] = notice->text;
        rows.append(row);
    }
    return {QStringLiteral("AVIS DE LA SESSION"),
            {{&stravis.avi_heu, QStringLiteral("Heure"), 80},
             {&stravis.avi_fen, QStringLiteral("Fenêtre"), 200},
             {&stravis.avi_txt, QStringLiteral("Avis"), 400}},
            {},
            [](const Record&) {},
            rows};
}

PickList codes(Database file, const CodeKind& kind, const Chosen& chosen) {
    if (kind.table == &strclient) return clients(file, chosen);
    if (kind.table == &strfournis) return suppliers(file, chosen);
    if (kind.table == &strarticle) return articles(file, chosen);
    if (kind.table == &strparrgt) return paymentModes(file, chosen);
    if (kind.table == &strparfac) return vatCodes(file, chosen);
    if (kind.table == &strmonnaie) return currencies(file, chosen);
    if (kind.table == &strlpp) return lppCodes(file, chosen);
    if (kind.table == &strpartips) return tipsCodes(file, chosen);
    if (kind.table == &strplan) return accounts(file, {}, chosen);
    if (kind.table == &strparrem) return discounts(file, chosen);
    return parameters(file, kind.letter, kind.title, chosen);
}

QList<GridColumn> unitColumns() {
    return {{&strproduit.imm_art, QStringLiteral("Immatriculation"), 120},
            {&strproduit.ref_art, QStringLiteral("Référence"), 110},
            {&strproduit.pro_li1, QStringLiteral("Désignation"), 300},
            {&strproduit.lot_art, QStringLiteral("Lot"), 90},
            {&strproduit.dat_per, QStringLiteral("Péremption"), 90},
            unitStateColumn(),
            {&strproduit.num_dep, QStringLiteral("Dépôt"), 55},
            {&strproduit.clt_vte, QStringLiteral("Client"), 65},
            {&strproduit.num_vte, QStringLiteral("Document"), 80}};
}

PickList units(Database molven, const QString& title, const Criterion& criterion, const Chosen& chosen) {
    return overTable(molven, strproduit, title, unitColumns(), criterion, {strproduit.pro_ann, strproduit.imm_art},
                     chosen);
}

} // namespace molven::pick_lists

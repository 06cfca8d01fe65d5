#include "reference/code_tables.h"

#include "data/errors.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/article_tables.h"
#include "reference/codes.h"
#include "reference/parameter_tables.h"
#include "reference/parties.h"
#include "reference/prices.h"
#include "reference/tariff_tables.h"

#include <algorithm>

namespace molven {

namespace {

/// What a key's code may be written as, typed short or whole.
QStringList keyForms(const Text& field, const Record& record) {
    const QString typed = record.value(field).trimmed();
    const bool isPadded = field.code && field.code->digits > 0;
    return isPadded ? codes::formsOf(*field.code, typed) : QStringList{typed};
}

} // namespace

Criterion CodeTable::sameKey(const Record& record) const {
    Criterion same;
    for (const Text* field : key) same = same && isOneOf(*field, keyForms(*field, record));
    return same;
}

bool CodeTable::isSameKey(const Record& a, const Record& b) const {
    return std::all_of(key.begin(), key.end(),
                       [&](const Text* field) { return keyForms(*field, a) == keyForms(*field, b); });
}

Criterion CodeTable::takenBy(const Record& record) const {
    const QString code = record.value(*key.last()).trimmed();
    const bool isNumber = std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (!zerosAside || !isNumber) return sameKey(record);
    QString bare = code;
    while (bare.startsWith(u'0')) bare.remove(0, 1);
    QStringList forms;
    for (int width = static_cast<int>(bare.size()); width <= key.last()->size; ++width)
        forms.append(padded(bare, width));
    Criterion alike = isOneOf(*key.last(), forms);
    for (const Text* field : key)
        if (field != key.last()) alike = alike && *field == record.value(*field).trimmed();
    return alike;
}

namespace code_tables {

namespace {

const QString NoCode = QStringLiteral(" Code obligatoire");
const QString NoLabel = QStringLiteral(" Libellé obligatoire");
const QString Exists = QStringLiteral("Ce code existe déjà");
const QString Missing = QStringLiteral("Ce code n'existe pas");

void requireBetween(const Record& record, const Number& field, const Decimal& least, const Decimal& most,
                    const QString& message) {
    require(!(record[field] < least) && !(most < record[field]), message, field);
}

void requirePercent(const Record& record, const Number& field) {
    requireBetween(record, field, 0, 100, QStringLiteral("Taux incorrect"));
}

void requirePrice(const Record& record, const Number& field) {
    require(isPrice(record[field]), QStringLiteral("Prix incorrect"), field);
}

/// A count of days, from none to `most`.
void requireDays(const Record& record, const Number& field, int most, const QString& message) {
    requireBetween(record, field, 0, most, message);
    require(record[field] == record[field].rounded(0), message, field);
}

void completePaymentMode(Database, Record& mode) {
    const Record& read = mode;
    mode[strparrgt.cde_rglt] = padded(read[strparrgt.cde_rglt], 2);
    requireDays(mode, strparrgt.nbj_rglt, 365, QStringLiteral("Nombre de jours incorrect"));
    if (read[strparrgt.fdm_rglt].isEmpty()) mode[strparrgt.fdm_rglt] = QStringLiteral("N");
    requireDays(mode, strparrgt.jou_rglt, 31, QStringLiteral("Jour du mois incorrect"));
}

void completeAccount(Database, Record& account) {
    require(account[strplan.cpt_aff].trimmed().size() == 9, QStringLiteral("Imputation comptable incorrecte"),
            strplan.cpt_aff);
}

void completeTariff(Database molven, Record& tariff) {
    const Record& read = tariff;
    const auto client = parties::findClient(molven, read[strtarifclt.tar_clt]);
    require(client.has_value(), Missing, strtarifclt.tar_clt);
    const auto article = codes::find(molven, codes::ArticleOfTariff, read[strtarifclt.tar_ref]);
    require(article.has_value(), strtarifclt.tar_ref.unknown, strtarifclt.tar_ref);
    tariff[strtarifclt.tar_clt] = (*client)[strclient.clt_cod];
    tariff[strtarifclt.tar_nom] = (*client)[strclient.clt_nom];
    tariff[strtarifclt.tar_lib] = (*article)[strarticle.art_li1];
    // An empty price would sell at nothing.
    require(!read.isNull(strtarifclt.tar_pvt), QStringLiteral(" Prix obligatoire"), strtarifclt.tar_pvt);
    requirePrice(tariff, strtarifclt.tar_pvt);
}

void completeCommission(Database molven, Record& rate) {
    const Record& read = rate;
    const auto representative = codes::find(molven, codes::Representative, read[strtauxrep.c_rep]);
    require(representative.has_value(), Missing, strtauxrep.c_rep);
    rate[strtauxrep.c_nom] = (*representative)[strparam.lib_par];
    requirePercent(rate, strtauxrep.c_tau);
}

} // namespace

const CodeTable& parameters() {
    static const CodeTable kind{strparam,
                                {&strparam.cod_par, &strparam.num_par},
                                {{strparam.num_par, NoCode}, {strparam.lib_par, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record&) {},
                                true};
    return kind;
}

const CodeTable& panPrices() {
    static const CodeTable kind{strpan,
                                {&strpan.pan_ref},
                                {{strpan.pan_ref, QStringLiteral(" Référence obligatoire")}, {strpan.pan_lib, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& row) {
                                    requirePrice(row, strpan.pan_pa);
                                    requirePrice(row, strpan.pan_pan);
                                }};
    return kind;
}

const CodeTable& paymentModes() {
    static const CodeTable kind{
        strparrgt, {&strparrgt.cde_rglt}, {{strparrgt.cde_rglt, NoCode}, {strparrgt.lib_rglt, NoLabel}}, Exists,
        Missing,   completePaymentMode};
    return kind;
}

const CodeTable& vatCodes() {
    static const CodeTable kind{strparfac,
                                {&strparfac.par1_cde},
                                {{strparfac.par1_cde, NoCode}, {strparfac.par1_lib, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& code) { requirePercent(code, strparfac.par1_tx); }};
    return kind;
}

const CodeTable& invoiceTexts() {
    static const CodeTable kind{
        strpartxt, {&strpartxt.txt_cde}, {{strpartxt.txt_cde, NoCode}, {strpartxt.txt_lib, NoLabel}}, Exists, Missing};
    return kind;
}

const CodeTable& currencies() {
    static const CodeTable kind{strmonnaie,
                                {&strmonnaie.mon_cle},
                                {{strmonnaie.mon_cle, NoCode}, {strmonnaie.mon_lib, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& currency) {
                                    require(!(currency[strmonnaie.mon_euro] < Decimal(0)),
                                            QStringLiteral("Taux incorrect"), strmonnaie.mon_euro);
                                }};
    return kind;
}

const CodeTable& accounts() {
    static const CodeTable kind{strplan,
                                {&strplan.cpt_aff},
                                {{strplan.cpt_aff, NoCode}, {strplan.cpt_lib, NoLabel}},
                                Exists,
                                Missing,
                                completeAccount,
                                false,
                                DataFile::Compta};
    return kind;
}

const CodeTable& lppCodes() {
    static const CodeTable kind{strlpp,
                                {&strlpp.lpp_code},
                                {{strlpp.lpp_code, NoCode}, {strlpp.lpp_lib, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& row) { requirePrice(row, strlpp.lpp_ttc); }};
    return kind;
}

const CodeTable& tipsCodes() {
    static const CodeTable kind{strpartips,
                                {&strpartips.cod_tips},
                                {{strpartips.cod_tips, NoCode}, {strpartips.lib_tips, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& row) { requirePrice(row, strpartips.ttc_tips); }};
    return kind;
}

const CodeTable& clientTariffs() {
    static const CodeTable kind{strtarifclt,
                                {&strtarifclt.tar_clt, &strtarifclt.tar_ref},
                                {{strtarifclt.tar_clt, QStringLiteral(" Code Client obligatoire")},
                                 {strtarifclt.tar_ref, QStringLiteral(" Référence obligatoire")}},
                                QStringLiteral("Ce tarif existe déjà"),
                                QStringLiteral("Ce tarif n'existe pas"),
                                completeTariff};
    return kind;
}

const CodeTable& discounts() {
    static const CodeTable kind{strparrem,
                                {&strparrem.rem_clt, &strparrem.rem_art},
                                {{strparrem.rem_clt, NoCode},
                                 {strparrem.rem_art, NoCode},
                                 {strparrem.rem_rem, QStringLiteral(" Remise obligatoire")},
                                 {strparrem.rem_lib, NoLabel}},
                                Exists,
                                Missing,
                                [](Database, Record& discount) { requirePercent(discount, strparrem.rem_rem); }};
    return kind;
}

const CodeTable& commissionRates() {
    static const CodeTable kind{
        strtauxrep,
        {&strtauxrep.c_rep, &strtauxrep.c_ref},
        {{strtauxrep.c_rep, NoCode}, {strtauxrep.c_ref, QStringLiteral(" Référence obligatoire")}},
        Exists,
        Missing,
        completeCommission};
    return kind;
}

namespace {

void requireFilled(const CodeTable& kind, const Record& record) {
    for (const CodeTable::Required& required : kind.required)
        require(!record.value(required.field).trimmed().isEmpty(), required.message, required.field);
}

/// One writer a table: what makes a key taken or a value double may be any of its records.
Locks locksOf(const CodeTable& kind) { return Locks::of({QStringLiteral("table ") + kind.table.name}); }

void requireNew(Database database, const CodeTable& kind, const Record& record) {
    require(database.count(kind.table, kind.takenBy(record)) == 0, kind.exists, *kind.key.last());
}

} // namespace

void check(Database database, const CodeTable& kind, Record& record, const Record* before) {
    requireFilled(kind, record);
    kind.complete(database, record);
    codes::check({{kind.file, database}}, record, before);
}

void requireWritable(Database database, const CodeTable& kind, Record record, const std::optional<Record>& before) {
    check(database, kind, record, before ? &*before : nullptr);
    const bool exists = database.count(kind.table, before ? kind.sameKey(record) : kind.takenBy(record)) > 0;
    require(exists == before.has_value(), before ? kind.missing : kind.exists, *kind.key.last());
}

void add(Database database, const CodeTable& kind, Record record) {
    Transaction::run(database.workspace(), QStringLiteral("Tables"), locksOf(kind), [&] {
        requireFilled(kind, record);
        requireNew(database, kind, record); // a taken key is told before what its other fields lack
        check(database, kind, record);
        requireNew(database, kind, record); // in the form that the checks completed
        database.insert(record);
    });
}

void change(Database database, const CodeTable& kind, Record record, const Record& before) {
    Transaction::run(database.workspace(), QStringLiteral("Tables"), locksOf(kind), [&] {
        check(database, kind, record, &before);
        Recordset stored = database.select(kind.table, kind.sameKey(record));
        require(!stored.isEmpty(), kind.missing, *kind.key.last());
        stored.edit(before);
        stored.draft() = record;
        stored.update();
    });
}

void remove(Database database, const CodeTable& kind, const Record& record) {
    for (const Text* field : kind.key)
        require(!record[*field].trimmed().isEmpty(), kind.required.first().message, *field);
    require(database.remove(kind.table, kind.sameKey(record)) > 0, kind.missing, *kind.key.last());
}

} // namespace code_tables
} // namespace molven

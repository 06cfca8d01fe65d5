#include "reference/parameters.h"

#include "data/dates.h"

#include <algorithm>

namespace molven::parameters {

const QList<ParameterList>& lists() {
    static const QList<ParameterList> all{
        {QStringLiteral("FAM"), list::ClientFamily, QStringLiteral("les familles client")},
        {QStringLiteral("FAR"), list::ArticleFamily, QStringLiteral("les familles articles")},
        {QStringLiteral("FOU"), list::SupplierFamily, QStringLiteral("les familles fournisseur")},
        {QStringLiteral("REP"), list::Representative, QStringLiteral("les représentants")},
        {QStringLiteral("DEP"), list::Depot, QStringLiteral("les dépôts")},
        {QStringLiteral("EXP"), list::Dispatch, QStringLiteral("les modes d'expédition")},
        {QStringLiteral("CHG"), list::Surgeon, QStringLiteral("les chirurgiens")},
        {QStringLiteral("RET"), list::Reworked, QStringLiteral("les causes : retouchés")},
        {QStringLiteral("DER"), list::Derogated, QStringLiteral("les causes : dérogés")},
        {QStringLiteral("REB"), list::Scrapped, QStringLiteral("les causes : rebutés")},
        {QStringLiteral("FAMD"), list::DepotFamily, QStringLiteral("les familles de dépôt")},
        {QStringLiteral("REGF"), list::ArticleGroup, QStringLiteral("les regroupements famille articles")},
        {QStringLiteral("SFA"), list::SubFamily, QStringLiteral("les sous/famille articles")},
        {QStringLiteral("ANC"), list::AncillaryFamily, QStringLiteral("les familles ancillaires")},
    };
    return all;
}

const ParameterList* listOfMode(const QString& mode) {
    const auto found = std::find_if(lists().begin(), lists().end(),
                                    [&mode](const ParameterList& candidate) { return candidate.mode == mode; });
    return found == lists().end() ? nullptr : &*found;
}

Criterion ofList(const QString& letter) { return strparam.cod_par == letter; }

namespace {

Criterion isCode(const QString& letter, const QString& code) {
    return ofList(letter) && strparam.num_par == code.trimmed();
}

Criterion isCurrency(const QString& key) { return strmonnaie.mon_cle == key; }
Criterion isVatCode(const QString& code) { return strparfac.par1_cde == code; }
Criterion isPaymentMode(const QString& code) { return strparrgt.cde_rglt == code; }

} // namespace

std::optional<Record> find(Database molven, const QString& letter, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strparam, isCode(letter, code));
}

void foresee(Database molven, const QList<std::pair<QString, QString>>& codes) {
    QList<Criterion> sought;
    for (const auto& [letter, code] : codes)
        if (!code.trimmed().isEmpty()) sought.append(isCode(letter, code));
    molven.foresee(strparam, sought);
}

QString label(Database molven, const QString& letter, const QString& code) {
    const auto entry = find(molven, letter, code);
    return entry ? QString((*entry)[strparam.lib_par]) : QString();
}

QString depotFamily(Database molven, const QString& depot) {
    const auto entry = find(molven, list::Depot, depot);
    return entry ? QString((*entry)[strparam.fam_dep]) : QString();
}

std::optional<Record> currency(Database molven, const QString& key) { return molven.find(strmonnaie, isCurrency(key)); }

QString companyCurrency(Database molven, const QString& named) {
    return currency(molven, named) ? named : QStringLiteral("EUR");
}

Decimal vatRate(Database molven, const QString& vatCode) {
    const auto code = molven.find(strparfac, isVatCode(vatCode));
    return code ? Decimal((*code)[strparfac.par1_tx]) : Decimal();
}

std::optional<Record> paymentMode(Database molven, const QString& code) {
    return molven.find(strparrgt, isPaymentMode(code));
}

void foreseeCurrency(Database molven, const QString& key) { molven.foresee(strmonnaie, {isCurrency(key)}); }

void foreseeVatRates(Database molven, const QStringList& vatCodes) {
    QList<Criterion> sought;
    for (const QString& code : vatCodes) sought.append(isVatCode(code));
    molven.foresee(strparfac, sought);
}

void foreseePaymentMode(Database molven, const QString& code) { molven.foresee(strparrgt, {isPaymentMode(code)}); }

QString dueDate(const Record& mode, const QDate& documentDate) {
    QDate due = documentDate.addDays(mode[strparrgt.nbj_rglt].toInteger());
    if (mode[strparrgt.fdm_rglt] == u"O") due.setDate(due.year(), due.month(), due.daysInMonth());
    const int day = static_cast<int>(mode[strparrgt.jou_rglt].toInteger());
    if (day > 0) {
        if (due.day() > day) due = QDate(due.year(), due.month(), 1).addMonths(1);
        due.setDate(due.year(), due.month(), std::min(day, due.daysInMonth()));
    }
    return dateText(due);
}

} // namespace molven::parameters

#include "reference/parameters.h"

#include "data/dates.h"
#include "data/errors.h"

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

std::optional<Record> find(Database molven, const QString& letter, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strparam, ofList(letter) && strparam.num_par == code.trimmed());
}

QString label(Database molven, const QString& letter, const QString& code) {
    const auto entry = find(molven, letter, code);
    return entry ? QString((*entry)[strparam.lib_par]) : QString();
}

QString depotFamily(Database molven, const QString& depot) {
    const auto entry = find(molven, list::Depot, depot);
    return entry ? QString((*entry)[strparam.fam_dep]) : QString();
}

QString companyCurrency(Database molven, const QString& named) {
    return molven.count(strmonnaie, strmonnaie.mon_cle == named) > 0 ? named : QStringLiteral("EUR");
}

Decimal vatRate(Database molven, const QString& vatCode) {
    const auto code = molven.find(strparfac, strparfac.par1_cde == vatCode);
    return code ? Decimal((*code)[strparfac.par1_tx]) : Decimal();
}

std::optional<Record> paymentMode(Database molven, const QString& code) {
    return molven.find(strparrgt, strparrgt.cde_rglt == code);
}

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

namespace {

void check(const Record& entry) {
    if (entry[strparam.num_par].trimmed().isEmpty())
        throw Refusal(QStringLiteral(" Code obligatoire"), strparam.num_par.name);
    if (entry[strparam.lib_par].trimmed().isEmpty())
        throw Refusal(QStringLiteral(" Libellé obligatoire"), strparam.lib_par.name);
}

Criterion sameKey(const Record& entry) {
    return ofList(entry[strparam.cod_par]) && strparam.num_par == entry[strparam.num_par];
}

} // namespace

void add(Database molven, const Record& entry) {
    check(entry);
    Transaction transaction(molven.workspace());
    if (molven.count(strparam, sameKey(entry)) > 0)
        throw Refusal(QStringLiteral("Ce code existe déjà"), strparam.num_par.name);
    molven.insert(entry);
    transaction.commit();
}

void change(Database molven, const Record& entry, const Record& before) {
    check(entry);
    Transaction transaction(molven.workspace());
    Recordset existing = molven.select(strparam, sameKey(entry));
    if (existing.isEmpty()) throw Refusal(QStringLiteral("Ce code n'existe pas"), strparam.num_par.name);
    existing.edit(before);
    existing.draft() = entry;
    existing.update();
    transaction.commit();
}

void remove(Database molven, const QString& letter, const QString& code) {
    molven.remove(strparam, ofList(letter) && strparam.num_par == code);
}

} // namespace molven::parameters

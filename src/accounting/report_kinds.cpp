#include "accounting/report_kinds.h"

#include "reference/code_kinds.h"
#include "reference/departments.h"

#include <QLocale>

#include <algorithm>

namespace molven::statistics {

namespace {

QString monthName(const QString& number) {
    const QString month = QLocale(QLocale::French).monthName(number.toInt());
    return month.left(1).toUpper() + month.mid(1);
}

const Key Client{QStringLiteral("Client"), &SalesStatistics::sta_clt, &codes::Client};
const Key ClientFamily{QStringLiteral("Famille client"), &SalesStatistics::sta_cdf, &codes::ClientFamily};
const Key Article{QStringLiteral("Article"), &SalesStatistics::sta_ref, &codes::Article};
const Key ArticleFamily{QStringLiteral("Famille article"), &SalesStatistics::sta_fam, &codes::ArticleFamily};
const Key Representative{QStringLiteral("Représentant"), &SalesStatistics::sta_rep, &codes::Representative};
const Key Surgeon{QStringLiteral("Chirurgien"), &SalesStatistics::sta_chr, &codes::Surgeon};
const Key Department{QStringLiteral("Département"), &SalesStatistics::sta_dpt, nullptr, departments::name};
const Key Supplier{QStringLiteral("Fournisseur"), &SalesStatistics::sta_fou, &codes::Supplier};
const Key Invoice{QStringLiteral("N° facture"), &SalesStatistics::sta_no};
const Key Month{QStringLiteral("Mois"), &SalesStatistics::sta_mac, nullptr, monthName};
const Key SalesAccount{QStringLiteral("Compte"), &SalesStatistics::sta_vte, &codes::Account};
const Key VatCode{QStringLiteral("TVA"), &SalesStatistics::sta_tva, &codes::VatCode};

ReportKind kind(const char* number, const char* title, const QList<Key>& keys) {
    return {QString::fromLatin1(number), QString::fromUtf8(title), keys};
}

} // namespace

const QList<ReportKind>& reports() {
    static const QList<ReportKind> all{
        kind("1", "C.A. par clients", {Client}),
        kind("2", "C.A. par articles", {Article}),
        kind("3", "C.A. par familles articles", {ArticleFamily}),
        kind("4", "C.A. par familles clients", {ClientFamily}),
        kind("5", "C.A. par clients / articles", {Client, Article}),
        kind("6", "C.A. par articles / clients", {Article, Client}),
        kind("7", "C.A. par familles articles / articles", {ArticleFamily, Article}),
        kind("8", "C.A. par familles clients / clients", {ClientFamily, Client}),
        kind("9", "C.A. par représentants", {Representative}),
        kind("10", "C.A. par représentants / clients", {Representative, Client}),
        kind("11", "C.A. par familles clients / articles", {ClientFamily, Article}),
        kind("12", "C.A. par familles articles / clients", {ArticleFamily, Client}),
        kind("13", "C.A. par chirurgiens", {Surgeon}),
        kind("14", "C.A. par chirurgiens / articles", {Surgeon, Article}),
        kind("15", "C.A. par départements", {Department}),
        kind("16", "C.A. par départements / articles", {Department, Article}),
        kind("17", "C.A. par départements / clients", {Department, Client}),
        kind("51", "C.A. par clients / familles articles", {Client, ArticleFamily}),
        kind("52", "C.A. par clients / familles articles / N° facture", {Client, ArticleFamily, Invoice}),
        kind("96", "C.A. par fournisseurs / articles", {Supplier, Article}),
        kind("97", "C.A. par fournisseurs", {Supplier}),
        kind("98", "Imputations comptables", {SalesAccount, VatCode}),
        kind("99", "Cumul par mois", {Month})};
    return all;
}

const ReportKind& report(const QString& number) {
    const auto found = std::find_if(reports().begin(), reports().end(),
                                    [&number](const ReportKind& one) { return one.number == number; });
    return found == reports().end() ? reports().first() : *found;
}

} // namespace molven::statistics

#include "sales/papers.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/party_tables.h"
#include "sales/documents.h"

#include <algorithm>

namespace molven::papers {

namespace {

/// The kinds that share the book's series of numbers.
QList<const DocumentKind*> kindsOfSeries(const SalesBook& book) {
    if (book.kind().isProforma()) return {&book.kind()};
    QList<const DocumentKind*> kinds;
    for (const DocumentKind& kind : documentKinds())
        if (kind.sharesSeries(book.kind())) kinds.append(&kind);
    return kinds;
}

} // namespace

QList<Paper> select(SalesBook& book, const Range& range) {
    const DocumentHeaders& h = book.kind().headers;
    const QString first = range.first.trimmed().isEmpty() ? QStringLiteral("000000") : padded(range.first, 6);
    const QString last = range.last.trimmed().isEmpty() ? QStringLiteral("999999") : padded(range.last, 6);
    if (last < first) throw Refusal(QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtdeb"));
    Criterion asked = h.fac_lg == documents::HeaderKey && h.fac_no >= first && h.fac_no <= last;
    const QString year =
        range.year.trimmed().size() == 2 ? QStringLiteral("20") + range.year.trimmed() : range.year.trimmed();
    if (!year.isEmpty()) asked = asked && h.fac_aa == year;
    if (!range.client.trimmed().isEmpty()) asked = asked && h.fac_clt == padded(range.client, 6);
    const QList<const DocumentKind*> kinds = kindsOfSeries(book);
    QList<Paper> papers;
    for (Database file : book.series())
        for (const Record& header : file.select(h, asked, Order{h.fac_no, h.fac_aa}))
            for (const DocumentKind* kind : kinds)
                if (documents::isOfKind(*kind, header)) {
                    papers.append({file, header, kind});
                    break;
                }
    if (papers.isEmpty())
        throw Refusal(QStringLiteral("Aucun document correspondant à ce critère"), QStringLiteral("txtdeb"));
    std::stable_sort(papers.begin(), papers.end(),
                     [&h](const Paper& a, const Paper& b) { return a.header[h.fac_no] < b.header[h.fac_no]; });
    return papers;
}

Style styleOf(const QString& printScreen) {
    static const QHash<QString, Style> styles{{QStringLiteral("T_docedt2"), {.supplierFirst = true}},
                                              {QStringLiteral("T_docedt3"), {.showsSterilisation = true}},
                                              {QStringLiteral("T_docbarre"), {.hasBars = true}}};
    return styles.value(printScreen);
}

bool showsPrices(const DocumentKind& kind, const Record& client) {
    if (!kind.isPriced || !kind.isDelivery()) return kind.isPriced;
    return client[strclient.clt_rbl] != u"O" || client[strclient.clt_edtr] == u"O";
}

PrintJob print(SalesBook& book, const QList<Paper>& papers, const Style& style, const QString& barcodeFamily,
               const Progress& told) {
    PrintJob job(title(papers));
    Reader reader(book, style);
    for (qsizetype i = 0; i < papers.size(); ++i) {
        tell(told, i, papers.size());
        document_page::print(job, reader.read(papers[i]), {barcodeFamily});
    }
    return job;
}

QString title(const QList<Paper>& papers) {
    const auto number = [](const Paper& paper) { return paper.header[paper.kind->headers.fac_no]; };
    const Paper& first = papers.first();
    if (papers.size() == 1)
        return QStringLiteral("%1 %2-%3")
            .arg(first.kind->shownLabel, first.header[first.kind->headers.fac_aa], number(first));
    return QStringLiteral("%1 %2 à %3")
        .arg(first.kind->label, number(first), number(papers.last()))
        .replace(u'/', u'-');
}

} // namespace molven::papers

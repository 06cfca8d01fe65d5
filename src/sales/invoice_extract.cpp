#include "sales/invoice_extract.h"

#include "data/format.h"
#include "reference/parties.h"
#include "sales/numbering.h"

namespace molven::invoice_extract {

namespace {

Criterion linesOf(const papers::Paper& paper, const Enquiry& enquiry) {
    const DocumentHeaders& h = paper.kind->headers;
    const DocumentLines& l = paper.kind->lines;
    const Criterion all = numbering::linesOf(l, paper.header[h.fac_aa], paper.header[h.fac_no]);
    return enquiry.reference.isEmpty() ? all : all && l.fac_ref == enquiry.reference;
}

QString wordsOf(SalesBook& book, const Enquiry& enquiry) {
    QStringList words;
    const papers::Range& range = enquiry.range;
    if (!range.year.isEmpty()) words.append(QStringLiteral("année ") + range.year);
    if (!range.first.isEmpty() || !range.last.isEmpty())
        words.append(QStringLiteral("factures %1 à %2")
                         .arg(range.first.isEmpty() ? QStringLiteral("000000") : padded(range.first, 6),
                              range.last.isEmpty() ? QStringLiteral("999999") : padded(range.last, 6)));
    if (const auto client = parties::findClient(book.molven, range.client))
        words.append(QStringLiteral("client %1, %2").arg((*client)[strclient.clt_cod], (*client)[strclient.clt_nom]));
    if (!enquiry.patient.isEmpty()) words.append(QStringLiteral("patient ") + enquiry.patient);
    if (!enquiry.reference.isEmpty()) words.append(QStringLiteral("article ") + enquiry.reference);
    return QStringLiteral("Sélection : ") + words.join(QStringLiteral(" ; "));
}

} // namespace

QList<papers::Paper> select(SalesBook& book, const Enquiry& enquiry) {
    if (enquiry.range.client.isEmpty() && enquiry.patient.isEmpty() && enquiry.reference.isEmpty())
        throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("txtclt"));
    QList<papers::Paper> found;
    for (const papers::Paper& paper : papers::select(book, enquiry.range)) {
        const QString patient = paper.header[paper.kind->headers.fac_pat];
        if (!patient.startsWith(enquiry.patient, Qt::CaseInsensitive)) continue;
        Database file = paper.file;
        if (file.count(paper.kind->lines, linesOf(paper, enquiry)) > 0) found.append(paper);
    }
    if (found.isEmpty())
        throw Refusal(QStringLiteral("Aucun document correspondant à ce critère"), QStringLiteral("txtdeb"));
    return found;
}

Report list(SalesBook& book, const QList<papers::Paper>& papers, const Enquiry& enquiry, const Progress& told) {
    Report report(QStringLiteral("EXTRAIT DE FACTURES"), {{QStringLiteral("Ligne")},
                                                          {QStringLiteral("Immat.")},
                                                          {QStringLiteral("Référence")},
                                                          {QStringLiteral("Désignation")},
                                                          {QStringLiteral("Identification")},
                                                          {QStringLiteral("LPP/TIPS")},
                                                          {QStringLiteral("Qté"), true},
                                                          {QStringLiteral("Net"), true},
                                                          {QStringLiteral("Montant HT"), true},
                                                          {QStringLiteral("Montant TTC"), true}});
    report.say(wordsOf(book, enquiry));
    const auto money = [](const Decimal& amount) { return format(amount, QStringLiteral("### ### ##0.00")); };
    Decimal ht, ttc;
    for (qsizetype i = 0; i < papers.size(); ++i) {
        tell(told, i, papers.size());
        const papers::Paper& paper = papers[i];
        const DocumentHeaders& h = paper.kind->headers;
        const DocumentLines& l = paper.kind->lines;
        const Record& header = paper.header;
        const QString patient = header[h.fac_pat].trimmed();
        report.group(QStringLiteral("%1 %2 du %3").arg(paper.kind->shownLabel, header[h.fac_no], header[h.fac_datf]),
                     header[h.fac_nom] + (patient.isEmpty() ? QString() : QStringLiteral(", patient ") + patient));
        Database file = paper.file;
        for (const Record& line : file.select(l, linesOf(paper, enquiry), Order{l.fac_lg})) {
            report.row({line[l.fac_lg], line[l.fac_imm], line[l.fac_ref], line[l.fac_li1], line[l.fac_id1],
                        line[l.fac_tip], shown(line[l.fac_qte]), money(line[l.fac_pv]), money(line[l.fac_ht]),
                        money(line[l.fac_ttc])});
            ht += line[l.fac_ht];
            ttc += line[l.fac_ttc];
        }
    }
    report.total(QStringLiteral("Total HT : %1   Total TTC : %2").arg(money(ht).trimmed(), money(ttc).trimmed()));
    report.count();
    return report;
}

} // namespace molven::invoice_extract

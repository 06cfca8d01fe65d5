#include "electronic/factur_x.h"

#include "data/errors.h"
#include "data/safe_file.h"
#include "electronic/cii_reader.h"
#include "electronic/cii_writer.h"
#include "electronic/invoice_of_paper.h"
#include "printing/archive_pdf.h"

#include <QDir>
#include <QFile>

namespace molven::electronic {

namespace {

constexpr qint64 LargestFile = 64 * 1024 * 1024;

QByteArray made(const papers::Paper& paper, const Invoice& invoice, const PaperDocument& page) {
    PrintJob job(papers::title({paper}));
    document_page::print(job, page, {});
    return archive_pdf::embed(job.pdf({}, PrintJob::Pdf::Archive), {XmlName, ciiOf(invoice)},
                              {XmlName, QStringLiteral("EN 16931")});
}

papers::Style styleOf(SalesBook& book) { return papers::styleOf(book.rules().reprintScreen(true)); }

} // namespace

Invoice invoiceOf(SalesBook& book, const papers::Paper& paper) {
    return invoiceOf(book, paper, papers::Reader(book, styleOf(book)).read(paper));
}

QByteArray facturX(SalesBook& book, const papers::Paper& paper) {
    const PaperDocument page = papers::Reader(book, styleOf(book)).read(paper);
    return made(paper, invoiceOf(book, paper, page), page);
}

qsizetype saveFacturX(SalesBook& book, const QList<papers::Paper>& papers, const QString& folder,
                      const Progress& told) {
    papers::Reader reader(book, styleOf(book));
    for (const papers::Paper& paper : papers) invoiceOf(book, paper, reader.read(paper)); // all or none
    for (qsizetype i = 0; i < papers.size(); ++i) {
        tell(told, i, papers.size());
        const PaperDocument page = reader.read(papers[i]);
        writeWhole(freeName(folder + u'/' + papers::title({papers[i]}) + QStringLiteral(".pdf")),
                   made(papers[i], invoiceOf(book, papers[i], page), page));
    }
    return papers.size();
}

Invoice readFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Impossible de lire %1").arg(QDir::toNativeSeparators(path)));
    if (file.size() > LargestFile)
        throw Refusal(QStringLiteral("Fichier trop grand pour une facture : %1").arg(QDir::toNativeSeparators(path)));
    const QByteArray bytes = file.readAll();
    if (!bytes.startsWith("%PDF")) return invoiceOfCii(bytes);
    static const QStringList names{XmlName, QStringLiteral("zugferd-invoice.xml"), QStringLiteral("xrechnung.xml")};
    for (const archive_pdf::Attachment& attached : archive_pdf::attachments(bytes))
        if (names.contains(attached.name, Qt::CaseInsensitive)) return invoiceOfCii(attached.bytes);
    throw Refusal(QStringLiteral("Ce PDF ne contient pas de facture électronique"));
}

} // namespace molven::electronic

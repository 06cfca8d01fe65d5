#include "bench.h"
#include "dossier.h"

#include "electronic/factur_x.h"
#include "reference/party_tables.h"
#include "reference/seller.h"
#include "sales/documents.h"
#include "sales/papers.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>

namespace molven::bench {

namespace {

constexpr int Invoices = 1000, Lines = 10;

Record lineOf(const QString& number, int line) {
    Record record(strfacl);
    const auto& l = strfacl;
    record[l.fac_aa] = QStringLiteral("2026");
    record[l.fac_no] = number;
    record[l.fac_lg] = QStringLiteral("%1").arg(line, 3, 10, QLatin1Char('0'));
    record[l.fac_imm] = QStringLiteral("2601%1").arg(line, 4, 10, QLatin1Char('0'));
    record[l.fac_ref] = Article;
    record[l.fac_li1] = QStringLiteral("COMPOSANT FEMORAL GENOU TAILLE %1").arg(line);
    record[l.fac_id1] = QStringLiteral("N° Lot : LOT%1").arg(line);
    record[l.fac_fimm] = QStringLiteral("SN74522-%1").arg(line);
    record[l.fac_tip] = QStringLiteral("3114844");
    record[l.fac_dpr] = QStringLiteral("09/2029");
    record[l.fac_qte] = Decimal(1);
    for (const Number* price : {&l.fac_px, &l.fac_pv, &l.fac_ht}) record[*price] = Decimal(449);
    record[l.fac_ttc] = Decimal::fromText(QStringLiteral("473.70"));
    record[l.fac_tva] = QStringLiteral("1");
    record[l.fac_tar] = QStringLiteral("HT");
    return record;
}

/// Invoices of ten units each, numbered from "900000" on; written once.
void writeInvoices(Database vente) {
    if (vente.count(strface, strface.fac_no >= QStringLiteral("900000")) > 0) return;
    Transaction transaction(vente.workspace());
    for (int i = 0; i < Invoices; ++i) {
        Record header(strface);
        header[strface.fac_aa] = QStringLiteral("2026");
        header[strface.fac_no] = QString::number(900'000 + i);
        header[strface.fac_lg] = documents::HeaderKey;
        header[strface.fac_clt] = Client;
        header[strface.fac_nom] = QStringLiteral("CENTRE HOSPITALIER");
        header[strface.fac_datf] = QStringLiteral("05/03/2026");
        header[strface.fac_mode] = QStringLiteral("FAC");
        header[strface.fac_mon] = QStringLiteral("EUR");
        header[strface.fac_pat] = QStringLiteral("PATIENT %1").arg(i);
        header[strface.fac_ht] = Decimal(449 * Lines);
        for (const Number* total : {&strface.fac_ttc, &strface.fac_ffa}) header[*total] = Decimal(4737);
        vente.insert(header);
        for (int line = 1; line <= Lines; ++line) vente.insert(lineOf(header[strface.fac_no], line));
    }
    transaction.commit();
}

PrintJob jobOf(SalesBook& book) {
    return papers::print(book, papers::select(book, {{}, QStringLiteral("900000"), {}, {}}), {}, {});
}

void pagesByRule(benchmark::State& state) {
    SalesBook book(session(), documentKind(QStringLiteral("FAC")));
    writeInvoices(book.vente);
    for (auto _ : state) benchmark::DoNotOptimize(jobOf(book).pdf());
}

/// The texts and lines of a job at their places, without a reading and a layout of them.
QByteArray bare(const PrintJob& job) {
    QByteArray bytes;
    QBuffer file(&bytes);
    file.open(QIODevice::WriteOnly);
    QPdfWriter writer(&file);
    writer.setPageLayout(job.pageLayout());
    writer.setResolution(TwipsPerInch);
    QPainter painter(&writer);
    qsizetype piece = 0, bar = 0;
    for (int page = 0; page < job.pages(); ++page) {
        if (page > 0) writer.newPage();
        for (; bar < job.bars().size() && job.bars()[bar].page == page; ++bar) {
            const PrintedBar& one = job.bars()[bar];
            painter.fillRect(one.x, one.y, one.width, one.height, one.color);
        }
        for (; piece < job.pieces().size() && job.pieces()[piece].page == page; ++piece) {
            const PrintedText& one = job.pieces()[piece];
            painter.setFont(one.font);
            painter.drawText(one.x, one.y + 20 * one.font.pointSize(), one.text);
        }
    }
    painter.end();
    return bytes;
}

void pagesBare(benchmark::State& state) {
    SalesBook book(session(), documentKind(QStringLiteral("FAC")));
    writeInvoices(book.vente);
    const PrintJob job = jobOf(book);
    for (auto _ : state) benchmark::DoNotOptimize(bare(job));
}

/// The invoices, sold by and to who has the numbers that an electronic invoice bears.
QList<papers::Paper> electronicInvoices(SalesBook& book) {
    writeInvoices(book.vente);
    book.vente.update(strface, {{strface.fac_mon, QStringLiteral("EUR")}}, strface.fac_no >= QStringLiteral("900000"));
    book.molven.update(strclient, {{strclient.clt_nic, QStringLiteral("89000014400018")}}, strclient.clt_cod == Client);
    const Record before = seller::read(book.molven);
    Record identity = before;
    identity[stremetteur.emt_siret] = QStringLiteral("89812345000014");
    identity[stremetteur.emt_tva] = QStringLiteral("FR04898123450");
    identity[stremetteur.emt_vil] = QStringLiteral("LYON");
    seller::save(book.molven, identity, before);
    return papers::select(book, {{}, QStringLiteral("900000"), {}, {}});
}

void electronicByRule(benchmark::State& state) {
    SalesBook book(session(), documentKind(QStringLiteral("FAC")));
    const auto papers = electronicInvoices(book);
    for (auto _ : state)
        for (const papers::Paper& paper : papers) benchmark::DoNotOptimize(electronic::facturX(book, paper));
}

/// The pages alone, a file each.
void electronicBare(benchmark::State& state) {
    SalesBook book(session(), documentKind(QStringLiteral("FAC")));
    QList<PrintJob> jobs;
    for (const papers::Paper& paper : electronicInvoices(book)) jobs.append(papers::print(book, {paper}, {}, {}));
    for (auto _ : state)
        for (const PrintJob& job : jobs) benchmark::DoNotOptimize(bare(job));
}

} // namespace

void registerPapers() {
    add("1000_invoices_to_pdf/molven", pagesByRule, 1);
    add("1000_invoices_to_pdf/bare", pagesBare, 1);
    add("1000_invoices_to_facturx/molven", electronicByRule, 1);
    add("1000_invoices_to_facturx/bare", electronicBare, 1);
}

} // namespace molven::bench

#include "electronic/factur_x.h"

#include "accounting/client_accounts.h"
#include "accounting/sales_report.h"
#include "accounting/transfer.h"
#include "electronic/amount_rules.h"
#include "electronic/cii_reader.h"
#include "electronic/cii_writer.h"
#include "printing/archive_pdf.h"
#include "reference/parameter_tables.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "support/sales.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <random>

namespace molven {

namespace {

const QString Exemption = QStringLiteral("Exonération, article 261 du code général des impôts");

struct Goods {
    const char *vat, *basis, *price, *discount, *quantity;
};
struct Footer {
    const char *discount = "0", *settlement = "0", *carriage = "0", *exempt = "0", *paid = "0";
};

class ElectronicInvoices : public test::Sales {
protected:
    ElectronicInvoices() {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        Record rate(strparfac);
        rate[strparfac.par1_cde] = QStringLiteral("5");
        molven.insert(rate);
        for (const auto& [field, value] : complete()) change(*field, QString::fromUtf8(value));
    }

    static const QList<std::pair<const Field*, const char*>>& complete() {
        static const QList<std::pair<const Field*, const char*>> fields{
            {&stremetteur.emt_siret, "89812345000014"},
            {&stremetteur.emt_tva, "FR04898123450"},
            {&stremetteur.emt_vil, "LYON"},
            {&stremetteur.emt_iban, "FR7619999000010000012345602"},
            {&stremetteur.emt_exo, "Exonération, article 261 du code général des impôts"},
            {&strclient.clt_nic, "89000014400018"}};
        return fields;
    }
    /// Of the seller, or of the client of all documents.
    void change(const Field& field, const QString& value) {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        const bool isSeller = field.name.startsWith(u"emt");
        const Record before =
            isSeller ? seller::read(molven) : parties::findClient(molven, QStringLiteral("1")).value();
        Record after = before;
        after.set(field, value);
        isSeller ? seller::save(molven, after, before) : parties::saveClient(molven, after, before);
    }

    papers::Paper write(SalesBook& opened, const QList<Goods>& goods, const Footer& footer = {}) {
        const DocumentLines& l = opened.kind().lines;
        const DocumentHeaders& h = opened.kind().headers;
        const Record header = test::newDocument(opened);
        QList<document_lines::Draft> drafts;
        for (const Goods& one : goods) {
            document_lines::Draft draft = test::lineOfArticle(opened, header, QStringLiteral("FEE"));
            draft.line.set(l.fac_tva, QString::fromLatin1(one.vat));
            draft.line.set(l.fac_tar, QString::fromLatin1(one.basis));
            draft.withoutVat = one.basis[0] == 'H';
            draft.line.set(l.fac_px, QString::fromLatin1(one.price));
            draft.line.set(l.fac_remx, QString::fromLatin1(one.discount));
            draft.line.set(l.fac_qte, QString::fromLatin1(one.quantity));
            drafts.append(draft);
        }
        document_lines::add(opened, header, drafts);
        const Record read = documents::current(opened, header);
        Record changed = read;
        const std::pair<const Number*, const char*> amounts[]{{&h.fac_rem, footer.discount},
                                                              {&h.fac_esc, footer.settlement},
                                                              {&h.fac_port, footer.carriage},
                                                              {&h.fac_exo, footer.exempt},
                                                              {&h.fac_acpt, footer.paid}};
        for (const auto& [field, amount] : amounts) changed.set(*field, QString::fromLatin1(amount));
        return {opened.vente, documents::changeFooter(opened, changed, read), &opened.kind()};
    }

    QString save(const QByteArray& bytes, const QString& name) {
        const QString path = dossier.folder() + u'/' + name;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
};

/// What a program says and whether it is content.
void expectContent(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForFinished()) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardOutput().toStdString()
                                     << process.readAllStandardError().toStdString();
}

} // namespace

TEST_F(ElectronicInvoices, BearTheAmountsOfTheirPageAndKeepTheRulesOfTheNorm) {
    const QString schema = QStringLiteral(MOLVEN_SCHEMAS "/data/standard/CrossIndustryInvoice_100pD16B.xsd");
    ASSERT_TRUE(QFile::exists(schema)) << "tools/setup test brings the schema";
    const struct {
        const char *name, *mode;
        QList<Goods> goods;
        Footer footer;
    } cases[]{
        {"several rates",
         "FAC",
         {{"1", "H", "100", "0", "1"}, {"2", "H", "19.99", "0", "3"}, {"4", "H", "7", "0", "2"}},
         {}},
        {"exempt lines and amount",
         "FAC",
         {{"5", "H", "80", "0", "1"}, {"1", "H", "10", "0", "1"}},
         {.exempt = "12.34"}},
        {"discounts of a line and of all",
         "FAC",
         {{"1", "H", "33.33", "12.5", "7"}, {"2", "H", "0.99", "0", "11"}},
         {.discount = "7.5", .settlement = "2"}},
        {"carriage at a rate of its own, part paid",
         "FAC",
         {{"1", "H", "250", "0", "2"}},
         {.carriage = "15", .paid = "100"}},
        {"prices with VAT", "FAC", {{"1", "T", "9.99", "0", "7"}, {"2", "T", "49.95", "10", "3"}}, {.discount = "3"}},
        {"credit note",
         "AVO",
         {{"1", "H", "100", "0", "2"}, {"2", "T", "12", "0", "1"}},
         {.discount = "5", .carriage = "-15"}},
        {"credit note that charges carriage", "AVO", {{"2", "H", "100", "0", "1"}}, {.carriage = "9"}},
        {"given away", "FAC", {{"1", "H", "50", "100", "1"}}, {}},
        {"parts of pieces", "FAC", {{"1", "T", "0.07", "0", "99999"}, {"1", "H", "3.33", "0", "0.25"}}, {}},
    };
    QStringList validated{QStringLiteral("--noout"), QStringLiteral("--schema"), schema};
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        SalesBook opened = book(one.mode);
        const papers::Paper paper = write(opened, one.goods, one.footer);
        const Decimal sign = opened.kind().isCredit ? -1 : 1;
        const electronic::Invoice invoice = electronic::invoiceOf(opened, paper);
        EXPECT_EQ(invoice.base, paper.header[strface.fac_ht] * sign);
        EXPECT_EQ(invoice.total, paper.header[strface.fac_ttc] * sign);
        EXPECT_EQ(invoice.toPay, paper.header[strface.fac_ffa] * sign);
        for (const electronic::Line& line : invoice.lines)
            EXPECT_TRUE(line.discount.isZero() || line.grossPrice - line.discount == line.price);
        const QByteArray xml = electronic::ciiOf(invoice);
        EXPECT_EQ(electronic::brokenRules(electronic::invoiceOfCii(xml)), QStringList());
        validated.append(save(xml, QStringLiteral("%1.xml").arg(validated.size())));
        const QByteArray pdf = electronic::facturX(opened, paper);
        expectContent(QStringLiteral("qpdf"), {QStringLiteral("--check"), save(pdf, QStringLiteral("facture.pdf"))});
        const auto attached = archive_pdf::attachments(pdf);
        ASSERT_EQ(attached.size(), 1);
        EXPECT_EQ(attached.first().name, electronic::XmlName);
        EXPECT_EQ(attached.first().bytes, xml);
        EXPECT_TRUE(pdf.contains("<pdfaid:part>3</pdfaid:part>") && pdf.contains("/AFRelationship /Alternative"));
    }
    expectContent(QStringLiteral("xmllint"), validated);
}

TEST_F(ElectronicInvoices, AgreeWithTheAccountsAndTheFiguresWhateverIsSold) {
    std::mt19937 dice(1);
    const auto one = [&dice](const std::initializer_list<const char*>& of) { return of.begin()[dice() % of.size()]; };
    Decimal base, total, onNoLine;
    for (int n = 0; n < 40; ++n) {
        SalesBook opened = book(n % 5 ? "FAC" : "AVO");
        QList<Goods> goods;
        for (auto left = 1 + dice() % 5; left > 0; --left)
            goods.append({one({"1", "2", "3", "4", "5"}), one({"H", "T"}),
                          one({"0.07", "12.34", "33.33", "57.7", "105.5", "999.99"}),
                          one({"0", "0", "7.5", "12.25", "33.33"}), one({"1", "3", "7", "11", "0.25"})});
        const papers::Paper paper = write(opened, goods,
                                          {.discount = one({"0", "3", "7.5", "12.25"}),
                                           .settlement = one({"0", "2", "1.75"}),
                                           .carriage = one({"0", "15", "9.99"}),
                                           .exempt = one({"0", "12.34"})});
        const electronic::Invoice invoice = electronic::invoiceOf(opened, paper);
        EXPECT_EQ(electronic::brokenRules(invoice), QStringList());
        EXPECT_EQ(invoice.total, paper.header[strface.fac_ttc] * (opened.kind().isCredit ? Decimal(-1) : Decimal(1)));
        base += paper.header[strface.fac_ht];
        total += paper.header[strface.fac_ttc];
        onNoLine += paper.header[strface.fac_port] + paper.header[strface.fac_exo];
    }
    Workspace workspace;
    const transfer::Files files = transfer::openFiles(workspace, dossier.session);
    client_accounts::open(files.lines.molven, files.lines.compta);
    const transfer::Control control = transfer::control(files, QStringLiteral("31/12/2099"));
    EXPECT_EQ(control.documents, 40);
    EXPECT_EQ(control.debit, control.credit);
    Decimal owed, sold;
    Database prepared = files.lines.tri;
    for (const Record& entry : prepared.select(strecrit)) {
        const Decimal credit = entry[strecrit.ecr_cre] - entry[strecrit.ecr_deb];
        if (entry[strecrit.ecr_cpt].startsWith(u'7')) sold += credit;
        if (entry[strecrit.ecr_cpt].startsWith(u"411")) owed -= credit;
    }
    EXPECT_EQ(owed, total);
    EXPECT_EQ(sold, base);
    statistics::Query query;
    query.period = typedPeriod(QStringLiteral("01/01/2000"), QStringLiteral("31/12/2099"));
    statistics::prepare(files.lines, query);
    for (const char* number : {"2", "98"}) {
        const statistics::SalesReport report(files.lines, statistics::report(QString::fromLatin1(number)), query);
        Decimal net;
        for (const Record& row : report.rows(statistics::Sorting::ByKey)) net += row[strstat.sta_net];
        EXPECT_EQ(net, report.kind().isByAccount() ? base : base - onNoLine) << number;
    }
}

TEST_F(ElectronicInvoices, TellOfTheirGoodsWhatAReceiptAsks) {
    SalesBook opened = book("FAC");
    const Record header = test::newDocument(opened);
    document_lines::Draft text = test::lineOfArticle(opened, header, QStringLiteral("NOTE"));
    text.line[strfacl.fac_li1] = QStringLiteral("Posé le 5 & contrôlé");
    document_lines::add(opened, header,
                        {test::lineOfUnit(opened, header, dossier.receive(QStringLiteral("HIP"), 1).first()), text});
    const QString path =
        save(electronic::facturX(opened, papers::select(opened, {}).first()), QStringLiteral("recu.pdf"));
    const electronic::Invoice invoice = electronic::readFile(path);
    ASSERT_EQ(invoice.lines.size(), 1);
    const electronic::Line& line = invoice.lines.first();
    const Receipt receipt = test::Dossier::receipt(QStringLiteral("HIP"), 1);
    EXPECT_EQ(line.reference, QStringLiteral("HIP"));
    EXPECT_EQ(line.attribute({QStringLiteral("Lot")}), receipt.lot);
    EXPECT_EQ(line.attribute({QStringLiteral("Péremption")}), receipt.expiryDate);
    EXPECT_EQ(line.notes, QStringList{QStringLiteral("Posé le 5 & contrôlé")});
}

TEST_F(ElectronicInvoices, NameTheFieldThatALawfulOneLacks) {
    for (const auto& [field, value] : complete()) {
        if (field == &stremetteur.emt_iban) continue; // paid otherwise
        SCOPED_TRACE(field->name.toStdString());
        SalesBook opened = book("FAC");
        const papers::Paper paper = write(opened, {{"5", "H", "10", "0", "1"}});
        change(*field, QString());
        const auto make = [&] { electronic::invoiceOf(opened, paper); };
        EXPECT_EQ(test::refusedField(make), field->name);
        EXPECT_THAT(test::refusalOf(make).toStdString(), testing::HasSubstr("obligatoire"));
        change(*field, QString::fromUtf8(value));
    }
    SalesBook opened = book("FAC");
    const auto papers = papers::select(opened, {});
    const QString folder = dossier.folder() + QStringLiteral("/factures");
    ASSERT_TRUE(QDir().mkpath(folder));
    change(strclient.clt_nic, {});
    EXPECT_NE(test::refusalOf([&] { electronic::saveFacturX(opened, papers, folder, {}); }),
              QStringLiteral("(accepté)"));
    EXPECT_TRUE(QDir(folder).isEmpty());
    change(strclient.clt_nic, QStringLiteral("89000014400018"));
    EXPECT_EQ(electronic::saveFacturX(opened, papers, folder, {}), papers.size());
    EXPECT_EQ(QDir(folder).entryList({QStringLiteral("Facture *.pdf")}).size(), papers.size());
}

TEST_F(ElectronicInvoices, AreNotReadFromWhatIsNone) {
    const QByteArray opening = "<CrossIndustryInvoice>";
    const std::pair<QByteArray, const char*> files[]{
        {"", "facture électronique lisible"},
        {"bonjour", "facture électronique lisible"},
        {"<Invoice/>", "facture électronique lisible"},
        {opening, "facture électronique lisible"},
        {"<!DOCTYPE x [<!ENTITY a \"b\">]><CrossIndustryInvoice>&a;</CrossIndustryInvoice>", "lisible"},
        {opening + QByteArray("<a>").repeated(100'000), "lisible"},
        {"%PDF-1.7 coupé", "PDF lisible"},
        {PrintJob(QStringLiteral("vide")).pdf(), "ne contient pas de facture"}};
    for (const auto& [bytes, told] : files) {
        const QString path = save(bytes, QStringLiteral("recu"));
        EXPECT_THAT(test::refusalOf([&] { electronic::readFile(path); }).toStdString(), testing::HasSubstr(told));
    }
}

} // namespace molven

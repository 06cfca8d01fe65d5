#include "support/six_invoices.h"

#include "accounting/client_accounts.h"
#include "accounting/entry_files.h"
#include "accounting/sales_report.h"
#include "accounting/transfer.h"
#include "dossier/check.h"
#include "sales/documents.h"
#include "sales/renumbering.h"

namespace molven {

using test::euros;
using test::refusalOf;

namespace {

class Bookings : public test::SixInvoices {
protected:
    Bookings() : files(transfer::openFiles(workspace, dossier.session)) {}

    /// "411000101 D 189.90, ...", as the transfer wrote them.
    QString entriesOf(const char* number) {
        const auto& e = strecrit;
        QStringList lines;
        for (const Record& line :
             files.lines.compta.select(e, e.ecr_no == QString::fromLatin1(number), {e.ecr_num, e.ecr_lg}))
            lines.append(line[e.ecr_cpt] + (line[e.ecr_deb].isZero() ? QStringLiteral(" C ") : QStringLiteral(" D ")) +
                         (line[e.ecr_deb] + line[e.ecr_cre]).toFixed(2));
        return lines.join(QStringLiteral(", "));
    }
    transfer::Control controlAll() {
        client_accounts::open(files.lines.molven, files.lines.compta);
        return transfer::control(files, QStringLiteral("31/03/2026"));
    }
    QStringList faults() {
        QStringList found;
        for (const check::Fault& fault : check::run(dossier.session))
            if (fault.kind->name == u"écritures") found.append(fault.subject + QStringLiteral(" : ") + fault.text);
        return found;
    }

    Workspace workspace;
    transfer::Files files;
};

} // namespace

TEST_F(Bookings, BookEveryDocumentToTheCent) {
    const transfer::Control control = controlAll();
    EXPECT_EQ(control.documents, 5);
    EXPECT_EQ(control.entries, 17);
    EXPECT_EQ(control.debit, euros("565.95"));
    EXPECT_EQ(control.credit, euros("565.95"));
    EXPECT_EQ(files.lines.compta.count(strecrit), 0) << "a control writes nothing";
    EXPECT_EQ(transfer::run(files, control), QStringLiteral("000001"));
    EXPECT_EQ(entriesOf("000001"), QStringLiteral("411000101 D 189.90, 700000000 C 180.00, 445710000 C 9.90"));
    EXPECT_EQ(entriesOf("000003"),
              QStringLiteral("411000000 D 82.56, 700000000 C 58.79, 708500000 C 10.00, 445711000 C 13.77"));
    EXPECT_EQ(entriesOf("000004"), QStringLiteral("411000101 C 52.75, 700000000 D 50.00, 445710000 D 2.75"));
    EXPECT_EQ(entriesOf("000005"),
              QStringLiteral("411000303 D 110.50, 700100000 C 100.00, 700000000 C 5.00, 445710000 C 5.50"));
    EXPECT_EQ(faults(), QStringList());
    EXPECT_EQ(refusalOf([&] { transfer::control(files, QStringLiteral("31/03/2026")); }),
              QStringLiteral("aucune facture sélectionnée"))
        << "a document is transferred once";
}

/// The report by account and the transfer of the same period say the same of every account.
TEST_F(Bookings, AgreeWithTheReportByAccount) {
    transfer::run(files, controlAll());
    statistics::Query query;
    query.period = {QStringLiteral("20260301"), QStringLiteral("20260331")};
    statistics::prepare(files.lines, query);
    const statistics::SalesReport report(files.lines, statistics::report(QStringLiteral("98")), query);
    const auto& e = strecrit;
    for (const Record& account : report.level({}, statistics::Sorting::ByKey)) {
        const auto booked =
            files.lines.compta.summary(e, {}, {&e.ecr_cre, &e.ecr_deb}, e.ecr_cpt == account[strstat.sta_imp]);
        ASSERT_EQ(booked.size(), 1);
        EXPECT_EQ(booked[0].sums[0] - booked[0].sums[1], account[strstat.sta_net])
            << account[strstat.sta_imp].toStdString();
    }
}

TEST_F(Bookings, LeaveOutWhatTheyCannotBook) {
    files.lines.vente.update(strface, {{strface.fac_mon, QStringLiteral("USD")}},
                             strface.fac_no == QStringLiteral("000002"));
    files.lines.vente.update(strface, {{strface.fac_ttc, QStringLiteral("1")}},
                             strface.fac_no == QStringLiteral("000003"));
    const transfer::Control control = transfer::control(files, QStringLiteral("31/03/2026"));
    QStringList reasons;
    for (const transfer::LeftOut& one : control.leftOut) reasons.append(one.number + u' ' + one.reason);
    EXPECT_EQ(reasons, (QStringList{QStringLiteral("000001 compte 411000101 absent du plan comptable"),
                                    QStringLiteral("000002 monnaie USD"),
                                    QStringLiteral("000003 totaux autres que ceux des lignes"),
                                    QStringLiteral("000004 compte 411000101 absent du plan comptable"),
                                    QStringLiteral("000005 compte 411000303 absent du plan comptable")}));
    EXPECT_EQ(control.documents, 0);
    transfer::run(files, controlAll());
    EXPECT_EQ(files.lines.vente.count(strface, strface.fac_cpt == QStringLiteral("T")), 3);
    EXPECT_EQ(transfer::control(files, QStringLiteral("30/04/2026")).documents, 1) << "April's alone";
}

TEST_F(Bookings, WriteWhatWasControlledOrNothing) {
    const transfer::Control control = controlAll();
    files.lines.vente.update(strface, {{strface.fac_clt, QStringLiteral("000002")}},
                             strface.fac_no == QStringLiteral("000001"));
    EXPECT_EQ(refusalOf([&] { transfer::run(files, control); }),
              QStringLiteral("Les factures ont changé depuis le contrôle : contrôler de nouveau"));
    EXPECT_EQ(files.lines.compta.count(strecrit), 0);
    EXPECT_EQ(files.lines.vente.count(strface, strface.fac_cpt == QStringLiteral("T")), 0);
    EXPECT_EQ(refusalOf([&] { transfer::control(files, QString()); }), QStringLiteral("date obligatoire"));
    EXPECT_EQ(refusalOf([&] { transfer::control(files, QStringLiteral("31/02/2026")); }),
              QStringLiteral("date fin non valide"));
}

TEST_F(Bookings, CloseTheirDocuments) {
    transfer::run(files, controlAll());
    SalesBook book(dossier.session, documentKind(QStringLiteral("FAC")));
    const Record invoice = documents::find(book, QStringLiteral("1")).value();
    const QString closed = QStringLiteral("Document transféré non modifiable");
    EXPECT_EQ(refusalOf([&] { documents::change(book, invoice, invoice); }), closed);
    EXPECT_EQ(refusalOf([&] { documents::changeFooter(book, invoice, invoice); }), closed);
    EXPECT_EQ(refusalOf([&] { documents::abandon(book, invoice); }), closed);
    EXPECT_EQ(refusalOf([&] {
                  document_lines::add(book, invoice, {test::lineOfArticle(book, invoice, QStringLiteral("FEE"))});
              }),
              closed);
    EXPECT_EQ(refusalOf([&] {
                  renumbering::renumber(dossier.session, *renumbering::ofMenu(QStringLiteral("mnu_util_num_fac")),
                                        QStringLiteral("1"), QStringLiteral("77"));
              }),
              closed);
}

TEST_F(Bookings, AreProvedByTheCheck) {
    transfer::run(files, controlAll());
    auto& compta = files.lines.compta;
    compta.update(strecrit, {{strecrit.ecr_deb, QStringLiteral("1")}},
                  strecrit.ecr_no == QStringLiteral("000001") && strecrit.ecr_lg == QStringLiteral("001"));
    compta.remove(strecrit, strecrit.ecr_no == QStringLiteral("000002"));
    files.lines.vente.update(strface, {{strface.fac_cpt, QStringLiteral("N")}},
                             strface.fac_no == QStringLiteral("000003"));
    EXPECT_EQ(faults(), (QStringList{QStringLiteral("facture 2026/000001 : débit 1,00, crédit 189,90"),
                                     QStringLiteral("facture 2026/000001 : T.T.C. 189,90, écriture du client 1,00"),
                                     QStringLiteral("facture 2026/000002 : transférée, sans écriture"),
                                     QStringLiteral("facture 2026/000003 : écritures sans document transféré")}));
}

TEST_F(Bookings, LeaveFilesThatAreReadBack) {
    const QString number = transfer::run(files, controlAll());
    auto& compta = files.lines.compta;
    const QList<QByteArray> fixed = entry_files::fixedColumns(compta, number).split('\n');
    ASSERT_EQ(fixed.size(), 18) << "17 lines, each ended";
    EXPECT_EQ(fixed[0], "VE 100320264110001012026000001Facture 000001 CLINIQUE DE L'\xC9TOILE     D         189.90"
                        "09042026 00000100000001\r");
    Decimal debit, credit;
    const QList<QByteArray> semicolons = entry_files::semicolons(compta, number).split('\n');
    for (const QByteArray& line : semicolons.mid(1, 17)) {
        const QList<QByteArray> cells = line.trimmed().split(';');
        ASSERT_EQ(cells.size(), 11);
        (cells[5] == "D" ? debit : credit) += Decimal::fromText(QString::fromLatin1(cells[6]));
    }
    EXPECT_EQ(debit, euros("565.95"));
    EXPECT_EQ(credit, debit);

    const Period year{QStringLiteral("20260101"), QStringLiteral("20261231")};
    EXPECT_EQ(entry_files::legalName(QStringLiteral("123456789"), year), QStringLiteral("123456789FEC20261231.txt"));
    EXPECT_NE(refusalOf([&] { entry_files::legalName(QString(), year); }), QStringLiteral("(accepté)"));
    const QList<QByteArray> legal = entry_files::legalFile(compta, files.lines.molven, year).split('\n');
    ASSERT_EQ(legal.size(), 19);
    debit = credit = 0;
    QByteArray last;
    for (const QByteArray& line : legal.mid(1, 17)) {
        const QList<QByteArray> cells = line.chopped(1).split('\t');
        ASSERT_EQ(cells.size(), 18);
        debit += Decimal::fromText(QString::fromLatin1(cells[11]));
        credit += Decimal::fromText(QString::fromLatin1(cells[12]));
        EXPECT_LE(last, cells[2]) << "in the order of the entries' numbers";
        last = cells[2];
    }
    EXPECT_EQ(debit, euros("565.95"));
    EXPECT_EQ(credit, debit);
    EXPECT_EQ(legal[1].split('\t').mid(2, 6).join('|'),
              "00000001|20260310|411000101|CLINIQUE DE L'\xC9TOILE|000001|CLINIQUE DE L'\xC9TOILE");
}

} // namespace molven

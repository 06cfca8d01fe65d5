#include "support/six_invoices.h"

#include "accounting/commissions.h"
#include "accounting/sales_report.h"
#include "data/joined.h"
#include "data/sqlite/exact_functions.h"
#include "reference/parameter_tables.h"

namespace molven {

using test::euros;
using test::refusalOf;

namespace {

const Period March{QStringLiteral("20260301"), QStringLiteral("20260331")},
    April{QStringLiteral("20260401"), QStringLiteral("20260430")};

class Figures : public test::SixInvoices {
protected:
    Figures() : files(sales_statistics::openFiles(workspace, dossier.session)) {}

    /// "net/gross/purchase/margin/percent" of a line.
    QString figuresOf(const char* number, const char* line = "001") {
        const auto& s = statd;
        const auto row =
            files.tri.find(s, s.sta_no == QString::fromLatin1(number) && s.sta_lg == QString::fromLatin1(line));
        QStringList figures;
        for (const Number* field : {&s.sta_net, &s.sta_brut, &s.sta_achat, &s.sta_marge, &s.sta_pourc})
            figures.append(row ? Decimal((*row)[*field]).toFixed(2) : QString());
        return figures.join(u'/');
    }

    Workspace workspace;
    sales_statistics::Files files;
};

} // namespace

TEST_F(Figures, OfEveryLineStandInTheStatistics) {
    EXPECT_EQ(refusalOf([&] {
                  sales_statistics::regenerate(files, statd, {QStringLiteral("20200101"), QStringLiteral("20200102")});
              }),
              QStringLiteral("aucune facture sélectionnée"));
    EXPECT_EQ(sales_statistics::regenerate(files, statd, April), 1);
    EXPECT_EQ(sales_statistics::regenerate(files, statd, March), 6) << "what was there is replaced";
    EXPECT_EQ(figuresOf("000001"), QStringLiteral("180.00/200.00/80.00/100.00/55.56"));
    EXPECT_EQ(figuresOf("000002"), QStringLiteral("123.45/123.45/0.00/123.45/100.00"));
    EXPECT_EQ(figuresOf("000003", "001"), QStringLiteral("29.40/33.33/0.00/29.40/100.00"));
    EXPECT_EQ(figuresOf("000003", "002"), QStringLiteral("29.39/33.33/0.00/29.39/100.00"))
        << "both lines are the document's 58.79";
    EXPECT_EQ(figuresOf("000004"), QStringLiteral("-50.00/-50.00/-20.00/-30.00/60.00"));
    EXPECT_EQ(figuresOf("000005"), QStringLiteral("100.00/100.00/0.00/100.00/100.00")) << "the price has its VAT";
    const auto& s = statd;
    const auto belgian = files.tri.find(s, s.sta_clt == QStringLiteral("000003"));
    EXPECT_EQ((*belgian)[s.sta_cp] + u'|' + (*belgian)[s.sta_vil] + u'|' + (*belgian)[s.sta_dpt] + u'|' +
                  (*belgian)[s.sta_vte] + u'|' + (*belgian)[s.sta_mac],
              QStringLiteral("B-1000|BRUXELLES||700100000|202603"));
    EXPECT_EQ(files.tri.countBy(s, s.sta_dpt).value(QStringLiteral("974")), 2);
    EXPECT_EQ(files.tri.countBy(s, s.sta_vil).value(QStringLiteral("LYON")), 3);
}

TEST_F(Figures, OfArchivedInvoicesAndForeignCurrenciesCount) {
    Record dollar(strmonnaie);
    dollar[strmonnaie.mon_cle] = QStringLiteral("USD");
    dollar[strmonnaie.mon_euro] = euros("0.9");
    files.molven.insert(dollar);
    files.vente.update(strface, {{strface.fac_mon, QStringLiteral("USD")}, {strface.fac_eur, QStringLiteral("0,9")}},
                       strface.fac_no == QStringLiteral("000002"));
    for (Record& header : QList<Record>{*files.vente.find(strface, strface.fac_no == QStringLiteral("000001"))})
        files.historic.insert(header);
    files.vente.remove(strface, strface.fac_no == QStringLiteral("000001"));
    for (const Record& line : files.vente.select(strfacl, strfacl.fac_no == QStringLiteral("000001")))
        files.historic.insert(line);
    files.vente.remove(strfacl, strfacl.fac_no == QStringLiteral("000001"));
    EXPECT_EQ(sales_statistics::regenerate(files, statd, March), 6);
    EXPECT_EQ(figuresOf("000001"), QStringLiteral("180.00/200.00/80.00/100.00/55.56"));
    EXPECT_EQ(figuresOf("000002").section(u'/', 0, 0), QStringLiteral("111.11")) << "123.45 x 0.9 = 111.105";
}

TEST_F(Figures, OfCommissionsAreCutToTheCent) {
    sales_statistics::regenerate(files, statd, March);
    const auto all = commissions::statements(files.tri, files.molven, {}, {});
    ASSERT_EQ(all.size(), 2);
    const commissions::Statement& martin = all[0];
    EXPECT_EQ(martin.name, QStringLiteral("MARTIN MARIE"));
    QStringList lines;
    for (const auto& line : martin.lines) lines.append(line.commission.toString() + u'/' + line.vat.toString());
    EXPECT_EQ(lines, (QStringList{QStringLiteral("5.4/0.297"), QStringLiteral("3.7/0.2035"),
                                  QStringLiteral("-1.5/-0.0825"), QStringLiteral("3/0.165")}));
    EXPECT_EQ(martin.reduced.commission, euros("10.60"));
    EXPECT_TRUE(martin.exempt.isEmpty() && martin.normal.isEmpty());
    EXPECT_EQ(martin.due(), euros("11.183"));
    EXPECT_EQ(all[1].name, QStringLiteral("INCONNU"));
    EXPECT_EQ(all[1].due(), Decimal(0)) << "no rate, no commission";
    EXPECT_EQ(commissions::statements(files.tri, files.molven, QStringLiteral("2"), QStringLiteral("2")).size(), 1);
}

TEST_F(Figures, OfEveryReportAddUpToTheTurnover) {
    statistics::Query query;
    query.period = March;
    query.compared = April;
    statistics::prepare(files, query);
    for (const statistics::ReportKind& kind : statistics::reports()) {
        const statistics::SalesReport report(files, kind, query);
        for (const auto sorting : {statistics::Sorting::ByKey, statistics::Sorting::ByAmount}) {
            Decimal net, compared;
            for (const Record& row : report.rows(sorting)) {
                net += row[strstat.sta_net];
                compared += row[strstat.sta_net2];
            }
            EXPECT_EQ(net, kind.isByAccount() ? euros("427.24") : euros("412.24")) << kind.title.toStdString();
            EXPECT_EQ(compared, Decimal(30)) << kind.title.toStdString();
        }
    }
}

TEST_F(Figures, OfAReportOpenLevelByLevel) {
    statistics::Query query;
    query.period = March;
    statistics::prepare(files, query);
    const auto& s = strstat;
    const statistics::SalesReport report(files, statistics::report(QStringLiteral("52")), query);
    const auto clients = report.level({}, statistics::Sorting::ByAmount);
    ASSERT_EQ(clients.size(), 3);
    EXPECT_EQ(clients[0][s.sta_nom] + u' ' + clients[0][s.sta_net].toFixed(2) + u' ' +
                  clients[0][s.sta_part].toFixed(2),
              QStringLiteral("CLINIQUE DE L'ÉTOILE 253.45 61.48"));
    EXPECT_EQ(report.level({QStringLiteral("000001"), QStringLiteral("000")}, statistics::Sorting::ByKey).size(), 3);
    EXPECT_EQ(report.lines({QStringLiteral("000001"), QStringLiteral("000"), QStringLiteral("000004")}).count(), 1);

    query.department = QStringLiteral("974");
    query.compared = April;
    const statistics::SalesReport overseas(files, statistics::report(QStringLiteral("15")), query);
    const auto rows = overseas.rows(statistics::Sorting::ByKey);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][s.sta_net], euros("58.79"));
    EXPECT_EQ(rows[0][s.sta_lib], QStringLiteral("La Réunion"));
    const statistics::SalesReport months(files, statistics::report(QStringLiteral("99")), query);
    EXPECT_EQ(months.rows(statistics::Sorting::ByKey).size(), 12);
}

struct Product {
    const char *a, *b, *c, *expected;
};

/// What binary fractions would round to the other side.
TEST(ExactFunctions, RoundHalfAwayFromZero) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("tri.mdb"));
    Database::create(path, {&statd});
    Workspace workspace;
    Database file = workspace.open(path);
    for (const Product& one : {Product{"1.5", "0.35", "1", "0.53"},
                               {"-1.5", "0.35", "1", "-0.53"},
                               {"1.005", "1", "1", "1.01"},
                               {"66.66", "0.9", "0.98", "58.79"},
                               {"999999.99", "99999.999", "0.5", "49999999000.00"}}) {
        const auto sum = [](const char* text) { return QString::fromLatin1(text); };
        const QString found = file.firstValue(
            QStringLiteral("select printf('%.2f',product(2,%1,%2,%3))").arg(sum(one.a), sum(one.b), sum(one.c)));
        EXPECT_EQ(found, QString::fromLatin1(one.expected)) << one.a << " x " << one.b;
    }
    for (const Product& one : {Product{"2", "10", "3", "3.33"},
                               {"2", "-1.005", "1", "-1.01"},
                               {"2", "105.5", "1.055", "100.0"},
                               {"2", "999999999.99", "0.07", "14285714285.57"},
                               {"2", "1", "-8", "-0.13"}})
        EXPECT_EQ(file.firstValue(QStringLiteral("select quotient(%1,%2,%3)")
                                      .arg(QLatin1String(one.a), QLatin1String(one.b), QLatin1String(one.c))),
                  QString::fromLatin1(one.expected))
            << one.b << " / " << one.c;
    EXPECT_EQ(file.firstValue(QStringLiteral("select quotient(2,10,0) is null")), QStringLiteral("1"));
}

} // namespace molven

#include "support/data_folder.h"
#include "support/dossier.h"

#include "data/collation.h"
#include "reference/article_tables.h"
#include "reference/party_tables.h"

#include <QTemporaryDir>

namespace molven {

namespace {

/// A file of clients, as two workstations open it.
class ClientFile : public testing::Test {
protected:
    ClientFile() : path(folder.filePath(QStringLiteral("essai.mdb"))) {
        Database::create(path, {&strclient});
        for (const char* name : {"ÉTOILE", "etang", "ZOLA", "L'ORME", "Étable", "ORME"}) add(QString::fromUtf8(name));
    }

    void add(const QString& name) {
        Workspace workspace;
        Record client(strclient);
        client[strclient.clt_cod] = QString::number(++last).rightJustified(6, u'0');
        client[strclient.clt_nom] = name;
        workspace.open(path).insert(client);
    }

    QStringList names(const Criterion& criterion, const Order& order = strclient.clt_cod) {
        Workspace workspace;
        QStringList found;
        for (const Record& client : workspace.open(path).select(strclient, criterion, order))
            found.append(client[strclient.clt_nom]);
        return found;
    }

    test::DataFolder folder;
    QString path;
    int last = 0;
};

} // namespace

TEST_F(ClientFile, SortsAsFrenchPeopleDo) {
    EXPECT_EQ(names({}, strclient.clt_nom).join(u' '), QStringLiteral("Étable etang ÉTOILE L'ORME ORME ZOLA"));
}

TEST_F(ClientFile, SortsInMemoryAsTheEngineDoes) {
    add(QStringLiteral("D'ARC"));
    add(QStringLiteral("darc"));
    for (const Field* field :
         {static_cast<const Field*>(&strclient.clt_nom), static_cast<const Field*>(&strclient.clt_mail)}) {
        Workspace workspace;
        Database file = workspace.open(path);
        file.copyField(strclient, strclient.clt_mail, strclient.clt_nom, {});
        QStringList sorted = names({}, *field), again = names({});
        std::stable_sort(again.begin(), again.end(),
                         [&](const QString& a, const QString& b) { return collation::compare(*field, a, b) < 0; });
        EXPECT_EQ(again.join(u' '), sorted.join(u' '));
    }
    EXPECT_EQ(collation::compare(strclient.clt_cod, QStringLiteral("ab"), QStringLiteral("AB")), 0);
    EXPECT_LT(collation::compare(strclient.clt_cod, QStringLiteral("a"), QStringLiteral("AB")), 0);
    EXPECT_LT(collation::compare(strarticle.art_pv1, QString(), QStringLiteral("-1")), 0);
    EXPECT_LT(collation::compare(strarticle.art_pv1, QStringLiteral("9"), QStringLiteral("10")), 0);
}

TEST_F(ClientFile, FindsTextsWhateverTheirCaseAndTakesAnApostropheForALetter) {
    EXPECT_EQ(names(strclient.clt_nom == QStringLiteral("étoile")), QStringList(QStringLiteral("ÉTOILE")));
    EXPECT_EQ(names(startsWith(strclient.clt_nom, QStringLiteral("l'"))), QStringList(QStringLiteral("L'ORME")));
    EXPECT_EQ(names(strclient.clt_nom == QStringLiteral("x' or '1'='1")), QStringList());
    EXPECT_EQ(names(contains(strclient.clt_nom, QStringLiteral("eta"))).join(u' '), QStringLiteral("etang Étable"));
    EXPECT_EQ(names(isOneOf(strclient.clt_mail, {QString(), QStringLiteral("x")})).size(), 6) << "empty is a value";
    EXPECT_EQ(names(startsWith(strclient.clt_nom, QStringLiteral("%"))), QStringList());
    EXPECT_EQ(
        names(!startsWith(strclient.clt_nom, QStringLiteral("e")) && strclient.clt_cod <= QStringLiteral("000004"))
            .join(u' '),
        QStringLiteral("ÉTOILE ZOLA L'ORME"));
}

TEST_F(ClientFile, MovesFindsAndCountsLikeTheOldEngine) {
    Workspace workspace;
    Recordset clients = workspace.open(path).select(strclient, {}, strclient.clt_nom);
    EXPECT_EQ(clients.count(), 6);
    clients.moveLast();
    EXPECT_EQ(QString(clients[strclient.clt_nom]), QStringLiteral("ZOLA"));
    EXPECT_TRUE(clients.findFirst(strclient.clt_nom == QStringLiteral("orme")));
    EXPECT_EQ(clients.position(), 4);
    EXPECT_FALSE(clients.findFirst(strclient.clt_nom == QStringLiteral("absent")));
    EXPECT_EQ(clients.position(), 4);
    clients.remove();
    EXPECT_EQ(QString(clients[strclient.clt_nom]), QStringLiteral("ZOLA"));
    clients.moveNext();
    EXPECT_TRUE(clients.eof());
    EXPECT_EQ(test::dataErrorOf([&] { clients.record(); }), DataError::NoCurrentRecord);
}

TEST_F(ClientFile, NeverOverwritesWhatAnotherWorkstationWrote) {
    Workspace here, there;
    Recordset mine = here.open(path).select(strclient, strclient.clt_cod == QStringLiteral("000001"));
    Recordset theirs = there.open(path).select(strclient, strclient.clt_cod == QStringLiteral("000001"));
    mine.edit();
    mine[strclient.clt_l1] = QStringLiteral("MA RUE");
    theirs.edit();
    theirs[strclient.clt_l2] = QStringLiteral("LEUR QUARTIER");
    theirs.update();
    EXPECT_EQ(test::dataErrorOf([&] { mine.update(); }), DataError::RecordChanged);
    mine.edit();
    mine[strclient.clt_l1] = QStringLiteral("MA RUE");
    mine.update();
    theirs.requery();
    EXPECT_EQ(QString(theirs[strclient.clt_l1]) + theirs[strclient.clt_l2], QStringLiteral("MA RUELEUR QUARTIER"));
}

TEST_F(ClientFile, TakesAChangeOfCaseForAChange) {
    Workspace here, there;
    Recordset mine = here.open(path).select(strclient, strclient.clt_cod == QStringLiteral("000001"));
    mine.edit();
    mine[strclient.clt_l1] = QStringLiteral("MA RUE");
    there.open(path).update(strclient, {{strclient.clt_nom, QStringLiteral("Étoile")}}, {});
    EXPECT_EQ(test::dataErrorOf([&] { mine.update(); }), DataError::RecordChanged);
}

TEST_F(ClientFile, TellsARecordDeletedElsewhereAndATextThatDoesNotFit) {
    Workspace here, there;
    Recordset mine = here.open(path).select(strclient, strclient.clt_cod == QStringLiteral("000002"));
    there.open(path).remove(strclient, strclient.clt_cod == QStringLiteral("000002"));
    EXPECT_EQ(test::dataErrorOf([&] { mine.edit(); }), DataError::RecordDeleted);
    EXPECT_EQ(test::dataErrorOf([&] { mine.addNew(), mine[strclient.clt_nom] = QString(200, u'x'); }),
              DataError::FieldTooSmall);
}

TEST_F(ClientFile, RefusesATextThatAnEngineWouldCut) {
    EXPECT_EQ(test::refusedField([this] { add(QStringLiteral("DU") + QChar::Null + QStringLiteral("PONT")); }),
              strclient.clt_nom.name);
    EXPECT_EQ(names({}).size(), 6);
}

TEST_F(ClientFile, ReadsALongSelectionByPagesInItsOrder) {
    {
        Workspace workspace;
        Database file = workspace.open(path);
        Transaction transaction(workspace);
        for (int i = 0; i < 1000; ++i) {
            Record client(strclient);
            client[strclient.clt_cod] = QString::number(900'000 - i);
            file.insert(client);
        }
        transaction.commit();
    }
    Workspace workspace;
    const Recordset clients = workspace.open(path).select(strclient, {}, strclient.clt_cod);
    ASSERT_EQ(clients.count(), 1006);
    EXPECT_EQ(clients.at(1005)[strclient.clt_cod], QStringLiteral("900000"));
    EXPECT_EQ(clients.at(6)[strclient.clt_cod], QStringLiteral("899001"));
    EXPECT_EQ(clients.at(500)[strclient.clt_cod], QStringLiteral("899495"));
}

namespace {

/// A file of articles and lines, with an article as a user reads it.
class ArticleFile : public testing::Test {
protected:
    ArticleFile() : path(folder.filePath(QStringLiteral("articles.mdb"))), asRead(strarticle) {
        Database::create(path, {&strarticle, &strlivl});
        asRead[strarticle.art_ref] = QStringLiteral("HIP");
        asRead[strarticle.art_pam] = *Decimal::parse(QStringLiteral("514.5555"));
        asRead[strarticle.art_stk] = Decimal(4);
        Workspace workspace;
        workspace.open(path).insert(asRead);
    }

    QString stored(const Field& field) { return Workspace().open(path).find(strarticle, {})->value(field); }

    test::DataFolder folder;
    QString path;
    Record asRead;
};

} // namespace

TEST_F(ArticleFile, AStockMovedMeanwhileNeitherStopsAChangeNorIsWrittenBack) {
    Workspace workspace;
    Database file = workspace.open(path);
    const auto change = [&](const Record& changed) {
        Recordset stored = file.select(strarticle);
        stored.edit(asRead);
        stored.draft() = changed;
        stored.update();
    };
    Record changed = asRead;
    changed[strarticle.art_li1] = QStringLiteral("TIGE");
    file.update(strarticle, {{strarticle.art_stk, QStringLiteral("5")}, {strarticle.art_pam, QStringLiteral("7")}}, {});
    change(changed);
    EXPECT_EQ(stored(strarticle.art_li1), QStringLiteral("TIGE"));
    EXPECT_EQ(stored(strarticle.art_stk), QStringLiteral("5"));
    EXPECT_EQ(stored(strarticle.art_pam), QStringLiteral("7"));

    asRead = changed;
    changed[strarticle.art_pam] = Decimal(9);
    EXPECT_EQ(test::dataErrorOf([&] { change(changed); }), DataError::RecordChanged)
        << "an average that the user changed himself is not his alone";
}

TEST_F(ArticleFile, ANumberIsRoundedToItsScaleAndRefusedBeyondFifteenDigits) {
    Record article(strarticle);
    article.set(strarticle.art_pv1, QStringLiteral("0.1234567890123456789"));
    EXPECT_EQ(article.value(strarticle.art_pv1), QStringLiteral("0.1235"));
    article.set(strarticle.art_pv1, QStringLiteral("-12.345"));
    EXPECT_EQ(article.value(strarticle.art_pv1), QStringLiteral("-12.345"));
    article[strarticle.art_pv1] = Decimal(1) / Decimal(3);
    EXPECT_EQ(article.value(strarticle.art_pv1), QStringLiteral("0.3333"));
    article.set(strarticle.art_pv1, QStringLiteral("  "));
    EXPECT_TRUE(article.isNull(strarticle.art_pv1));
    for (const char* tooLong : {"123456789012.3456", "9999999999999999", "1e300"})
        EXPECT_EQ(test::dataErrorOf([&] { article.set(strarticle.art_pv1, QString::fromLatin1(tooLong)); }),
                  DataError::FieldTooSmall)
            << tooLong;
    EXPECT_EQ(test::dataErrorOf([&] { article.set(strarticle.art_pv1, QStringLiteral("12 F")); }),
              DataError::NotANumber);
    Workspace workspace;
    workspace.open(path).update(strarticle, {{strarticle.art_pv1, QStringLiteral("2.99999")}}, {});
    EXPECT_EQ(stored(strarticle.art_pv1), QStringLiteral("3"));
}

TEST_F(ArticleFile, ARecordWithANumberThatNoTextOfFifteenDigitsHoldsCanStillBeChanged) {
    Workspace workspace;
    Database file = workspace.open(path);
    file.firstValue(QStringLiteral("update strarticle set art_ttc=123456789012345678.75"));
    Recordset articles = file.select(strarticle);
    articles.edit();
    articles[strarticle.art_li1] = QStringLiteral("TIGE");
    articles.update();
    EXPECT_EQ(stored(strarticle.art_li1), QStringLiteral("TIGE"));
    EXPECT_EQ(file.firstValue(QStringLiteral("select art_ttc=123456789012345678.75 from strarticle")),
              QStringLiteral("1"));
}

TEST_F(ArticleFile, AddsToANumberWhateverItHoldsThen) {
    Workspace workspace;
    Database file = workspace.open(path);
    file.update(strarticle, {{strarticle.art_stk, {}}}, {});
    for (const auto& [amount, sum] : {std::pair("0.1", "0.1"), {"0.2", "0.3"}, {"2.7", "3"}, {"-4.25", "-1.25"}}) {
        EXPECT_EQ(file.addTo(strarticle, strarticle.art_stk, Decimal::fromText(QString::fromLatin1(amount)), {}), 1);
        EXPECT_EQ(stored(strarticle.art_stk), QString::fromLatin1(sum));
    }
}

TEST_F(ClientFile, KeepsTheExactAmountItWasGiven) {
    const QString other = folder.filePath(QStringLiteral("montants.mdb"));
    Database::create(other, {&strlivl});
    Workspace workspace;
    Database file = workspace.open(other);
    Record line(strlivl);
    line[strlivl.fac_px] = *Decimal::parse(QStringLiteral("0.29"));
    file.insert(line);
    line[strlivl.fac_px] = *Decimal::parse(QStringLiteral("1234567890.07"));
    file.insert(line);
    const Recordset lines = file.select(strlivl);
    EXPECT_EQ(lines.at(0)[strlivl.fac_px].toString(), QStringLiteral("0.29"));
    EXPECT_EQ(lines.at(1)[strlivl.fac_px].toString(), QStringLiteral("1234567890.07"));
    EXPECT_TRUE(lines.at(0).isNull(strlivl.fac_ht));
}

} // namespace molven

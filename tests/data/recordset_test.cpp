#include "support/dossier.h"

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

    QTemporaryDir folder;
    QString path;
    int last = 0;
};

} // namespace

TEST_F(ClientFile, SortsAsFrenchPeopleDo) {
    EXPECT_EQ(names({}, strclient.clt_nom).join(u' '), QStringLiteral("Étable etang ÉTOILE L'ORME ORME ZOLA"));
}

TEST_F(ClientFile, FindsTextsWhateverTheirCaseAndTakesAnApostropheForALetter) {
    EXPECT_EQ(names(strclient.clt_nom == QStringLiteral("étoile")), QStringList(QStringLiteral("ÉTOILE")));
    EXPECT_EQ(names(startsWith(strclient.clt_nom, QStringLiteral("l'"))), QStringList(QStringLiteral("L'ORME")));
    EXPECT_EQ(names(strclient.clt_nom == QStringLiteral("x' or '1'='1")), QStringList());
    EXPECT_EQ(names(contains(strclient.clt_nom, QStringLiteral("eta"))).join(u' '), QStringLiteral("etang Étable"));
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

TEST_F(ClientFile, TellsARecordDeletedElsewhereAndATextThatDoesNotFit) {
    Workspace here, there;
    Recordset mine = here.open(path).select(strclient, strclient.clt_cod == QStringLiteral("000002"));
    there.open(path).remove(strclient, strclient.clt_cod == QStringLiteral("000002"));
    EXPECT_EQ(test::dataErrorOf([&] { mine.edit(); }), DataError::RecordDeleted);
    EXPECT_EQ(test::dataErrorOf([&] { mine.addNew(), mine[strclient.clt_nom] = QString(200, u'x'); }),
              DataError::FieldTooSmall);
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

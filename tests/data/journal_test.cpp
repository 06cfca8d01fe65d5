#include "support/data_folder.h"
#include "support/dossier.h"

#include "data/clock.h"
#include "data/digest.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "reference/article_tables.h"
#include "stock/unit_tables.h"

#include <QCryptographicHash>
#include <QTemporaryDir>

namespace molven {

namespace {

/// A file of articles and one of lines, which keep a journal each.
class JournalledFiles : public testing::Test {
protected:
    JournalledFiles()
        : first(folder.filePath(QStringLiteral("articles.mdb"))),
          second(folder.filePath(QStringLiteral("lignes.mdb"))) {
        Database::create(first, {&strarticle, &strjournal, &strsceau});
        Database::create(second, {&strlivl, &strproduit, &strjournal, &strsceau});
        articles.emplace(workspace.open(first));
        lines.emplace(workspace.open(second));
    }
    ~JournalledFiles() override {
        Clock::set({});
        Journal::veryMany = 256;
    }

    static Record article(const char* reference, int price) {
        Record article(strarticle);
        article[strarticle.art_ref] = QString::fromLatin1(reference);
        article[strarticle.art_li1] = QStringLiteral("L'\"ÉTOILE\"");
        article[strarticle.art_pv1] = Decimal(price);
        return article;
    }

    void add(const char* reference, int price) { articles->insert(article(reference, price)); }

    /// "HIP {...}" of every change or arrival of the articles that these keys name, each told as an entry of its own.
    QStringList told(const JournalKeys& keys, const char* how) {
        QStringList found;
        Journal::read(*articles, keys, strjournal.jou_gen == QString::fromLatin1(how), [&](const Record& entry) {
            EXPECT_TRUE(entry[strjournal.jou_cles].isEmpty());
            found.append(entry[strjournal.jou_cle] + u' ' + entry[strjournal.jou_val]);
        });
        return found;
    }

    /// "C HIP" or "M HIP {...}" of every entry of a file, in order.
    static QStringList entries(Database file) {
        QStringList found;
        for (const Record& row : file.select(strjournal)) {
            const QString how = row[strjournal.jou_gen], values = how == u"C" ? QString() : row[strjournal.jou_val];
            found.append((how + u' ' + row[strjournal.jou_cle] + u' ' + values).trimmed());
        }
        return found;
    }

    /// Two days of work, the former one sealed.
    void workTwoDays() {
        Clock::set(QDate(2026, 3, 5));
        add("HIP", 1);
        add("CUP", 2);
        Clock::set(QDate(2026, 3, 6));
        add("STEM", 3);
    }

    test::DataFolder folder;
    QString first, second;
    Workspace workspace;
    std::optional<Database> articles, lines;
};

} // namespace

TEST_F(JournalledFiles, NeverHoldTheEntryOfAChangeThatFailed) {
    const auto isRefused = [](const auto& deed) { return test::dataErrorOf(deed) != 0; };
    add("HIP", 1);
    {
        Transaction transaction(workspace);
        add("CUP", 2);
        EXPECT_TRUE(isRefused([&] {
            add("HIP", 3);
            articles->count(strarticle); // a server is told with the next question
        }));
        EXPECT_EQ(test::dataErrorOf([&] { transaction.commit(); }), DataError::Undone);
    }
    Transaction transaction(workspace);
    EXPECT_TRUE(isRefused([&] {
        Transaction row(workspace);
        add("HIP", 3);
        row.commit();
    }));
    add("STEM", 4);
    transaction.commit();
    EXPECT_EQ(entries(*articles), (QStringList{"C HIP", "C STEM"})) << "a rule inside gives back its own alone";
    EXPECT_EQ(articles->count(strarticle), 2);
}

TEST_F(JournalledFiles, TellEveryChangeFieldByField) {
    articles->insert(Record(strarticle));
    articles->remove(strarticle);
    add("HIP", 10);
    add("CUP", 20);
    articles->update(strarticle,
                     {{strarticle.art_pv1, QStringLiteral("20")}, {strarticle.art_li1, QStringLiteral("l'\"étoile\"")}},
                     strarticle.art_ref != QStringLiteral("STEM"));
    articles->update(strarticle, {{strarticle.art_pv1, QStringLiteral("20.00")}}, {});
    articles->copyField(strarticle, strarticle.art_ttc, strarticle.art_pv1,
                        strarticle.art_ref == QStringLiteral("HIP"));
    Recordset one = articles->select(strarticle, strarticle.art_ref == QStringLiteral("CUP"));
    one.edit();
    one[strarticle.art_memo] = QStringLiteral("a\nb");
    one[strarticle.art_pv1] = Decimal(5);
    one.update();
    one.remove();
    EXPECT_EQ(
        entries(*articles),
        QStringList({QStringLiteral("C"), QStringLiteral("S  {}"), QStringLiteral("C HIP"), QStringLiteral("C CUP"),
                     QStringLiteral(R"(M HIP {"art_pv1":["10","20"],"art_li1":["L'\"ÉTOILE\"","l'\"étoile\""]})"),
                     QStringLiteral(R"(M CUP {"art_li1":["L'\"ÉTOILE\"","l'\"étoile\""]})"),
                     QStringLiteral(R"(M HIP {"art_ttc":[null,"20"]})"),
                     QStringLiteral(R"(M CUP {"art_pv1":["20","5"],"art_memo":["","a\nb"]})"),
                     QStringLiteral(R"(S CUP {"art_ref":"CUP","art_li1":"l'\"étoile\"","art_pv1":"5",)"
                                    R"("art_memo":"a\nb"})")}));
    EXPECT_EQ(one.count(), 0);
}

/// Nothing may be left of what the record was; the engine's functions take so many values and no more.
TEST_F(JournalledFiles, TellAChangeOfEveryFieldOfTheWidestRecord) {
    QList<Assignment> all;
    for (const Field* field : strproduit.fields()) all.append({*field, QStringLiteral("1")});
    lines->insert(Record(strproduit));
    EXPECT_EQ(lines->update(strproduit, all, {}), 1);
    Recordset units = lines->select(strproduit);
    units.edit();
    for (const Field* field : strproduit.fields()) units.draft().set(*field, QStringLiteral("2"));
    units.update();
    const QStringList told = entries(*lines);
    EXPECT_EQ(told.last().count(QStringLiteral("[\"1\",\"2\"]")), strproduit.fields().size());
    EXPECT_EQ(told[told.size() - 2].count(QStringLiteral(",\"1\"]")), strproduit.fields().size());
    EXPECT_EQ(units.record().value(strproduit.pro_pac), QStringLiteral("2"));
}

TEST_F(JournalledFiles, SayWhoWhenFromWhereAndWhatWasDone) {
    Clock::set(QDate(2026, 3, 5));
    {
        Transaction outer(workspace, QStringLiteral("Réception"));
        add("HIP", 10);
        Transaction inner(workspace, QStringLiteral("Modification"));
        add("CUP", 10);
        inner.commit();
        outer.commit();
    }
    add("STEM", 10);
    const Recordset rows = articles->select(strjournal);
    ASSERT_EQ(rows.count(), 3);
    for (const Record& row : rows) {
        EXPECT_EQ(row[strjournal.jou_dat], QStringLiteral("20260305"));
        EXPECT_EQ(row[strjournal.jou_pos], author::workstation());
        EXPECT_EQ(row[strjournal.jou_uti], author::systemUser());
        EXPECT_FALSE(row[strjournal.jou_uti].isEmpty());
        EXPECT_FALSE(row[strjournal.jou_ver].isEmpty());
        EXPECT_EQ(row[strjournal.jou_tab], strarticle.name);
        EXPECT_TRUE(QTime::fromString(row[strjournal.jou_heu].left(12), QStringLiteral("hh:mm:ss.zzz")).isValid());
    }
    EXPECT_EQ(rows.at(1)[strjournal.jou_act], QStringLiteral("Réception"));
    EXPECT_EQ(rows.at(1)[strjournal.jou_heu], rows.at(0)[strjournal.jou_heu]);
    EXPECT_EQ(rows.at(2)[strjournal.jou_act], QString());
}

TEST_F(JournalledFiles, HoldWhatWasWrittenAndNothingElse) {
    add("HIP", 10);
    {
        Transaction abandoned(workspace);
        add("CUP", 10);
        lines->insert(Record(strlivl));
    }
    Workspace other;
    Recordset theirs = other.open(first).select(strarticle);
    theirs.edit();
    theirs[strarticle.art_li1] = QStringLiteral("A");
    articles->update(strarticle, {{strarticle.art_li1, QStringLiteral("B")}}, {});
    EXPECT_EQ(test::dataErrorOf([&] { theirs.update(); }), DataError::RecordChanged);
    EXPECT_NE(test::dataErrorOf([&] { add("HIP", 10); }), 0) << "the reference is taken";
    EXPECT_EQ(entries(*articles).size(), 2);
    EXPECT_TRUE(entries(*lines).isEmpty());
    lines->insert(Record(strlivl));
    EXPECT_EQ(entries(*lines).size(), 1) << "the entry belongs to the file of its record";
    EXPECT_EQ(entries(*articles).size(), 2);
}

TEST_F(JournalledFiles, NameTogetherWhatWasChangedAlikeAndTellItOneByOne) {
    for (const char* reference : {"HIP", "CUP", "a\nb"}) add(reference, 10);
    Journal::veryMany = 2;
    add("STEM", 20);
    add("NECK", 21);
    articles->update(strarticle, {{strarticle.art_res, QStringLiteral("DIX")}}, strarticle.art_pv1 == Decimal(20));
    articles->update(strarticle, {{strarticle.art_res, QStringLiteral("dix")}}, {});
    articles->addTo(strarticle, strarticle.art_stk, Decimal(2), {});
    articles->copyField(strarticle, strarticle.art_ttc, strarticle.art_pv1, strarticle.art_pv1 < QStringLiteral("21"));
    const QString alike = QStringLiteral(R"({"art_res":["","dix"]})"),
                  stock = QStringLiteral(R"({"art_stk":[null,"2"]})"),
                  price = QStringLiteral(R"({"art_ttc":[null,"10"]})");
    const auto changes = [this](const JournalKeys& keys) { return told(keys, "M"); };
    const QString upper = QStringLiteral(R"({"art_res":["","DIX"]})"),
                  letter = QStringLiteral(R"({"art_res":["DIX","dix"]})");
    EXPECT_EQ(
        changes(JournalKeys::of(QStringLiteral("cup"))),
        QStringList({QStringLiteral("CUP ") + alike, QStringLiteral("CUP ") + stock, QStringLiteral("CUP ") + price}));
    EXPECT_EQ(changes(JournalKeys::of(QStringLiteral("STEM"))).first(2),
              QStringList({QStringLiteral("STEM ") + upper, QStringLiteral("STEM ") + letter}));
    EXPECT_EQ(changes(JournalKeys::of(QStringLiteral("a\nb"))),
              QStringList(
                  {QStringLiteral("a\nb ") + alike, QStringLiteral("a\nb ") + stock, QStringLiteral("a\nb ") + price}))
        << "a key of two lines stands alone";
    EXPECT_EQ(changes(JournalKeys::of(QStringLiteral("b"))), QStringList());
    EXPECT_EQ(changes(JournalKeys::beginningWith(QStringLiteral("h"))).size(), 3);
    EXPECT_EQ(changes(JournalKeys::containing(QStringLiteral("u")) || JournalKeys::of(QStringLiteral("HIP"))).size(),
              6);
    EXPECT_EQ(changes({}).size(), 1 + 5 + 5 + 4);
    EXPECT_EQ(articles->count(strjournal, strjournal.jou_gen == QStringLiteral("M")), 1 + 3 + 2 + 3);
}

TEST_F(JournalledFiles, ShareTheEntryOfNeighboursThatCameTogetherAndTellItOneByOne) {
    add("Hip1", 1);
    add("HIP", 1);
    QList<Record> together;
    for (const char* reference :
         {"HIP101", "HIP102", "HIP103", "12", "34", "HIP201", "HIP2A", "a\n01", "a\n02", "CUP01", "CUP02", "CUP77"})
        together.append(article(reference, static_cast<int>(together.size())));
    articles->insert(together);
    articles->insert(QList<Record>());
    const auto keys = [this](const JournalKeys& sought) {
        QStringList found;
        for (const QString& one : told(sought, "C")) found.append(one.section(u' ', 0, 0).replace(u'\n', u'|'));
        return found.join(u' ');
    };
    for (const Record& one : together) {
        const QString key = one[strarticle.art_ref];
        EXPECT_EQ(told(JournalKeys::of(key), "C"), QStringList(key + u' ' + digest::of(one))) << qPrintable(key);
    }
    EXPECT_EQ(keys(JournalKeys::of(QStringLiteral("hip102"))), QStringLiteral("HIP102"));
    EXPECT_EQ(keys(JournalKeys::of(QStringLiteral("hip1"))), QStringLiteral("Hip1")) << "the name of an entry is none";
    EXPECT_EQ(keys(JournalKeys::beginningWith(QStringLiteral("hip"))),
              QStringLiteral("Hip1 HIP HIP101 HIP102 HIP103 HIP201 HIP2A"));
    EXPECT_EQ(keys(JournalKeys::beginningWith(QStringLiteral("HIP10"))), QStringLiteral("HIP101 HIP102 HIP103"));
    EXPECT_EQ(keys(JournalKeys::beginningWith(QStringLiteral("CUP77"))), QStringLiteral("CUP77"));
    EXPECT_EQ(keys(JournalKeys::containing(QStringLiteral("P02"))), QStringLiteral("CUP02"));
    EXPECT_EQ(keys(JournalKeys::containing(QStringLiteral("A\n"))), QStringLiteral("a|01 a|02"));
    EXPECT_EQ(keys({}), QStringLiteral("Hip1 HIP HIP101 HIP102 HIP103 12 34 HIP201 HIP2A a|01 a|02 CUP01 CUP02 CUP77"));
    EXPECT_EQ(articles->count(strjournal), 2 + 8) << "three and three share one";
    const auto changeAll = [this](const Criterion& which) {
        const qint64 before = articles->count(strjournal);
        articles->update(strarticle, {{strarticle.art_res, QString::number(before)}}, which);
        return articles->count(strjournal) - before;
    };
    EXPECT_EQ(changeAll({}), 2 + 8);
    EXPECT_EQ(changeAll(startsWith(strarticle.art_ref, QStringLiteral("hip"))), 5) << "none with a key of two lines";
    EXPECT_EQ(told(JournalKeys::of(QStringLiteral("hip102")), "M").size(), 2);
    EXPECT_EQ(told(JournalKeys::of(QStringLiteral("hip1")), "M").size(), 2);
    EXPECT_EQ(told(JournalKeys::of(QStringLiteral("a\n02")), "M").size(), 1);
    EXPECT_EQ(told({}, "M").size(), 14 + 7);
}

TEST_F(JournalledFiles, AnAlteredInsertedOrRemovedEntryOfASealedDayIsFound) {
    workTwoDays();
    EXPECT_EQ(Journal::faults(*articles), QStringList());
    for (const char* tampering :
         {"update strjournal set jou_uti='AUTRE' where rowid=1",
          "update strjournal set jou_val='x',jou_cle='' where rowid=2", "delete from strjournal where rowid=1",
          "delete from strjournal where rowid=2", "insert into strjournal (rowid,jou_dat) values (-1,'20260305')",
          "delete from strsceau", "update strsceau set sce_dat='20260304'",
          "update strjournal set rowid=0 where rowid=1"}) {
        Transaction undone(workspace);
        articles->firstValue(QString::fromLatin1(tampering));
        EXPECT_EQ(Journal::faults(*articles).size(), 1) << tampering;
    }
    EXPECT_EQ(Journal::faults(*articles), QStringList());
}

TEST_F(JournalledFiles, SealWhatAnEntryNamesAndKeepTheSealsOfOlderFiles) {
    Clock::set(QDate(2026, 3, 5));
    Journal::veryMany = 2;
    for (const char* reference : {"HIP", "CUP"}) add(reference, 1);
    const auto nextDay = [this] {
        Clock::set(Clock::today().addDays(1));
        articles->update(strarticle, {{strarticle.art_res, Clock::today().toString()}}, {});
    };
    QByteArray sealed("0:"); // no seal before
    int place = 0;
    for (const Record& entry : articles->select(strjournal)) {
        QStringList values{QString::number(++place)};
        for (const Field* field : strjournal.fields().first(11)) values.append(entry.value(*field));
        for (const QString& value : values) sealed += QByteArray::number(value.toUtf8().size()) + ':' + value.toUtf8();
    }
    nextDay();
    EXPECT_EQ(articles->firstValue(QStringLiteral("select sce_som from strsceau")).toLatin1(),
              QCryptographicHash::hash(sealed, QCryptographicHash::Sha256).toHex());
    nextDay();
    EXPECT_EQ(Journal::faults(*articles), QStringList());
    articles->firstValue(QStringLiteral("update strjournal set jou_cles='x' where jou_cles<>''"));
    EXPECT_EQ(Journal::faults(*articles).size(), 1);
}

TEST_F(JournalledFiles, DaysThatGoBackwardsAreSealedToo) {
    workTwoDays();
    Clock::set(QDate(2026, 3, 5));
    add("NECK", 4);
    Clock::set(QDate(2026, 3, 7));
    add("HEAD", 4);
    EXPECT_EQ(articles->count(strsceau), 3);
    EXPECT_EQ(Journal::faults(*articles), QStringList());
    articles->firstValue(QStringLiteral("delete from strsceau where rowid=2"));
    EXPECT_FALSE(Journal::faults(*articles).isEmpty());
}

} // namespace molven

#include "support/faults.h"
#include "support/sales.h"

#include "sales/integration.h"

#include <QProcess>

namespace molven {

using test::lineOfArticle;
using test::lineOfUnit;
using test::newDocument;

namespace {

/// Two workstations with one document open.
class TwoUsers : public test::Sales {
protected:
    TwoUsers() : here(dossier.session, documentKind(QStringLiteral("LIV"))), there(dossier.session, here.kind()) {}

    /// Text of what a call says was changed elsewhere.
    template <class Call>
    QString changeOf(const Call& call) {
        try {
            call();
        } catch (const ChangedElsewhere& change) {
            return change.text;
        }
        return QStringLiteral("(accepté)");
    }

    SalesBook here, there;
};

/// Number of a process that ran and runs no more.
qint64 endedProcess() {
    QProcess process;
    process.start(QStringLiteral("true"), QStringList());
    process.waitForStarted();
    const qint64 number = process.processId();
    process.waitForFinished();
    return number;
}

} // namespace

TEST_F(TwoUsers, NeverOverwriteWhatTheOtherWroteInAHeader) {
    const Record read = newDocument(here);
    Record theirs = read;
    theirs[strlive.fac_pat] = QStringLiteral("DURAND");
    theirs[strlive.fac_btr] = QStringLiteral("BON 7");
    documents::change(there, theirs, read);
    Record ours = read;
    ours[strlive.fac_btr] = QStringLiteral("BON 8");
    EXPECT_EQ(changeOf([&] { documents::change(here, ours, read); }),
              QStringLiteral("Le bon a été modifié par un autre poste : BON 7\n"
                             "Le patient a été modifié par un autre poste : DURAND"));
    EXPECT_EQ(changeOf([&] { documents::remove(here, read, {}); }).left(10), QStringLiteral("Le bon a é"));

    const Record footer = documents::current(here, read);
    theirs = footer;
    theirs[strlive.fac_rem] = Decimal::fromText(QStringLiteral("12.5"));
    documents::changeFooter(there, theirs, footer);
    ours = footer;
    ours[strlive.fac_mes] = QStringLiteral("MERCI");
    EXPECT_EQ(changeOf([&] { documents::changeFooter(here, ours, footer); }),
              QStringLiteral("La remise a été modifiée par un autre poste : 12,5"));
    EXPECT_EQ(documents::current(here, read).value(strlive.fac_rem), QStringLiteral("12.5"));
}

TEST_F(TwoUsers, ActOnTheLineThatTheySaw) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const Record header = newDocument(here);
    document_lines::add(here, header, {lineOfUnit(here, header, units[0])});
    const Record seen = documents::lines(here, header).record();
    document_lines::insert(there, header, lineOfUnit(there, header, units[1]), seen);
    Record priced = seen;
    priced[strlivl.fac_px] = Decimal(1);
    const QString said =
        QStringLiteral("La ligne 001 a été modifiée par un autre poste : HIP %1 ARTICLE HIP").arg(units[1]);
    EXPECT_EQ(changeOf([&] { document_lines::remove(here, header, seen); }), said);
    EXPECT_EQ(changeOf([&] { document_lines::change(here, header, priced, seen); }), said);
    EXPECT_EQ(changeOf([&] {
                  document_lines::insert(here, header, lineOfArticle(here, header, QStringLiteral("FEE")), seen);
              }),
              said);
    EXPECT_EQ(stateOf(units[1]).left(1), QStringLiteral("L"));
    const Record moved = documents::lines(here, header).at(1);
    document_lines::remove(there, header, moved);
    EXPECT_EQ(changeOf([&] { document_lines::remove(here, header, moved); }),
              QStringLiteral("La ligne 002 a été supprimée par un autre poste"));
}

TEST_F(TwoUsers, DoNotDeleteLinesThatTheyNeverSaw) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const Record opened = newDocument(here);
    document_lines::Draft free = lineOfUnit(there, opened, units[0]);
    free.line[strlivl.fac_px] = Decimal(0);
    document_lines::add(there, opened, {free}); // the totals stay as they were
    EXPECT_EQ(changeOf([&] { documents::remove(here, documents::current(here, opened), {}); }),
              QStringLiteral("Les lignes ont été modifiées par un autre poste"));
    EXPECT_EQ(stateOf(units[0]).left(1), QStringLiteral("L"));
}

TEST_F(TwoUsers, ActOnTheDocumentThatTheyOpened) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const Record opened = newDocument(here);
    documents::remove(there, opened, {});
    const auto add = [&] { document_lines::add(here, opened, {lineOfUnit(here, opened, units[0])}); };
    EXPECT_EQ(changeOf(add), QStringLiteral("Le document 000001 a été supprimé ou renuméroté par un autre poste"));
    const Record other = newDocument(there);
    EXPECT_EQ(other[strlive.fac_no], QStringLiteral("000001"));
    const QString said = QStringLiteral("Le document 000001 a été supprimé par un autre poste : ce N° est maintenant "
                                        "un document du 10/03/2026 pour 000001 CLINIQUE DE L'ÉTOILE");
    EXPECT_EQ(changeOf(add), said);
    EXPECT_EQ(changeOf([&] { documents::abandon(here, opened); }), said);
    EXPECT_EQ(stateOf(units[0]).left(1), QStringLiteral("N"));
}

TEST_F(TwoUsers, AreToldThatADocumentWasArchived) {
    const Record opened = newDocument(here);
    there.vente.moveTo(there.historic, strlive, strlive.fac_no == opened[strlive.fac_no]);
    EXPECT_EQ(changeOf([&] { documents::change(here, opened, opened); }),
              QStringLiteral("Le document 000001 a été archivé par un autre poste"));
}

TEST_F(TwoUsers, WriteTheStoredHeaderOnAUnitNotAnOldReading) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const Record read = newDocument(here);
    Record theirs = read;
    theirs[strlive.fac_pat] = QStringLiteral("DURAND");
    documents::change(there, theirs, read);
    document_lines::add(here, read, {lineOfUnit(here, read, units[0])});
    EXPECT_EQ(dossier.unit(units[0])[strproduit.reg_pat], QStringLiteral("DURAND"));
}

TEST_F(TwoUsers, FindTheDocumentsWhoseCreationWasCutShort) {
    const Record cut = newDocument(here), lined = newDocument(here), kept = newDocument(here);
    document_lines::add(here, lined, {lineOfArticle(here, lined, QStringLiteral("FEE"))});
    document_lines::remove(here, lined, documents::lines(here, lined).record());
    documents::keep(here, kept);
    EXPECT_EQ(test::faultsOf(dossier.session), QStringList()) << "kept without lines on purpose";
    const Record elsewhere = newDocument(here);
    const auto leftBy = [&](const Record& document, const QString& program) {
        here.vente.update(strlive, {{strlive.fac_pst, program}}, strlive.fac_no == document[strlive.fac_no]);
    };
    leftBy(elsewhere, QStringLiteral("AUTRE/marie/1"));
    EXPECT_TRUE(documents::unfinished(there).isEmpty()) << "the program that creates it still runs";
    const QString running = cut[strlive.fac_pst];
    leftBy(cut, running.left(running.lastIndexOf(u'/') + 1) + QString::number(endedProcess()));
    const QList<Record> found = documents::unfinished(there);
    ASSERT_EQ(found.size(), 1) << "a colleague may be typing the first line of the others";
    EXPECT_EQ(found.first()[strlive.fac_no], cut[strlive.fac_no]);
    documents::abandon(there, found.first());
    EXPECT_TRUE(documents::unfinished(here).isEmpty());
}

} // namespace molven

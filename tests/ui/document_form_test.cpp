// Two workstations on one document: each is a desk of its own on the same dossier, with real windows.

#include "play/stand_ins.h"
#include "screens/screens.h"
#include "support/dossier.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"

#include <QAbstractButton>

namespace molven {

namespace {

class Workstation {
public:
    Workstation(const test::Dossier& dossier, const QString& mode)
        : Workstation(dossier, std::make_unique<play::ScriptedPrompt>(), mode) {}

    void type(const char* control, const QString& text) {
        auto* edit = dynamic_cast<Edit*>(find<QWidget>(control));
        edit->setText(text);
        edit->leave();
    }
    void press(const char* control) { find<QAbstractButton>(control)->click(); }
    QString text(const char* control) { return find<QLineEdit>(control)->text(); }
    Grid& lines() { return *dynamic_cast<Grid*>(find<QWidget>("DBGrid1")); }
    void show(const QString& number) { type("txtno", number); }
    void answer(bool yes) { said->answers.enqueue(yes); }
    QString heard() { return said->unchecked.isEmpty() ? QString() : said->unchecked.dequeue(); }

private:
    Workstation(const test::Dossier& dossier, std::unique_ptr<play::ScriptedPrompt> prompt, const QString& mode)
        : said(prompt.get()),
          desk(dossier.folder(), std::move(prompt), std::make_unique<play::KeepingPrinter>(QString())) {
        desk.session = dossier.session;
        addScreens(desk);
        form = desk.open(QStringLiteral("T_gestion"), mode);
    }
    template <class Control>
    Control* find(const char* name) {
        return form->findChild<Control*>(QString::fromLatin1(name));
    }

    play::ScriptedPrompt* said;
    Desk desk;
    Form* form;
};

class TwoWorkstations : public testing::Test {
protected:
    TwoWorkstations()
        : units(dossier.receive(QStringLiteral("HIP"), 4)),
          note(dossier.document(QStringLiteral("LIV"), {units[0], units[1]})),
          a(dossier, QStringLiteral("LIV")),
          b(dossier, QStringLiteral("LIV")) {
        a.show(note);
        b.show(note);
    }
    QString stored(const Field& field) {
        SalesBook book(dossier.session, documentKind(QStringLiteral("LIV")));
        return book.vente.find(strlive, strlive.fac_no == note)->value(field);
    }
    QString stateOf(const QString& unit) {
        const Record record = dossier.unit(unit);
        return record[strproduit.tes_vte];
    }

    test::Dossier dossier;
    QStringList units;
    QString note;
    Workstation a, b;
};

} // namespace

TEST_F(TwoWorkstations, ChangeTheHeaderWithoutLosingEachOthersWords) {
    a.press("CmdModifier");
    b.press("CmdModifier");
    EXPECT_EQ(a.heard(), b.heard());
    b.type("txtpat", QStringLiteral("MARTIN"));
    b.press("cmdvalide");
    a.type("txtbtr", QStringLiteral("BON 7"));
    a.answer(true);
    a.press("cmdvalide");
    EXPECT_TRUE(a.heard().startsWith(QStringLiteral("Le patient a été modifié par un autre poste : MARTIN")));
    EXPECT_EQ(a.text("txtpat") + u'/' + a.text("txtbtr"), QStringLiteral("MARTIN/BON 7"));
    a.press("cmdvalide");
    EXPECT_EQ(a.heard(), QString());
    EXPECT_EQ(stored(strlive.fac_pat) + u'/' + stored(strlive.fac_btr), QStringLiteral("MARTIN/BON 7"));
}

TEST_F(TwoWorkstations, ChangeTheFooterWithoutLosingEachOthersAmounts) {
    a.press("Cmdvisupied");
    b.press("Cmdvisupied");
    b.type("txtrem", QStringLiteral("10"));
    b.press("Cmdvalpied");
    a.type("txtacpt", QStringLiteral("5"));
    a.answer(true);
    a.press("Cmdvalpied");
    EXPECT_FALSE(a.heard().isEmpty());
    EXPECT_EQ(a.text("txtrem") + u'/' + a.text("txtacpt"), QStringLiteral("10,00/5,00"));
    a.press("Cmdvalpied");
    EXPECT_EQ(stored(strlive.fac_rem) + u'/' + stored(strlive.fac_acpt), QStringLiteral("10/5"));
}

TEST_F(TwoWorkstations, DeleteTheLineTheySeeAndNoOther) {
    a.lines().selectRow(0);
    b.lines().selectRow(0);
    b.press("Cmdinsertlig");
    b.type("txtref", QStringLiteral("HIP"));
    b.type("txtimm", units[2]);
    b.press("cmdValidlig");
    a.answer(true); // the deletion
    a.answer(true); // reading again
    a.press("Cmdsuplig");
    EXPECT_EQ(stateOf(units[0]) + stateOf(units[1]) + stateOf(units[2]), QStringLiteral("LLL"));
    EXPECT_EQ(a.lines().rows().rowCount(), 3);
}

TEST_F(TwoWorkstations, AddNothingToAnotherDocumentThatBearsTheNumberNow) {
    a.press("Cmdajoutlig");
    a.type("txtref", QStringLiteral("HIP"));
    a.type("txtimm", units[2]);
    b.answer(true);
    b.press("Cmdsup");
    b.press("CmdAjout");
    b.type("txtclt", QStringLiteral("2"));
    b.press("cmdvalide");
    EXPECT_EQ(b.text("txtno"), note);
    a.answer(true);
    a.press("cmdValidlig");
    EXPECT_EQ(stateOf(units[2]), QStringLiteral("N"));
    EXPECT_EQ(a.lines().rows().rowCount(), 0);
}

} // namespace molven

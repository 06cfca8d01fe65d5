#include "screens/accounting/commission_form.h"

#include "data/dates.h"
#include "data/format.h"
#include "reference/code_kinds.h"
#include "screens/accounting/commission_paper.h"
#include "screens/accounting/figures.h"
#include "ui/edit.h"
#include "ui/progress.h"

namespace molven {

namespace {

const QString First = QStringLiteral("txtrepdeb"), Last = QStringLiteral("txtrepfin");

CriterionBox representative(const QString& name, const QString& caption) {
    return {.name = name, .caption = caption, .characters = 3, .code = &codes::Representative, .isBound = true};
}

QList<GridColumn> commissionColumns() {
    const auto& c = strcommission;
    return {{&c.com_rep, QStringLiteral("Code"), 60},
            {&c.com_nom, QStringLiteral("Représentant"), 260},
            {&c.com_lig, QStringLiteral("Lignes"), 70},
            {&c.com_ca, QStringLiteral("C.A."), 110, Amount},
            {&c.com_exo, QStringLiteral("Comm. sans TVA"), 110, Amount},
            {&c.com_tv1, QStringLiteral("Comm. 5,50 %"), 110, Amount},
            {&c.com_tv2, QStringLiteral("Comm. 19,60 %"), 110, Amount},
            {&c.com_tva, QStringLiteral("TVA"), 90, Amount},
            {&c.com_net, QStringLiteral("Net à payer"), 110, Amount}};
}

} // namespace

CommissionForm::CommissionForm(Desk& desk)
    : SelectionForm(desk, QStringLiteral("T_comrep")), files_(sales_statistics::openFiles(workspace_, session())) {
    using Kind = CriterionBox::Kind;
    build({.title = QStringLiteral("Commissions représentants"),
           .criteria = {{From, QStringLiteral("Factures du :"), 10, Kind::Day},
                        {To, QStringLiteral("au :"), 10, Kind::Day},
                        representative(First, QStringLiteral("Représentants du :")),
                        representative(Last, QStringLiteral("au :"))},
           .list = commissionColumns(),
           .searches = {{QStringLiteral("cmdsuit"), QStringLiteral("&Suite"), [this] { begin(); }},
                        {QStringLiteral("cmdvalide"), QStringLiteral("&Valider la période"), [this] { regenerate(); }}},
           .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }}},
           .files = {{DataFile::Molven, files_.molven}},
           .count = QStringLiteral("Label1"),
           .size = {1120, 560}});
}

void CommissionForm::begin() {
    if (!prompt().ask(QStringLiteral("Voulez-vous regénérer le fichiers des statistiques ? "))) return print();
    criteria().edit(From)->setFocus();
}

void CommissionForm::regenerate() {
    const Period period = typedPeriod(criteria().value(From), criteria().value(To));
    clearSelection();
    patiently(*this, workspace_, QStringLiteral("Lecture des factures"),
              [&] { sales_statistics::regenerate(files_, statd, period); });
    show();
}

QList<commissions::Statement> CommissionForm::show() {
    const auto statements =
        commissions::statements(files_.tri, files_.molven, criteria().value(First), criteria().value(Last));
    Decimal due;
    for (const commissions::Statement& one : statements) due += one.due();
    showRows(commissions::rows(statements), QStringLiteral("%1 de facture%2, net à payer : %3")
                                                .arg(counted(files_.tri.count(statd), QStringLiteral("ligne")),
                                                     period().words(), format(due, Amount)));
    return statements;
}

Period CommissionForm::period() const {
    Database tri = files_.tri;
    const Period covered = commissions::covered(tri).value_or(Period());
    const QDate from = dateFromText(criteria().value(From)), to = dateFromText(criteria().value(To));
    const bool isWithin = from.isValid() && to.isValid() && sortKey(from) <= covered.from && sortKey(to) >= covered.to;
    return isWithin ? Period{sortKey(from), sortKey(to)} : covered;
}

void CommissionForm::print() {
    const auto statements = show();
    if (statements.isEmpty()) throw Refusal(QStringLiteral("Edition vide"), First);
    desk().print(printedCommissions(statements, period()));
}

} // namespace molven

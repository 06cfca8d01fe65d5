#include "screens/stock/movement_listing_form.h"

#include "data/clock.h"
#include "data/format.h"
#include "reference/articles.h"
#include "ui/criteria_panel.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const QString ListedQuantity = QStringLiteral("###0.00"), ListedPrice = QStringLiteral("###0.000");

/// Kinds in the order of the list, behind "Tous".
const QStringList Kinds{QString(), movement::Inventory, movement::Entry, movement::Exit};

QString words(const MovementTotals& totals, const QString& entries, const QString& balance) {
    const auto amount = [](const Decimal& quantity) { return format(quantity, ListedQuantity); };
    return QStringLiteral("Inventaire : %1   %2 %3   Sorties : %4   %5 %6")
        .arg(amount(totals.inventory), entries, amount(totals.entries), amount(totals.exits), balance,
             amount(totals.balance()));
}

} // namespace

MovementListingForm::MovementListingForm(Desk& desk)
    : Form(desk, QStringLiteral("T_nsvedt")), files_(openMovementFiles(workspace_, session())) {
    const auto& l = strlistemvt;
    criteria_ = new CriteriaPanel(*this,
                                  {{QStringLiteral("txtref"), QStringLiteral("&Référence (* : toutes) :")},
                                   {QStringLiteral("Cmbeta"),
                                    QStringLiteral("&Mouvements :"),
                                    13,
                                    CriterionBox::Kind::Text,
                                    {QStringLiteral("Tous"), QStringLiteral("Inventaires"), QStringLiteral("Entrées"),
                                     QStringLiteral("Sorties")}},
                                   {QStringLiteral("Mskdatdeb"), QStringLiteral("&Du :"), 10, CriterionBox::Kind::Day},
                                   {QStringLiteral("Mskdatfin"), QStringLiteral("a&u :"), 10, CriterionBox::Kind::Day}},
                                  4);
    onPick(criteria_->edit(QStringLiteral("txtref")), [this] {
        pick(pick_lists::articles(
            files_.molven,
            [this](const Record& article) {
                criteria_->edit(QStringLiteral("txtref"))->put(article[strarticle.art_ref]);
            },
            strarticle.art_aig == follow_up::ByMovements));
    });
    grid_ = new Grid(QStringLiteral("DBGrid1"),
                     {{&l.ref_stk, QStringLiteral("Référence"), 120},
                      {&l.art_li1, QStringLiteral("Désignation"), 260},
                      {&l.dat_stk, QStringLiteral("Date"), 90},
                      {&l.eta_stk, QStringLiteral("Etat"), 50},
                      {&l.qte_stk, QStringLiteral("Quantité"), 90, ListedQuantity},
                      {&l.pri_stk, QStringLiteral("P.Achat"), 90, ListedPrice},
                      {&l.com_stk, QStringLiteral("Commentaires"), 280}},
                     this);
    totals_ = new QLabel(this);
    totals_->setObjectName(QStringLiteral("lbltotaux"));
    style::emphasise(*totals_);
    auto* search = button(QStringLiteral("cmdval"), QStringLiteral("&Valider"), [this] { select(); });
    setDefaultButton(search);
    auto* row = new QHBoxLayout;
    row->addWidget(totals_, 1);
    row->addWidget(search);
    row->addWidget(button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }));
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteria_);
    layout->addWidget(grid_, 1);
    layout->addLayout(row);
    resize(1100, 640);
    applyTitle(QStringLiteral("Edition des mouvements de stock"));
    criteria_->edit(QStringLiteral("txtref"))->setFocus();
}

MovementQuery MovementListingForm::query() const {
    return {criteria_->value(QStringLiteral("txtref")), criteria_->value(QStringLiteral("Mskdatdeb")),
            criteria_->value(QStringLiteral("Mskdatfin")), Kinds.value(criteria_->choice(QStringLiteral("Cmbeta")))};
}

void MovementListingForm::select() {
    found_.clear();
    grid_->rows().setRecords({});
    totals_->clear();
    asked_ = query();
    found_ = movement_listing::find(files_, asked_);
    grid_->rows().setRecords(found_);
    MovementTotals totals;
    for (const Record& movement : found_) totals.add(movement);
    totals_->setText(QStringLiteral("TOTAUX   ") +
                     words(totals, QStringLiteral("Entrées :"), QStringLiteral("Soit sélection :")));
    if (found_.isEmpty()) notify(QStringLiteral("aucun mouvement sur cette référence"));
}

void MovementListingForm::print() {
    select();
    if (found_.isEmpty()) throw Refusal(QStringLiteral("Edition vide"), QStringLiteral("txtref"));
    desk().print(report());
}

Report MovementListingForm::report() const {
    const auto& l = strlistemvt;
    Report report(QStringLiteral("LES MOUVEMENTS DE STOCK"), {{QStringLiteral("REF.")},
                                                              {QStringLiteral("DESIGNATION")},
                                                              {QStringLiteral("DATE")},
                                                              {QStringLiteral("MVT")},
                                                              {QStringLiteral("QTE"), true},
                                                              {QStringLiteral("P.Achat"), true},
                                                              {QStringLiteral("Commentaires")}});
    report.say(movement_listing::words(asked_) + QStringLiteral("   à ") +
               Clock::now().toString(QStringLiteral("HH:mm")));
    const QString printedEntries = QStringLiteral("Entrees :");
    MovementTotals all, ofReference;
    for (qsizetype i = 0; i < found_.size(); ++i) {
        const Record& movement = found_[i];
        all.add(movement);
        ofReference.add(movement);
        report.row({movement[l.ref_stk], movement[l.art_li1], movement[l.dat_stk], movement[l.eta_stk],
                    format(movement[l.qte_stk], ListedQuantity), format(movement[l.pri_stk], ListedPrice),
                    movement[l.com_stk]});
        const bool endsReference = i + 1 == found_.size() || found_[i + 1][l.ref_stk] != movement[l.ref_stk];
        if (!endsReference) continue;
        report.total(movement[l.ref_stk] + QStringLiteral("   ") +
                     words(ofReference, printedEntries, QStringLiteral("Soit qté/sélection :")));
        ofReference = {};
    }
    report.total(QStringLiteral("TOTAUX   ") + words(all, printedEntries, QStringLiteral("Soit sélection :")));
    report.count();
    return report;
}

} // namespace molven

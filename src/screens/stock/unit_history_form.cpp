#include "screens/stock/unit_history_form.h"

#include "sales/unit_history.h"
#include "screens/shell/trail_form.h"
#include "stock/units.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

struct Row {
    QString caption;
    QList<Record> UnitTrail::*records;
    bool isUnit;
};

const QList<Row>& rows() {
    static const QList<Row> all{{QStringLiteral("Produit"), &UnitTrail::unit, true},
                                {QStringLiteral("Bons de transfert"), &UnitTrail::transfers, false},
                                {QStringLiteral("Bons de livraison"), &UnitTrail::deliveries, false},
                                {QStringLiteral("Factures et avoirs"), &UnitTrail::invoices, false},
                                {QStringLiteral("Bons de consignation"), &UnitTrail::consignments, false}};
    return all;
}

QList<GridColumn> lineColumns(const DocumentLines& lines) {
    return {{&lines.fac_no, QStringLiteral("N°"), 65},
            {&lines.fac_aa, QStringLiteral("Année"), 55},
            {&lines.fac_lg, QStringLiteral("Ligne"), 50},
            {&lines.fac_clt, QStringLiteral("Client"), 65},
            {&lines.fac_li1, QStringLiteral("Désignation"), 190},
            {&lines.fac_dep, QStringLiteral("Dépôt"), 50},
            {&lines.fac_nbl, QStringLiteral("BL"), 65},
            {&lines.fac_pv, QStringLiteral("Prix net"), 70, QStringLiteral("#####0.00")}};
}

/// Numbers of the grids: 1 to 4 and 5 to 8 as the enquiry has always had them, the consignment notes behind.
int gridNumber(int row, int column) { return row < 4 ? column * 4 + row + 1 : 9 + column; }

const DocumentLines& linesOf(int row) {
    static const DocumentLines* tables[] = {nullptr, &strbtrl, &strlivl, &strfacl, &strcsgl};
    return *tables[row];
}

} // namespace

UnitHistoryForm::UnitHistoryForm(Desk& desk, const QString& name, unit_history::Source source)
    : Form(desk, name),
      source_(source),
      number_(new Edit(this)),
      heading_(new QLabel(this)),
      situation_(new QLabel(this)) {
    number_->setObjectName(QStringLiteral("txtimm"));
    number_->setMaxLength(Immatriculation::LongestScan);
    number_->setFixedWidth(style::boxWidth(8));
    heading_->setObjectName(QStringLiteral("Label1"));
    situation_->setObjectName(QStringLiteral("Lbltrac1"));
    for (QLabel* label : {heading_, situation_}) label->setTextFormat(Qt::PlainText);
    style::makeHeading(*heading_);
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { find(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    setDefaultButton(search);
    auto* top = new QHBoxLayout;
    auto* caption = new QLabel(QStringLiteral("&Immatriculation :"), this);
    caption->setBuddy(number_);
    top->addWidget(caption);
    top->addWidget(number_);
    top->addWidget(search);
    top->addSpacing(style::WideGap);
    top->addWidget(heading_, 1);
    top->addWidget(trailButton(*this, [this] {
        find();
        return TrailSubject{TrailSubject::Kind::Unit, number_->text()};
    }));
    top->addWidget(quit);
    auto* layout = new QGridLayout(this);
    layout->addLayout(top, 0, 0, 1, 2);
    layout->addWidget(situation_, 1, 0, 1, 2);
    for (int row = 0; row < rows().size(); ++row)
        for (int column = 0; column < 2; ++column)
            addShelf(layout, row, column, gridNumber(row, column),
                     rows()[row].caption +
                         (column == 0 ? QStringLiteral(" - en cours") : QStringLiteral(" - archive")));
    resize(1260, 740);
    applyTitle(source == unit_history::Source::Virtual ? QStringLiteral("Tracabilité d'une immatriculation virtuelle")
                                                       : QStringLiteral("Tracabilité d'une immatriculation"));
    number_->setFocus();
}

void UnitHistoryForm::addShelf(QGridLayout* layout, int row, int column, int number, const QString& caption) {
    const bool isUnit = rows()[row].isUnit;
    auto* grid = new Grid(QStringLiteral("DBGrid%1").arg(number),
                          isUnit ? pick_lists::unitColumns() : lineColumns(linesOf(row)), this);
    grid->setAccessibleName(caption);
    auto* title = new QLabel(caption, this);
    auto* count = new QLabel(QStringLiteral("0"), this);
    count->setObjectName(QStringLiteral("Lblnb%1").arg(number));
    auto* head = new QHBoxLayout;
    head->addWidget(title);
    head->addStretch();
    head->addWidget(count);
    const int place = 2 + row * 2;
    layout->addLayout(head, place, column);
    layout->addWidget(grid, place + 1, column);
    layout->setRowStretch(place + 1, isUnit ? 0 : 1);
    if (isUnit) grid->setFixedHeight(72);
    shelves_.append({grid, count});
}

void UnitHistoryForm::find() {
    heading_->clear();
    situation_->clear();
    for (const Shelf& shelf : shelves_) {
        shelf.grid->rows().setRecords({});
        shelf.count->setText(QStringLiteral("0"));
    }
    show(unit_history::find(session(), number_->text(), source_));
}

void UnitHistoryForm::show(const UnitHistory& history) {
    number_->put(history.immatriculation);
    heading_->setText(QStringLiteral("Suivi immatriculation : ") + history.immatriculation + QStringLiteral("  ") +
                      history.label);
    const UnitTrail& kept = history.current.unit.isEmpty() ? history.archived : history.current;
    const units::Situation now = units::situation(kept.unit.first(), session().rules());
    situation_->setText(now.document.isEmpty() ? now.place : now.place + QStringLiteral(" - ") + now.document);
    for (qsizetype i = 0; i < shelves_.size(); ++i) {
        const UnitTrail& trail = i % 2 == 0 ? history.current : history.archived;
        const QList<Record>& records = trail.*rows()[i / 2].records;
        shelves_[i].grid->rows().setRecords(records);
        shelves_[i].count->setText(QString::number(records.size()));
    }
}

} // namespace molven

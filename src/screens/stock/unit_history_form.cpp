#include "screens/stock/unit_history_form.h"

#include "sales/unit_steps.h"
#include "screens/sales/document_form.h"
#include "screens/shell/trail_form.h"
#include "stock/units.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QHBoxLayout>
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

QList<GridColumn> roadColumns() {
    return {{&strsuivi.sui_dat, QStringLiteral("Date"), 85},
            {&strsuivi.sui_lib, QStringLiteral("Etape"), 150},
            {&strsuivi.sui_no, QStringLiteral("N°"), 90},
            {&strsuivi.sui_qui, QStringLiteral("Chez"), 380},
            {&strsuivi.sui_arc, QStringLiteral("Fichier"), 70}};
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
    heading_->setObjectName(QStringLiteral("Label1"));
    situation_->setObjectName(QStringLiteral("Lbltrac1"));
    for (QLabel* label : {heading_, situation_}) label->setTextFormat(Qt::PlainText);
    style::makeHeading(*heading_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(searchRow());
    layout->addWidget(situation_);
    road_ = buildRoad();
    layout->addWidget(road_);
    for (int row = 0; row < rows().size(); ++row) {
        rows_.append(buildRow(row));
        layout->addLayout(rows_.last().layout);
    }
    resize(1264, 760);
    applyTitle(source == unit_history::Source::Virtual ? QStringLiteral("Tracabilité d'une immatriculation virtuelle")
                                                       : QStringLiteral("Tracabilité d'une immatriculation"));
    clear();
    number_->setFocus();
}

QLayout* UnitHistoryForm::searchRow() {
    number_->setObjectName(QStringLiteral("txtimm"));
    number_->setMaxLength(Immatriculation::LongestScan);
    number_->setFixedWidth(style::boxWidth(8));
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { find(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    setDefaultButton(search);
    auto* caption = new QLabel(QStringLiteral("&Immatriculation :"), this);
    caption->setBuddy(number_);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(number_);
    row->addWidget(search);
    row->addSpacing(style::WideGap);
    row->addWidget(heading_, 1);
    row->addWidget(trailButton(*this, [this] {
        find();
        return TrailSubject{TrailSubject::Kind::Unit, number_->text()};
    }));
    row->addWidget(quit);
    return row;
}

Grid* UnitHistoryForm::buildRoad() {
    auto* road = new Grid(QStringLiteral("DBGridsuivi"), roadColumns(), this);
    road->setAccessibleName(QStringLiteral("Suivi dans le temps"));
    road->chosen = [this](const Record& step) { openDocument(step); };
    return road;
}

UnitHistoryForm::ShelfRow UnitHistoryForm::buildRow(int row) {
    const Row& family = rows()[row];
    auto* layout = new QHBoxLayout;
    layout->setSpacing(style::WideGap);
    ShelfRow made{layout, {}};
    for (int column = 0; column < 2; ++column) {
        const QString caption =
            family.caption + (column == 0 ? QStringLiteral(" - en cours") : QStringLiteral(" - archive"));
        const QString number = QString::number(gridNumber(row, column));
        auto* grid = new Grid(QStringLiteral("DBGrid") + number,
                              family.isUnit ? pick_lists::unitColumns() : lineColumns(linesOf(row)), this);
        grid->setAccessibleName(caption);
        if (family.isUnit) grid->setFixedHeight(72);
        auto* title = new QLabel(caption + QStringLiteral(" :"), this);
        auto* count = new QLabel(this);
        count->setObjectName(QStringLiteral("Lblnb") + number);
        for (QLabel* label : {title, count}) label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        auto* head = new QHBoxLayout;
        head->addWidget(title);
        head->addWidget(count);
        head->addStretch();
        auto* shelf = new QVBoxLayout;
        shelf->addLayout(head);
        shelf->addWidget(grid);
        layout->addLayout(shelf);
        made.shelves[column] = {grid, count, shelf};
    }
    return made;
}

void UnitHistoryForm::find() {
    clear();
    show(unit_history::find(session(), number_->text(), source_));
}

void UnitHistoryForm::bringUp(const QString& immatriculation) {
    number_->put(immatriculation);
    find();
}

void UnitHistoryForm::clear() {
    heading_->clear();
    situation_->clear();
    road_->rows().setRecords({});
    for (ShelfRow& row : rows_) fill(row, {}, {});
}

void UnitHistoryForm::show(const UnitHistory& history) {
    number_->put(history.immatriculation);
    heading_->setText(QStringLiteral("Suivi immatriculation : ") + history.immatriculation + QStringLiteral("  ") +
                      history.label);
    const UnitTrail& kept = history.current.unit.isEmpty() ? history.archived : history.current;
    const units::Situation now = units::situation(kept.unit.first(), session().rules());
    situation_->setText(now.document.isEmpty() ? now.place : now.place + QStringLiteral(" - ") + now.document);
    road_->rows().setRecords(history.steps);
    for (qsizetype i = 0; i < rows_.size(); ++i) {
        const auto records = rows()[i].records;
        fill(rows_[i], history.current.*records, history.archived.*records);
    }
}

void UnitHistoryForm::fill(ShelfRow& row, const QList<Record>& current, const QList<Record>& archived) {
    const QList<Record> records[] = {current, archived};
    for (int column = 0; column < 2; ++column) {
        const auto& [grid, count, layout] = row.shelves[column];
        const bool isEmpty = records[column].isEmpty();
        grid->rows().setRecords(records[column]);
        grid->setVisible(!isEmpty);
        count->setText(QString::number(records[column].size()));
        row.layout->setStretchFactor(layout, isEmpty ? 0 : 1);
        row.layout->setAlignment(layout, isEmpty ? Qt::AlignTop : Qt::Alignment());
    }
}

void UnitHistoryForm::openDocument(const Record& step) {
    const QString mode = step[strsuivi.sui_mode];
    if (mode.isEmpty()) return;
    if (const QString whose = step[strsuivi.sui_arc]; !whose.isEmpty())
        throw Refusal(QStringLiteral("Ce document n'est pas parmi vos documents en cours : ") + whose);
    if (auto* form = dynamic_cast<DocumentForm*>(desk().open(layoutOf(documentKind(mode)).screen, mode)))
        form->bringUp(step[strsuivi.sui_no]);
}

} // namespace molven

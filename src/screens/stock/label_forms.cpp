#include "screens/stock/label_forms.h"

#include "data/format.h"
#include "printing/label_page.h"
#include "stock/units.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

LabelSelectionForm::LabelSelectionForm(Desk& desk)
    : Form(desk, QStringLiteral("T_etiedt")),
      molven_(workspace_.open(session().molven())),
      tri_(workspace_.open(session().tri())),
      count_(new QLabel(this)),
      grid_(new Grid(QStringLiteral("DBGrid1"), pick_lists::unitColumns(), this)) {
    count_->setObjectName(QStringLiteral("Label1"));
    const Range stocked =
        range(QStringLiteral("txtnumdeb"), QStringLiteral("txtnumfin"), QStringLiteral("Cmdok2"), state::InStock);
    const Range sold =
        range(QStringLiteral("txtfacdeb"), QStringLiteral("txtfacfin"), QStringLiteral("Cmdok3"), state::Sold);
    auto* labels = button(QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { makeLabels(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* layout = new QGridLayout(this);
    const std::pair<QString, Range> rows[] = {{QStringLiteral("Produits en stock, &documents du N° :"), stocked},
                                              {QStringLiteral("Produits vendus, &factures du N° :"), sold}};
    int row = 0;
    for (const auto& [caption, boxes] : rows) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(boxes.first);
        layout->addWidget(label, row, 0);
        layout->addWidget(boxes.first, row, 1);
        layout->addWidget(new QLabel(QStringLiteral("au N° :"), this), row, 2);
        layout->addWidget(boxes.last, row, 3);
        layout->addWidget(boxes.select, row++, 4);
    }
    layout->setColumnStretch(5, 1);
    layout->addWidget(grid_, row++, 0, 1, 7);
    layout->addWidget(count_, row, 0, 1, 4);
    layout->addWidget(labels, row, 4);
    layout->addWidget(quit, row, 6);
    resize(900, 520);
    applyTitle(QStringLiteral("Génération étiquettes"));
    stocked.first->setFocus();
}

LabelSelectionForm::Range LabelSelectionForm::range(const QString& first, const QString& last, const QString& select,
                                                    const QString& unitState) {
    const auto box = [this](const QString& name) {
        auto* edit = new Edit(this);
        edit->setObjectName(name);
        edit->setMaxLength(6);
        edit->setFixedWidth(style::boxWidth(6));
        onLeft(edit, [edit] { edit->put(padded(edit->text(), 6)); });
        return edit;
    };
    Range made{box(first), box(last), nullptr};
    made.select =
        button(select, unitState == state::InStock ? QStringLiteral("&Rechercher") : QStringLiteral("R&echercher"),
               [this, made, unitState] { this->select(made, unitState); });
    return made;
}

void LabelSelectionForm::select(const Range& range, const QString& unitState) {
    chosen_.reset();
    count_->clear();
    grid_->rows().setRecords({});
    const labels::NumberRange numbers(range.first->text(), range.last->text(), range.first->objectName());
    const Recordset units = labels::select(molven_, numbers, unitState);
    chosen_ = numbers;
    chosenState_ = unitState;
    count_->setText(QStringLiteral("Il y a %1 Produits").arg(units.count()));
    QList<Record> rows;
    for (const Record& unit : units) rows.append(unit);
    grid_->rows().setRecords(rows);
}

void LabelSelectionForm::makeLabels() {
    if (!chosen_) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("txtnumdeb"));
    labels::fill(molven_, tri_, session().rules(), labels::select(molven_, *chosen_, chosenState_));
    desk().open(QStringLiteral("T_etibarre"));
}

LabelPrintForm::LabelPrintForm(Desk& desk)
    : Form(desk, QStringLiteral("T_etibarre")),
      tri_(workspace_.open(session().tri())),
      grid_(new Grid(QStringLiteral("DBGrid1"),
                     {{&etiq.e_imm, QStringLiteral("Immatriculation"), 120},
                      {&etiq.e_ref, QStringLiteral("Référence"), 120},
                      {&etiq.e_li1, QStringLiteral("Désignation"), 300},
                      {&etiq.e_tip, QStringLiteral("TIPS"), 90},
                      {&etiq.e_lpp, QStringLiteral("LPP"), 90},
                      {&etiq.e_euro, QStringLiteral("Prix TTC"), 90}},
                     this)) {
    grid_->rows().setQuery(
        [this](const Criterion& filter, const Order& order) { return tri_.select(etiq, filter, order); });
    auto* printButton =
        button(QStringLiteral("Cmdetiq"), QStringLiteral("&Imprimer les étiquettes"), [this] { print(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* layout = new QGridLayout(this);
    layout->addWidget(grid_, 0, 0, 1, 3);
    paper_ = new QComboBox(this);
    paper_->setObjectName(QStringLiteral("Cmbpapier"));
    paper_->addItems({QStringLiteral("Une colonne"), QStringLiteral("Planche A4, 2 colonnes")});
    layout->addWidget(printButton, 1, 0);
    layout->addWidget(paper_, 1, 1, Qt::AlignLeft);
    layout->addWidget(quit, 1, 2);
    layout->setColumnStretch(1, 1);
    setDefaultButton(printButton);
    resize(840, 480);
    applyTitle(QStringLiteral("Édition étiquettes"));
    printButton->setFocus();
}

/// Other units' labels wait by now.
void LabelPrintForm::shownAgain() {
    grid_->rows().setFilter({});
    grid_->rows().refresh();
}

void LabelPrintForm::print() {
    const RecordModel& rows = grid_->rows();
    if (rows.rowCount() == 0) throw Refusal(QStringLiteral("Aucune étiquette à imprimer"));
    QList<ProductLabel> labels;
    rows.forEach([&labels](const Record& row) {
        labels.append({row[etiq.e_imm], row[etiq.e_ref], row[etiq.e_tip], row[etiq.e_lpp], row[etiq.e_llpp],
                       row[etiq.e_ori], row[etiq.e_res], Decimal::parse(row[etiq.e_euro])});
        for (const auto& [code, label] :
             {std::pair(&etiq.e_lpp2, &etiq.e_llpp2), std::pair(&etiq.e_lpp3, &etiq.e_llpp3)})
            if (const QString further = row[*code]; !further.isEmpty())
                labels.last().furtherLpp.append((further + u' ' + row[*label]).trimmed());
    });
    PrintJob job(QStringLiteral("Étiquettes"));
    label_page::print(job, labels, desk().barcodeFamily(),
                      paper_->currentIndex() == 1 ? label_page::Paper::Sheet : label_page::Paper::Column);
    desk().print(job);
}

} // namespace molven

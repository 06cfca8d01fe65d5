#include "screens/shell/trail_form.h"

#include "ui/grid.h"
#include "ui/printed_list.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<GridColumn> trailColumns() {
    const auto& h = strhisto;
    return {{&h.his_dat, QStringLiteral("Date"), 85},         {&h.his_heu, QStringLiteral("Heure"), 70},
            {&h.his_uti, QStringLiteral("Utilisateur"), 110}, {&h.his_pos, QStringLiteral("Poste"), 110},
            {&h.his_act, QStringLiteral("Opération"), 150},   {&h.his_obj, QStringLiteral("Fiche"), 220},
            {&h.his_txt, QStringLiteral("Changement"), 380}};
}

QString wordOf(const TrailSubject& subject) {
    return QString::number(static_cast<int>(subject.kind)) + u' ' + subject.key;
}

TrailSubject subjectOf(const QString& word) {
    return {static_cast<TrailSubject::Kind>(word.section(u' ', 0, 0).toInt()), word.section(u' ', 1)};
}

} // namespace

TrailForm::TrailForm(Desk& desk)
    : Form(desk, QStringLiteral("T_histo")), grid_(new Grid(QStringLiteral("DBGrid1"), trailColumns(), this)) {
    const TrailSubject subject = subjectOf(mode());
    const QList<Record> rows = record_trail::find(session(), subject);
    grid_->rows().setRecords(rows);
    auto* count = new QLabel(QStringLiteral("Nbre changements : %1").arg(rows.size()), this);
    count->setObjectName(QStringLiteral("Label1"));
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* exportButton = button(QStringLiteral("Cmdexp"), QStringLiteral("&Exporter"), [this] { grid_->exportCsv(); });
    auto* quit = button(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    row->addWidget(count, 1);
    for (QPushButton* made : {printButton, exportButton, quit}) row->addWidget(made);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addLayout(row);
    resize(1180, 560);
    applyTitle(QStringLiteral("Historique : ") + record_trail::subjectTitle(subject));
    if (!rows.isEmpty()) grid_->selectRow(static_cast<int>(rows.size()) - 1);
    grid_->setFocus();
}

void TrailForm::print() { desk().print(printedList(windowTitle(), grid_->rows())); }

QPushButton* trailButton(Form& form, const std::function<TrailSubject()>& subject) {
    QPushButton* made = form.button(QStringLiteral("Cmdhisto"), QStringLiteral("Historique"), [&form, subject] {
        form.desk().open(QStringLiteral("T_histo"), wordOf(subject()));
    });
    made->setToolTip(QStringLiteral("Ctrl+H"));
    return made;
}

} // namespace molven

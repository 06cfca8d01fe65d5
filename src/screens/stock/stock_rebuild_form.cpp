#include "screens/stock/stock_rebuild_form.h"

#include "data/format.h"
#include "sales/stock_rebuild.h"
#include "stock/inventory_counts.h"
#include "ui/edit.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const QString Running = QStringLiteral("TRAITEMENT EN COURS"), Finished = QStringLiteral("TRAITEMENT TERMINE"),
              Abandoned = QStringLiteral("Opération abandonnée");

QLabel* stepLabel(QWidget* parent) {
    auto* step = new QLabel(parent);
    step->setObjectName(QStringLiteral("Label1"));
    style::emphasise(*step);
    return step;
}

QLabel* explanation(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

QString changed(qint64 count, qint64 articles) {
    return QStringLiteral(" : %1, %2 de stock changé").arg(counted(articles, QStringLiteral("article"))).arg(count);
}

} // namespace

StockRebuildForm::StockRebuildForm(Desk& desk) : Form(desk, QStringLiteral("T_procalns")) {
    auto* dates = new QHBoxLayout;
    first_ = addDate(*dates, QStringLiteral("Mskdatdeb"), QStringLiteral("Date &début :"));
    last_ = addDate(*dates, QStringLiteral("Mskdatfin"), QStringLiteral("Date &fin :"));
    dates->addStretch();
    step_ = stepLabel(this);
    auto* row = new QHBoxLayout;
    row->addWidget(button(QStringLiteral("cmdcalcul"), QStringLiteral("&Recalcul du stock"), [this] { rebuild(); }));
    row->addWidget(button(QStringLiteral("cmdsaisie"), QStringLiteral("&Saisie des comptages"),
                          [this] { this->desk().open(QStringLiteral("T_comptage")); }));
    row->addWidget(
        button(QStringLiteral("cmdval"), QStringLiteral("&Générer l'inventaire"), [this] { writeInventory(); }));
    row->addStretch();
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    style::letBreathe(*layout);
    layout->addLayout(dates);
    layout->addWidget(explanation(
        QStringLiteral("Recalcul : le stock des articles non suivis devient inventaires + entrées - sorties de la "
                       "période, moins les quantités facturées ou livrées dans la période.\nInventaire : les quantités "
                       "comptées deviennent des mouvements d'inventaire à la date de fin."),
        this));
    layout->addStretch();
    layout->addWidget(step_);
    layout->addLayout(row);
    resize(760, 300);
    applyTitle(QStringLiteral("Recalcul du stock des produits non suivis"));
    first_->setFocus();
}

DateBox* StockRebuildForm::addDate(QLayout& row, const QString& name, const QString& caption) {
    auto* date = new DateBox(this);
    date->setObjectName(name);
    auto* label = new QLabel(caption, this);
    label->setBuddy(date);
    row.addWidget(label);
    row.addWidget(date);
    return date;
}

void StockRebuildForm::rebuild() {
    step_->setText(Running);
    step_->repaint();
    const auto done = [this] {
        try {
            return stock_rebuild::run(
                session(), first_->value(), last_->value(), [this](const QString& text) { notify(text); },
                progress(*this, QStringLiteral("Recalcul du stock")));
        } catch (...) {
            step_->clear();
            throw;
        }
    }();
    if (!done) {
        step_->setText(Abandoned);
        return;
    }
    step_->setText(Finished + changed(done->changed, done->articles));
    notify(QStringLiteral("Recalcul terminé"));
    if (!done->absentFolders.isEmpty())
        notify(QStringLiteral("Dossiers absents, non comptés : ") + done->absentFolders.join(QStringLiteral(", ")));
}

void StockRebuildForm::writeInventory() {
    const QString date = last_->value().isEmpty() ? first_->value() : last_->value();
    inventory_counts::checkDate(date);
    if (!prompt().ask(QStringLiteral("Voulez-vous générer des écritures d'inventaire au %1 ? ").arg(date))) return;
    Workspace workspace;
    const qint64 written =
        inventory_counts::writeInventory(openMovementFiles(workspace, session()), session().rules(), date);
    step_->setText(QStringLiteral("Inventaire au %1 : %2").arg(date, counted(written, QStringLiteral("mouvement"))));
    notify(QStringLiteral("génération inventaire terminée"));
    notify(QStringLiteral("Vous devez faire un reclacul du stock à partir de ce nouvel inventaire"));
}

} // namespace molven

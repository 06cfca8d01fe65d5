#include "screens/stock/maintenance_form.h"

#include "data/format.h"
#include "dossier/family_renaming.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "stock/article_push.h"
#include "stock/stock_recount.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

const MaintenanceForm::Task& MaintenanceForm::taskOf(const QString& name, const QString& mode) {
    static const QHash<QString, Task> tasks{
        {QStringLiteral("PRO"),
         {QStringLiteral("Modif des produits à partir des articles"),
          QStringLiteral("Les produits non vendus prennent le libellé, les codes TIPS et LPP, le prix et le N° "
                         "d'homologation de leur article. Un produit livré garde le prix et le code LPP de son bon."),
          {{QStringLiteral("txtdeb"), QStringLiteral("Articles &du :")},
           {QStringLiteral("txtfin"), QStringLiteral("&au :")}},
          &MaintenanceForm::showRange,
          &MaintenanceForm::carryArticles}},
        {QStringLiteral("T_procal"),
         {QStringLiteral("Recalcul du stock des produits suivis"),
          QStringLiteral("Le stock de chaque article suivi devient le nombre de ses produits qui ne sont pas facturés, "
                         "où qu'ils soient : dépôt principal, dépôts des clients, bons de livraison, ancillaires."),
          {},
          &MaintenanceForm::nothingMore,
          &MaintenanceForm::recountUnits}},
        {QStringLiteral("STK"),
         {QStringLiteral("Recalcul stocks/pamp produits suivis"),
          QStringLiteral("Le stock de chaque article suivi devient le nombre de ses produits non facturés, et son prix "
                         "moyen d'achat celui de leurs réceptions. Un article sans produit garde son prix moyen."),
          {},
          &MaintenanceForm::nothingMore,
          &MaintenanceForm::recount}},
        {QStringLiteral("FAM"),
         {QStringLiteral("Modif d'un code famille article"),
          QStringLiteral("Le nouveau code remplace l'ancien dans la liste des familles, les articles, les ancillaires, "
                         "les sous-familles, les remises et les commissions."),
          {{QStringLiteral("txtfam"), QStringLiteral("&Famille :")},
           {QStringLiteral("txtnouv"), QStringLiteral("&Nouveau code :")}},
          &MaintenanceForm::showFamily,
          &MaintenanceForm::renameFamily}}};
    return *tasks.constFind(mode.isEmpty() ? name : mode);
}

MaintenanceForm::MaintenanceForm(Desk& desk, const QString& name)
    : Form(desk, name), molven_(workspace_.open(session().molven())) {
    const Task& task = taskOf(name, mode());
    auto* explanation = new QLabel(task.explanation, this);
    explanation->setWordWrap(true);
    words_ = new QLabel(this);
    words_->setObjectName(QStringLiteral("Lblselect"));
    words_->setTextFormat(Qt::PlainText);
    step_ = new QLabel(this);
    step_->setObjectName(QStringLiteral("Label1"));
    style::emphasise(*step_);
    auto* run = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this, &task] { (this->*task.run)(); });
    setDefaultButton(run);
    auto* row = new QHBoxLayout;
    row->addWidget(step_, 1);
    row->addWidget(run);
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    style::letBreathe(*layout);
    layout->addWidget(explanation);
    layout->addLayout(boxRow(task));
    layout->addWidget(words_);
    layout->addStretch();
    layout->addLayout(row);
    setPickers();
    resize(680, 260);
    applyTitle(task.title);
    (this->*task.shown)();
    if (task.boxes.isEmpty())
        run->setFocus();
    else
        findChild<Edit*>(task.boxes.first().first)->setFocus();
}

QLayout* MaintenanceForm::boxRow(const Task& task) {
    auto* row = new QHBoxLayout;
    for (const auto& [name, caption] : task.boxes) {
        auto* edit = new Edit(this);
        edit->setObjectName(name);
        const int size = mode() == u"FAM" ? strparam.num_par.size : strarticle.art_ref.size;
        edit->setMaxLength(size);
        edit->setFixedWidth(style::boxWidth(size));
        onLeft(edit, [this, &task] { (this->*task.shown)(); });
        auto* label = new QLabel(caption, this);
        label->setBuddy(edit);
        row->addWidget(label);
        row->addWidget(edit);
    }
    row->addStretch();
    return row;
}

void MaintenanceForm::setPickers() {
    for (const char* name : {"txtdeb", "txtfin"})
        if (auto* edit = findChild<Edit*>(QString::fromLatin1(name)))
            onPick(edit, [this, edit] {
                pick(pick_lists::articles(
                    molven_,
                    [this, edit](const Record& article) {
                        edit->put(article[strarticle.art_ref]);
                        showRange();
                    },
                    strarticle.art_aig == follow_up::ByUnit));
            });
    if (auto* edit = findChild<Edit*>(QStringLiteral("txtfam")))
        onPick(edit, [this, edit] {
            pick(pick_lists::parameters(molven_, list::ArticleFamily, QStringLiteral("LES FAMILLES"),
                                        [this, edit](const Record& family) {
                                            edit->put(family[strparam.num_par]);
                                            showFamily();
                                        }));
        });
}

QString MaintenanceForm::typed(const char* box) const {
    return findChild<Edit*>(QString::fromLatin1(box))->value().trimmed();
}

void MaintenanceForm::showRange() {
    words_->setText(QStringLiteral("Produits non vendus : %1")
                        .arg(article_push::count(molven_, {typed("txtdeb"), typed("txtfin")})));
}

void MaintenanceForm::showFamily() {
    const QString code = typed("txtfam");
    const QString label = family_renaming::label(molven_, code);
    words_->setText(label.isEmpty() ? QString()
                                    : label + QStringLiteral(" : ") +
                                          counted(family_renaming::count(molven_, code), QStringLiteral("article")));
}

void MaintenanceForm::carryArticles() {
    const article_push::Range range{typed("txtdeb"), typed("txtfin")};
    const qint64 units = article_push::count(molven_, range);
    if (units == 0) throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"), QStringLiteral("txtdeb"));
    prompt().tell(QStringLiteral("Nous allons modifier ") + counted(units, QStringLiteral("produit")));
    const auto done = article_push::run(molven_, range, progress(*this, QStringLiteral("Modification des produits")));
    finish(done ? QStringLiteral(" : ") + counted(*done, QStringLiteral("produit")) : QString());
}

void MaintenanceForm::begin() {
    step_->setText(QStringLiteral("TRAITEMENT EN COURS"));
    step_->repaint();
    notify(QStringLiteral("Debut du traitement"));
}

void MaintenanceForm::recountUnits() {
    begin();
    const auto done = stock_recount::count(molven_, progress(*this, QStringLiteral("Recomptage du stock")));
    finish(done ? QStringLiteral(" : %1, %2 de stock changé")
                      .arg(counted(done->articles, QStringLiteral("article")))
                      .arg(done->changed)
                : QString());
}

void MaintenanceForm::recount() {
    begin();
    const auto done = stock_recount::countAndAverage(molven_, session().rules(),
                                                     progress(*this, QStringLiteral("Recomptage du stock")));
    finish(done ? QStringLiteral(" : %1, %2 changés")
                      .arg(counted(done->articles, QStringLiteral("article")))
                      .arg(done->changed)
                : QString());
}

void MaintenanceForm::renameFamily() {
    const QString code = typed("txtfam"), newCode = typed("txtnouv");
    const QString label = family_renaming::label(molven_, code);
    if (!label.isEmpty() && !newCode.isEmpty() &&
        !prompt().ask(QStringLiteral("La famille %1, %2, devient %3 ? ").arg(code, label, newCode)))
        return;
    const qint64 articles = family_renaming::rename(session(), code, newCode);
    finish(QStringLiteral(" : ") + counted(articles, QStringLiteral("article")));
    findChild<Edit*>(QStringLiteral("txtfam"))->put(newCode);
    findChild<Edit*>(QStringLiteral("txtnouv"))->put({});
    showFamily();
}

/// `what` was done; empty when the work was stopped.
void MaintenanceForm::finish(const QString& what) {
    if (what.isEmpty()) return step_->setText(QStringLiteral("Opération abandonnée"));
    step_->setText(QStringLiteral("TRAITEMENT TERMINE") + what);
    notify(QStringLiteral("Fin du traitement"));
}

} // namespace molven

#include "screens/stock/sets/set_composition.h"

#include "reference/articles.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const AncillaryComponents& n = strnomenclature;

} // namespace

SetComposition::SetComposition(Form& form, const set_types::Files& files)
    : QWidget(&form),
      form_(form),
      files_(files),
      title_(new QLabel(this)),
      grid_(new Grid(QStringLiteral("DBGrid2"),
                     {{&n.anc_lg, QStringLiteral("Ligne"), 50},
                      {&n.anc_article, QStringLiteral("Référence"), 120},
                      {&n.anc_libart, QStringLiteral("Désignation"), 330},
                      {&n.anc_qte, QStringLiteral("Quantité"), 70}},
                     this)),
      panel_(new RecordPanel(QList<FieldBox>{{&n.anc_article, QStringLiteral("Article :")},
                                             {&n.anc_qte, QStringLiteral("Quantité :"), {}, 5}},
                             1, this)),
      codes_(form, *panel_, {{DataFile::Molven, files_.molven}}) {
    title_->setObjectName(QStringLiteral("lblnomenclature"));
    style::makeHeading(*title_);
    grid_->setAccessibleName(QStringLiteral("Nomenclature"));
    grid_->becameCurrent = grid_->chosen = [this](const Record& row) { bringUp(row); };
    codes_.wire([this](const Field&) { codes_.showWords(); });
    form_.onPick(panel_->edit(n.anc_article), [this] {
        form_.pick(pick_lists::articles(
            files_.molven,
            [this](const Record& article) {
                panel_->edit(n.anc_article)->put(article[strarticle.art_ref]);
                codes_.showWords();
            },
            strarticle.art_aig == follow_up::ByUnit));
    });
    for (const FieldBox& box : panel_->boxes()) form_.bind(box.field->name, panel_->edit(*box.field));
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(title_);
    layout->addWidget(grid_, 1);
    layout->addLayout(entry());
}

QLayout* SetComposition::entry() {
    auto* add =
        form_.button(QStringLiteral("cmdcompajout"), QStringLiteral("Nouveau &composant"), [this] { startAdding(); });
    auto* validate =
        form_.button(QStringLiteral("cmdcompval"), QStringLiteral("&Enregistrer le composant"), [this] { save(); });
    auto* remove = form_.button(QStringLiteral("cmdcompsup"), QStringLiteral("&Oter"), [this] { this->remove(); });
    auto* row = new QHBoxLayout;
    row->addWidget(panel_, 1);
    for (QPushButton* made : {add, validate, remove}) row->addWidget(made, 0, Qt::AlignTop);
    return row;
}

void SetComposition::show(const QString& type) {
    type_ = type;
    refresh({});
}

/// Reads the components again and brings that one up, the first when there is no such.
void SetComposition::refresh(const QString& article) {
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return files_.ancillaire.select(strnomenclature, set_types::componentsOf(type_) && filter,
                                        order.orElse(Order(n.anc_lg)));
    });
    title_->setText(
        type_.isEmpty()
            ? QStringLiteral("NOMENCLATURE")
            : QStringLiteral("NOMENCLATURE : %1 -- %2 composants ").arg(type_).arg(grid_->rows().rowCount()));
    Record wanted(strnomenclature);
    wanted[n.anc_article] = article;
    const int row = std::max(0, grid_->rows().rowOf(wanted, {&n.anc_article}));
    shown_.reset();
    panel_->load(Record(strnomenclature));
    if (const auto record = grid_->rows().record(row)) {
        grid_->followRecord(*record, {&n.anc_lg});
        bringUp(*record);
    }
    codes_.showWords();
}

bool SetComposition::hasUnsavedWork() const { return panel_->differsFrom(shown_.value_or(Record(strnomenclature))); }

void SetComposition::bringUp(const Record& component) {
    const bool isShown = shown_ && *shown_ == component;
    if (!isShown && hasUnsavedWork() && !form_.givesUp(title_->text())) {
        if (shown_) grid_->followRecord(*shown_, {&n.anc_lg});
        return;
    }
    if (!isShown) {
        shown_ = component;
        panel_->load(component);
        codes_.showWords();
    }
    if (chosen) chosen();
}

void SetComposition::startAdding() {
    if (type_.isEmpty()) throw Refusal(QStringLiteral("Choisir d'abord un type d'ancillaire"));
    if (hasUnsavedWork() && !form_.givesUp(title_->text())) return;
    shown_.reset();
    panel_->load(Record(strnomenclature));
    codes_.showWords();
    panel_->edit(n.anc_article)->setFocus();
}

void SetComposition::save() {
    const QString article = panel_->edit(n.anc_article)->value().trimmed();
    set_types::saveComponent(files_, type_, article, panel_->edit(n.anc_qte)->value(), shown_);
    refresh(article);
    changed();
}

void SetComposition::remove() {
    if (!shown_) throw Refusal(QStringLiteral("Choisir d'abord un composant"), n.anc_article.name);
    if (!form_.prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "),
                                QStringLiteral("Composant %1 de %2").arg((*shown_)[n.anc_article], type_)))
        return;
    set_types::removeComponent(files_.ancillaire, *shown_);
    refresh({});
    changed();
}

} // namespace molven

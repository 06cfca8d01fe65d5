#include "ui/criteria_panel.h"

#include "ui/edit.h"
#include "ui/form.h"
#include "ui/style.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include <algorithm>

namespace molven {

namespace {

Edit* makeEdit(const CriterionBox& box, QWidget* parent) {
    if (box.kind == CriterionBox::Kind::Day) return new DateBox(parent);
    if (box.kind == CriterionBox::Kind::Month) return new DateBox(parent, DateBox::Precision::Month);
    auto* edit = new Edit(parent);
    edit->setMaxLength(box.characters);
    edit->setFixedWidth(style::boxWidth(std::min(box.characters, 16)));
    return edit;
}

} // namespace

CriteriaPanel::CriteriaPanel(Form& form, const QList<CriterionBox>& boxes, int columns)
    : QWidget(&form),
      form_(form),
      columns_(columns),
      window_(new QWidget(this)),
      rows_(new QWidget(window_)),
      layout_(new QGridLayout(rows_)) {
    style::nest(*layout_);
    style::spaceAsBoxes(*layout_);
    layout_->setColumnStretch(columns * 2, 1);
    for (const CriterionBox& box : boxes) criteria_.append(makeCriterion(form, box));
    window_->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(window_);
    layout->addWidget(buttonRow());
    fold(std::any_of(boxes.begin(), boxes.end(), [](const CriterionBox& box) { return !box.isUsual; }));
}

CriteriaPanel::Criterion CriteriaPanel::makeCriterion(Form& form, const CriterionBox& box) {
    QWidget* made = nullptr;
    if (box.options.isEmpty()) {
        Edit* edit = makeEdit(box, rows_);
        edits_.insert(box.name, edit);
        made = edit;
    } else {
        auto* list = new QComboBox(rows_);
        list->addItems(box.options);
        lists_.insert(box.name, list);
        made = list;
    }
    made->setObjectName(box.name);
    made->installEventFilter(this);
    form.bind(box.name, made);
    auto* caption = new QLabel(box.caption, rows_);
    caption->setBuddy(made);
    return {box, caption, made, made->focusPolicy()};
}

QWidget* CriteriaPanel::buttonRow() {
    auto* row = new QWidget(this);
    const auto button = [row](const QString& name, const QString& caption) {
        auto* made = new QPushButton(caption, row);
        made->setObjectName(name);
        made->setAutoDefault(false);
        return made;
    };
    more_ = button(QStringLiteral("Cmdplus"), QStringLiteral("Plus de &critères"));
    connect(more_, &QPushButton::clicked, this, [this] { fold(!folded_); });
    more_->setVisible(std::any_of(criteria_.begin(), criteria_.end(),
                                  [](const Criterion& criterion) { return !criterion.box.isUsual; }));
    auto* kept = button(QStringLiteral("Cmdcriteres"), QStringLiteral("Critèr&es gardés"));
    keptMenu_ = new QMenu(kept);
    kept->setMenu(keptMenu_);
    connect(keptMenu_, &QMenu::aboutToShow, this, [this] { fillKeptMenu(); });
    auto* layout = new QHBoxLayout(row);
    style::nest(*layout);
    layout->addWidget(more_);
    layout->addWidget(kept);
    layout->addStretch();
    return row;
}

QString CriteriaPanel::value(const QString& name) const {
    const Edit* edit = edits_.value(name);
    return edit ? edit->value().trimmed() : QString();
}

int CriteriaPanel::choice(const QString& name) const {
    const QComboBox* list = lists_.value(name);
    return list ? std::max(0, list->currentIndex()) : 0;
}

QHash<QString, QString> CriteriaPanel::values() const {
    QHash<QString, QString> all;
    for (auto edit = edits_.begin(); edit != edits_.end(); ++edit) all.insert(edit.key(), value(edit.key()));
    return all;
}

bool CriteriaPanel::isFilled(const Criterion& criterion) const {
    return !value(criterion.box.name).isEmpty() || choice(criterion.box.name) > 0;
}

void CriteriaPanel::fold(bool folded) {
    folded_ = folded;
    more_->setText(folded ? QStringLiteral("Plus de &critères") : QStringLiteral("Moins de &critères"));
    arrange();
}

bool CriteriaPanel::isInSight(const QString& name) const {
    const QWidget* control = edits_.contains(name) ? static_cast<QWidget*>(edits_[name]) : lists_.value(name);
    return control && control->geometry().bottom() < window_->height();
}

/// Folded criteria lie below the edge of the window: nothing is hidden, and what puts the cursor there unfolds them.
void CriteriaPanel::arrange() {
    QList<Criterion> order = criteria_;
    const auto rest = folded_ ? std::stable_partition(order.begin(), order.end(),
                                                      [this](const Criterion& criterion) {
                                                          return criterion.box.isUsual || isFilled(criterion);
                                                      })
                              : order.end();
    const auto inSight = static_cast<int>(rest - order.begin());
    for (int place = 0; place < order.size(); ++place) {
        const Criterion& criterion = order[place];
        layout_->addWidget(criterion.caption, place / columns_, place % columns_ * 2, Qt::AlignRight);
        layout_->addWidget(criterion.control, place / columns_, place % columns_ * 2 + 1, Qt::AlignLeft);
        criterion.control->setFocusPolicy(place < inSight ? criterion.focus : Qt::NoFocus);
    }
    const int rows = (static_cast<int>(order.size()) + columns_ - 1) / columns_;
    const int shown = (inSight + columns_ - 1) / columns_;
    for (int row = 0; row < rows; ++row)
        layout_->setRowMinimumHeight(row, criteria_.first().control->sizeHint().height());
    layout_->activate();
    const int spacing = layout_->verticalSpacing();
    window_->setFixedHeight((rows_->sizeHint().height() + spacing) * shown / rows - spacing);
    window_->setMinimumWidth(rows_->minimumSizeHint().width());
    rows_->resize(window_->width(), rows_->sizeHint().height());
}

bool CriteriaPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_ && event->type() == QEvent::Resize)
        rows_->resize(window_->width(), rows_->sizeHint().height());
    if (folded_ && event->type() == QEvent::FocusIn && static_cast<QWidget*>(watched)->focusPolicy() == Qt::NoFocus)
        fold(false);
    return false;
}

QVariantMap CriteriaPanel::kept() const {
    return form_.desk().habits.value(form_.habit() + QStringLiteral("/criteres")).toMap();
}

void CriteriaPanel::setKept(const QVariantMap& sets) {
    form_.desk().habits.set(form_.habit() + QStringLiteral("/criteres"), sets);
}

QStringList CriteriaPanel::keptNames() const { return kept().keys(); }

void CriteriaPanel::keepAs(const QString& name) {
    QVariantMap set;
    for (const Criterion& criterion : criteria_) {
        if (!isFilled(criterion)) continue;
        const QString& box = criterion.box.name;
        set.insert(box, lists_.contains(box) ? lists_[box]->currentText() : value(box));
    }
    QVariantMap sets = kept();
    sets.insert(name, set);
    setKept(sets);
}

void CriteriaPanel::takeKept(const QString& name) {
    QHash<QString, QString> values;
    const QVariantMap set = kept().value(name).toMap();
    for (auto value = set.begin(); value != set.end(); ++value) values.insert(value.key(), value->toString());
    put(values);
}

void CriteriaPanel::put(const QHash<QString, QString>& values) {
    for (auto edit = edits_.begin(); edit != edits_.end(); ++edit) (*edit)->put(values.value(edit.key()));
    for (auto list = lists_.begin(); list != lists_.end(); ++list)
        (*list)->setCurrentIndex(std::max(0, (*list)->findText(values.value(list.key()))));
    arrange(); // what is filled comes into sight
}

void CriteriaPanel::forget(const QString& name) {
    QVariantMap sets = kept();
    sets.remove(name);
    setKept(sets);
}

void CriteriaPanel::fillKeptMenu() {
    keptMenu_->clear();
    const QStringList names = keptNames();
    for (const QString& name : names) keptMenu_->addAction(name, this, [this, name] { takeKept(name); });
    keptMenu_->addSeparator();
    keptMenu_->addAction(QStringLiteral("Garder ces critères sous un nom…"), this, [this] { askName(); });
    QMenu* forgotten = keptMenu_->addMenu(QStringLiteral("Oublier"));
    forgotten->setEnabled(!names.isEmpty());
    for (const QString& name : names)
        forgotten->addAction(name, this, [this, name] {
            if (form_.prompt().confirm(QStringLiteral("Oublier ces critères ?"), name)) forget(name);
        });
}

void CriteriaPanel::askName() {
    const QString name = QInputDialog::getText(this, QStringLiteral("Critères gardés"),
                                               QStringLiteral("Garder ces critères sous le nom :"))
                             .simplified();
    if (name.isEmpty()) return;
    if (!keptNames().contains(name) ||
        form_.prompt().confirm(QStringLiteral("Ce nom existe déjà. Remplacer ses critères ?"), name))
        keepAs(name);
}

} // namespace molven

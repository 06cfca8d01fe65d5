#include "ui/selection_form.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/codes.h"
#include "ui/completion.h"
#include "ui/edit.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

void SelectionForm::build(const Selection& selection) {
    first_ = selection.criteria.first().name;
    criteria_ = new CriteriaPanel(*this, selection.criteria, selection.across);
    for (const CriterionBox& box : selection.criteria) wireCode(box, selection.files);
    const auto label = [this](const QString& name) {
        auto* made = new QLabel(this);
        made->setObjectName(name);
        made->setTextFormat(Qt::PlainText);
        return made;
    };
    list_ = new Grid(QStringLiteral("DBGrid1"), selection.list, this);
    count_ = label(selection.count);
    row_ = new QHBoxLayout;
    for (const SelectionDeed& one : selection.searches) row_->addWidget(search_ = deed(one));
    if (selection.searches.size() == 1) setDefaultButton(search_);
    row_->addWidget(count_, 1);
    for (const SelectionDeed& one : selection.deeds) row_->addWidget(deed(one));
    row_->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteria_);
    if (!selection.words.isEmpty()) layout->addWidget(words_ = label(selection.words));
    layout->addWidget(list_, 1);
    layout->addLayout(row_);
    resize(selection.size);
    applyTitle(selection.title);
    criteria_->edit(first_)->setFocus();
}

void SelectionForm::ask(const QHash<QString, QString>& values) {
    criteria_->put(values);
    search_->click();
}

void SelectionForm::wireCode(const CriterionBox& box, const QHash<DataFile, Database>& files) {
    Edit* edit = criteria_->edit(box.name);
    if (!edit) return;
    if (box.digits > 0) onLeft(edit, [edit, digits = box.digits] { edit->put(padded(edit->value(), digits)); });
    const auto found = box.code ? files.constFind(box.code->file) : files.constEnd();
    if (found == files.constEnd() || !box.code->table) return;
    const CodeKind& kind = *box.code;
    const Database file = *found;
    if (!box.isBound) onLeft(edit, [edit, file, &kind] { edit->put(codes::completed(file, kind, edit->value())); });
    picker(box.name, *kind.key,
           [file, &kind](const pick_lists::Chosen& chosen) { return pick_lists::codes(file, kind, chosen); });
    new Completion(edit, [this, file, &kind](const QString& typed) {
        QList<Completion::Line> lines;
        guarded([&] {
            for (const codes::Offer& offer : codes::offers(file, kind, typed, Completion::MostLines))
                lines.append({offer.code, offer.words});
        });
        return lines;
    });
}

void SelectionForm::picker(const QString& box, const Field& field,
                           const std::function<PickList(const pick_lists::Chosen&)>& list) {
    Edit* edit = criteria_->edit(box);
    onPick(edit, [this, edit, list, &field] {
        pick(list([edit, &field](const Record& row) { edit->put(row.value(field)); }));
    });
}

void SelectionForm::clearSelection(const QString& words) {
    isSelected_ = false;
    list_->rows().setRecords({});
    count_->clear();
    if (words_) words_->setText(words);
}

void SelectionForm::showRows(const RecordModel::Query& query, const QString& count) {
    list_->rows().setQuery(query);
    selected(count);
}

void SelectionForm::showRows(const QList<Record>& records, const QString& count) {
    list_->rows().setRecords(records);
    selected(count);
}

void SelectionForm::selected(const QString& count) {
    isSelected_ = true;
    showCount(count);
    if (list_->rows().rowCount() == 0) return;
    list_->selectRow(0);
    list_->setFocus();
}

void SelectionForm::showCount(const QString& count) {
    count_->setText(count.isEmpty() ? QStringLiteral("Nbre sélection : %1").arg(list_->rows().rowCount()) : count);
}

QString SelectionForm::words() const { return words_ ? words_->text() : QString(); }

void SelectionForm::requireSelection() const {
    if (!isSelected_) throw Refusal(QStringLiteral("Faire une sélection"), first_);
}

} // namespace molven

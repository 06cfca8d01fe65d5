#include "ui/record_panel.h"

#include "data/errors.h"
#include "data/format.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace molven {

RecordPanel::RecordPanel(const QList<FieldBox>& boxes, int columns, QWidget* parent) : QWidget(parent), boxes_(boxes) {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setHorizontalSpacing(8);
    layout->setVerticalSpacing(4);
    const auto rows = (boxes_.size() + columns - 1) / columns;
    for (qsizetype i = 0; i < boxes_.size(); ++i) {
        const FieldBox& box = boxes_[i];
        Edit* made = box.isDate ? new DateBox(this, box.field->size == 7 ? DateBox::Precision::Month : DateBox::Precision::Day)
                                : new Edit(this);
        made->setObjectName(box.control.isEmpty() ? QStringLiteral("txt") + box.field->name : box.control);
        const int characters = box.characters > 0 ? box.characters : box.field->size > 0 ? std::min(box.field->size, 40) : 12;
        if (!box.isDate) {
            made->setFixedWidth(std::clamp(characters * 9 + 14, 34, 330));
            if (box.field->size > 0) made->setMaxLength(box.field->size);
        }
        if (box.field->kind == Field::Kind::Number) made->setAlignment(Qt::AlignRight);
        made->setReadOnly(box.readOnly);
        auto* caption = new QLabel(box.caption, this);
        caption->setBuddy(made);
        auto* hint = new QLabel(this);
        hint->setObjectName(QStringLiteral("lbl") + box.field->name);
        auto* line = new QHBoxLayout;
        line->setSpacing(6);
        line->addWidget(made);
        line->addWidget(hint, 1);
        const int row = static_cast<int>(i % rows), column = static_cast<int>(i / rows);
        layout->addWidget(caption, row, column * 2, Qt::AlignRight);
        layout->addLayout(line, row, column * 2 + 1);
        layout->setColumnStretch(column * 2 + 1, 1);
        edits_.insert(box.field, made);
        hints_.insert(box.field, hint);
    }
    layout->setRowStretch(static_cast<int>(rows), 1);
}

Edit* RecordPanel::edit(const Field& field) const { return edits_.value(&field); }

void RecordPanel::setHint(const Field& field, const QString& text) {
    if (QLabel* hint = hints_.value(&field)) hint->setText(text);
}

void RecordPanel::load(const Record& record) {
    for (const FieldBox& box : boxes_) {
        const QString value = record.value(*box.field);
        if (box.field->kind != Field::Kind::Number || value.isEmpty()) {
            edits_[box.field]->put(value);
            continue;
        }
        const Decimal number = Decimal::fromText(value);
        edits_[box.field]->put(box.pattern.isEmpty() ? shown(number) : format(number, box.pattern));
    }
}

void RecordPanel::store(Record& record) const {
    for (const FieldBox& box : boxes_) {
        const QString typed = edits_[box.field]->value().trimmed();
        if (box.field->kind != Field::Kind::Number || typed.isEmpty()) {
            record.set(*box.field, typed);
            continue;
        }
        const auto number = Decimal::parse(typed);
        if (!number) throw Refusal(QStringLiteral("Valeur numérique incorrecte : ") + typed, box.field->name);
        record.set(*box.field, number->toString());
    }
}

void RecordPanel::setEditable(bool editable) {
    for (const FieldBox& box : boxes_) edits_[box.field]->setReadOnly(box.readOnly || !editable);
}

} // namespace molven

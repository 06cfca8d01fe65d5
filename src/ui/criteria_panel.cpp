#include "ui/criteria_panel.h"

#include "ui/edit.h"
#include "ui/form.h"
#include "ui/style.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

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

CriteriaPanel::CriteriaPanel(Form& form, const QList<CriterionBox>& boxes, int columns) : QWidget(&form) {
    auto* layout = new QGridLayout(this);
    style::nest(*layout);
    style::spaceAsBoxes(*layout);
    int place = 0;
    for (const CriterionBox& box : boxes) {
        QWidget* made = nullptr;
        if (box.options.isEmpty()) {
            Edit* edit = makeEdit(box, this);
            edits_.insert(box.name, edit);
            made = edit;
        } else {
            auto* list = new QComboBox(this);
            list->addItems(box.options);
            lists_.insert(box.name, list);
            made = list;
        }
        made->setObjectName(box.name);
        form.bind(box.name, made);
        auto* caption = new QLabel(box.caption, this);
        caption->setBuddy(made);
        layout->addWidget(caption, place / columns, place % columns * 2, Qt::AlignRight);
        layout->addWidget(made, place / columns, place % columns * 2 + 1, Qt::AlignLeft);
        ++place;
    }
    layout->setColumnStretch(columns * 2, 1);
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

} // namespace molven

#include "ui/record_panel.h"

#include "data/errors.h"
#include "data/format.h"
#include "ui/icons.h"
#include "ui/style.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace molven {

namespace {

constexpr int HoldsWords = 24;  ///< characters of a name, an address, a label
constexpr int TakesRoom = 1000; ///< of a box that could be wider, before the words beside it

Edit* makeEdit(const FieldBox& box, QWidget* parent) {
    const Field& field = *box.field;
    const bool isMonth = field.size == 7;
    Edit* made = box.isDate ? new DateBox(parent, isMonth ? DateBox::Precision::Month : DateBox::Precision::Day)
                            : new Edit(parent);
    made->setObjectName(box.control.isEmpty() ? QStringLiteral("txt") + field.name : box.control);
    if (!box.isDate) {
        const int size = field.size > 0 ? field.size : 12;
        made->setFixedWidth(style::boxWidth(box.characters > 0 ? box.characters : size));
        if (size >= HoldsWords && field.kind != Field::Kind::Number && !field.code)
            made->setMaximumWidth(style::WidestBox);
        if (field.size > 0) made->setMaxLength(box.longest > 0 ? box.longest : field.size);
    }
    if (field.kind == Field::Kind::Number) made->setAlignment(Qt::AlignRight);
    if (field.size == 1) // a flag: O/N, a kind, a state
        QObject::connect(made, &QLineEdit::textEdited, made,
                         [made](const QString& typed) { made->setText(typed.toUpper()); });
    made->setEditable(!box.readOnly);
    return made;
}

/// A group is named on a line of its own unless its first box leaves room for the name.
bool hasTitleLine(const BoxGroup& group) { return !group.title.isEmpty() && !group.boxes.first().caption.isEmpty(); }

int linesOf(const BoxGroup& group) {
    const auto lines =
        std::count_if(group.boxes.begin(), group.boxes.end(), [](const FieldBox& box) { return !box.beside; });
    return static_cast<int>(lines) + (hasTitleLine(group) ? 1 : 0);
}

/// The column of each group when no column has more lines than that.
QList<int> columnsWithin(const QList<BoxGroup>& groups, int most) {
    QList<int> columns;
    int column = 0, lines = 0;
    for (const BoxGroup& group : groups) {
        if (lines > 0 && lines + linesOf(group) > most) {
            ++column;
            lines = 0;
        }
        lines += linesOf(group);
        columns.append(column);
    }
    return columns;
}

/// The column of each group where the longest column is as short as can be.
QList<int> columnsOf(const QList<BoxGroup>& groups, int columns) {
    int most = 1;
    for (const BoxGroup& group : groups) most = std::max(most, linesOf(group));
    while (columnsWithin(groups, most).last() >= columns) ++most;
    return columnsWithin(groups, most);
}

QList<BoxGroup> eachAlone(const QList<FieldBox>& boxes) {
    QList<BoxGroup> groups;
    for (const FieldBox& box : boxes) {
        if (box.beside)
            groups.last().boxes.append(box);
        else
            groups.append({{}, {box}});
    }
    return groups;
}

} // namespace

RecordPanel::RecordPanel(const QList<FieldBox>& boxes, int columns, QWidget* parent)
    : RecordPanel(eachAlone(boxes), columns, parent) {}

RecordPanel::RecordPanel(const QList<BoxGroup>& groups, int columns, QWidget* parent) : QWidget(parent) {
    auto* layout = new QGridLayout(this);
    style::nest(*layout);
    style::spaceAsBoxes(*layout);
    const QList<int> places = columnsOf(groups, columns);
    int row = 0;
    for (qsizetype i = 0; i < groups.size(); ++i) {
        if (i > 0 && places[i] != places[i - 1]) row = 0;
        add(groups[i], *layout, places[i] * 2, row);
    }
    for (int column = 0; column <= places.last(); ++column) layout->setColumnStretch(column * 2 + 1, 1);
    layout->setRowStretch(layout->rowCount(), 1);
}

void RecordPanel::add(const BoxGroup& group, QGridLayout& layout, int column, int& row) {
    if (hasTitleLine(group)) {
        auto* title = new QLabel(group.title, this);
        style::makeHeading(*title);
        layout.addWidget(title, row++, column, 1, 2, Qt::AlignBottom);
    }
    for (const FieldBox& box : group.boxes) {
        auto* caption = new QLabel(box.caption, this);
        if (box.caption.isEmpty() && &box == &group.boxes.first()) {
            caption->setText(group.title);
            style::makeHeading(*caption);
        }
        add(box, layout, column, box.beside ? row : row++, caption);
    }
}

void RecordPanel::add(const FieldBox& box, QGridLayout& layout, int column, int row, QLabel* caption) {
    Edit* made = makeEdit(box, this);
    caption->setBuddy(made);
    if (box.beside) {
        for (QWidget* one : {line_->itemAt(0)->widget(), static_cast<QWidget*>(made)})
            one->setFixedWidth(one->minimumWidth()); // what stands beside it keeps its place
        const int end = line_->count() - 2;          // before the words of the line's first box
        line_->insertSpacing(end, style::Gap);
        line_->insertWidget(end + 1, caption);
        line_->insertWidget(end + 2, made);
        if (QAbstractButton* list = listButtonOf(box)) line_->insertWidget(end + 3, list);
    } else {
        layout.addWidget(caption, row, column, Qt::AlignRight);
        layout.addLayout(line_ = lineOf(box, made), row, column + 1);
    }
    boxes_.append(box);
    captions_.insert(box.field, caption);
    edits_.insert(box.field, made);
}

QAbstractButton* RecordPanel::listButtonOf(const FieldBox& box) {
    if (box.listButton.isEmpty()) return nullptr;
    auto* list = new QToolButton(this);
    list->setObjectName(box.listButton);
    list->setIcon(icons::list());
    list->setFocusPolicy(Qt::NoFocus);
    listButtons_.insert(box.field, list);
    return list;
}

QHBoxLayout* RecordPanel::lineOf(const FieldBox& box, Edit* edit) {
    auto* line = new QHBoxLayout;
    line->setSpacing(style::Gap);
    line->addWidget(edit, TakesRoom);
    if (QAbstractButton* list = listButtonOf(box)) line->addWidget(list);
    auto* hint = new QLabel(this);
    hint->setObjectName(QStringLiteral("lbl") + box.field->name);
    hint->setTextFormat(Qt::PlainText);
    style::makeQuiet(*hint);
    hint->setWordWrap(true); // words are never cut
    hint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    hints_.insert(box.field, hint);
    line->addWidget(hint, 1);
    line->addStretch(); // for a hint that is shown elsewhere
    return line;
}

QAbstractButton* RecordPanel::listButton(const Field& field) const { return listButtons_.value(&field); }

Edit* RecordPanel::edit(const Field& field) const { return edits_.value(&field); }

void RecordPanel::setHint(const Field& field, const QString& text) {
    QLabel* hint = hints_.value(&field);
    if (!hint) return;
    hint->setText(text);
}

void RecordPanel::markRequired(const QList<const Field*>& fields) {
    for (const Field* field : fields)
        if (Edit* made = edit(*field)) style::markRequired(*made, true);
}

void RecordPanel::setCaption(const Field& field, const QString& caption) {
    if (QLabel* label = captions_.value(&field)) label->setText(caption);
}

namespace {

/// What a box shows of a record.
QString textOf(const FieldBox& box, const Record& record) {
    const QString value = record.value(*box.field);
    if (box.field->kind != Field::Kind::Number || value.isEmpty()) return value;
    const Decimal number = Decimal::fromText(value);
    return box.pattern.isEmpty() ? shown(number) : format(number, box.pattern);
}

} // namespace

void RecordPanel::load(const Record& record) {
    for (const FieldBox& box : boxes_) edits_[box.field]->put(textOf(box, record));
}

Decimal RecordPanel::number(const Number& field, const Record& loaded) const {
    const auto box =
        std::find_if(boxes_.begin(), boxes_.end(), [&](const FieldBox& one) { return one.field == &field; });
    if (box == boxes_.end() || edits_[&field]->value().trimmed() == textOf(*box, loaded).trimmed())
        return loaded[field];
    const QString typed = edits_[&field]->value().trimmed();
    if (typed.isEmpty()) return {};
    const auto number = Decimal::parse(typed);
    if (!number) throw Refusal(QStringLiteral("Valeur numérique incorrecte : ") + typed, field.name);
    return *number;
}

bool RecordPanel::isChanged(const FieldBox& box, const Record& record) const {
    return !box.readOnly && edits_[box.field]->value().trimmed() != textOf(box, record).trimmed();
}

void RecordPanel::store(Record& record) const {
    for (const FieldBox& box : boxes_) {
        if (!isChanged(box, record)) continue;
        const QString typed = edits_[box.field]->value().trimmed();
        if (box.field->kind != Field::Kind::Number || typed.isEmpty()) {
            record.set(*box.field, typed);
            continue;
        }
        const auto number = Decimal::parse(typed);
        if (!number) throw Refusal(QStringLiteral("Valeur numérique incorrecte : ") + typed, box.field->name);
        if (box.field->scale == Number::Whole && *number != number->rounded(0))
            throw Refusal(QStringLiteral("Nombre entier attendu : ") + typed, box.field->name);
        if (!Record::fits(*box.field, *number))
            throw Refusal(QStringLiteral("Valeur trop grande : ") + typed, box.field->name);
        record.set(*box.field, number->toString());
    }
}

bool RecordPanel::differsFrom(const Record& record) const {
    return std::any_of(boxes_.begin(), boxes_.end(), [&](const FieldBox& box) { return isChanged(box, record); });
}

QString RecordPanel::changesOf(const Record& shown, const Record& fresh) const {
    QStringList lines;
    for (const FieldBox& box : boxes_)
        if (textOf(box, shown) != textOf(box, fresh))
            lines.append(QString(box.caption).remove(u'&') + u' ' + textOf(box, shown) + QStringLiteral(" -> ") +
                         textOf(box, fresh));
    return lines.join(u'\n');
}

void RecordPanel::reread(const Record& shown, const Record& fresh) {
    QHash<const Field*, QString> typed;
    for (const FieldBox& box : boxes_)
        if (isChanged(box, shown)) typed.insert(box.field, edits_[box.field]->text());
    load(fresh);
    for (auto kept = typed.begin(); kept != typed.end(); ++kept) edits_[kept.key()]->put(kept.value());
}

void RecordPanel::open(const FieldBox& box, bool editable) {
    edits_[box.field]->setEditable(editable);
    if (QAbstractButton* list = listButton(*box.field)) list->setEnabled(editable);
}

void RecordPanel::setEditable(bool editable) {
    for (const FieldBox& box : boxes_) open(box, editable && !box.readOnly);
}

void RecordPanel::setEditableOnly(const QList<const Field*>& fields) {
    for (const FieldBox& box : boxes_) open(box, fields.contains(box.field));
}

} // namespace molven

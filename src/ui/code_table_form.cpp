#include "ui/code_table_form.h"

#include "ui/pick_panel.h"
#include "ui/printed_list.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

void CodeTableForm::build(const CodeTableView& view) {
    view_.emplace(view);
    auto* caption = new QLabel(view.caption, this);
    caption->setObjectName(QStringLiteral("Label1"));
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    grid_ = new Grid(QStringLiteral("DBGrid1"), view.columns, this);
    panel_ = new RecordPanel(view.boxes, 1, this);
    for (const FieldBox& box : panel_->boxes()) {
        bind(box.field->name, panel_->edit(*box.field));
        onLeft(panel_->edit(*box.field), [this] { shown(); });
    }
    for (const Text* key : view.kind.key)
        if (Edit* edit = panel_->edit(*key)) onLeft(edit, [this] { lookUp(); });
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return view_->database.select(view_->kind.table, view_->criterion && filter,
                                      order.terms.isEmpty() ? view_->order : order);
    });
    grid_->clickedRow = grid_->chosen = [this](const Record& record) {
        if (!adding_) show(record);
    };
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(grid_, 1);
    layout->addWidget(panel_);
    layout->addLayout(buttonRow());
    resize(860, 620);
    applyTitle(view.title);
    shown_ = blank();
    panel_->load(*shown_);
    setAdding(false);
    if (grid_->rows().rowCount() > 0) grid_->selectRow(0);
    grid_->setFocus();
}

QLayout* CodeTableForm::buttonRow() {
    add_ = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    change_ = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { write(); });
    remove_ = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { remove(); });
    validate_ = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { write(); });
    abandon_ = button(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* printButton = button(QStringLiteral("Cmdvisu"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* quit = button(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    extraButtons_ = new QHBoxLayout;
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add_, change_, remove_}) row->addWidget(made);
    row->addLayout(extraButtons_);
    row->addStretch();
    for (QPushButton* made : {validate_, abandon_, printButton, quit}) row->addWidget(made);
    if (view_->hasFixedRows)
        for (QPushButton* made : {add_, remove_, validate_}) made->hide();
    return row;
}

Record CodeTableForm::blank() const {
    Record record(view_->kind.table);
    for (const Assignment& preset : view_->preset) record.set(preset.field, preset.value);
    return record;
}

void CodeTableForm::setAdding(bool adding) {
    adding_ = adding;
    grid_->setEnabled(!adding);
    for (QPushButton* made : {add_, change_, remove_}) made->setEnabled(!adding);
    validate_->setEnabled(adding);
    setCancelButton(adding ? abandon_ : nullptr);
}

bool CodeTableForm::isKeyTyped() const {
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key) && typed(*key).isEmpty()) return false;
    return true;
}

Criterion CodeTableForm::typedKey() const {
    Record record = blank();
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key)) record.set(*key, typed(*key));
    return view_->kind.sameKey(record);
}

void CodeTableForm::lookUp() {
    if (!adding_ && isKeyTyped())
        if (const auto found = view_->database.find(view_->kind.table, typedKey())) show(*found);
    shown();
}

void CodeTableForm::show(const Record& record) {
    const auto fresh = view_->database.find(view_->kind.table, view_->kind.sameKey(record));
    shown_ = fresh ? *fresh : blank();
    panel_->load(*shown_);
    shown();
}

void CodeTableForm::startAdding() {
    shown_ = blank();
    panel_->load(*shown_);
    setAdding(true);
    shown();
    Edit* first = panel_->edit(*panel_->boxes().first().field);
    first->setFocus();
    first->selectAll();
}

void CodeTableForm::write() {
    Record record = *shown_;
    panel_->store(record);
    if (adding_) {
        code_tables::add(view_->database, view_->kind, record);
    } else {
        // A code typed over the one brought up names another record, or none.
        const bool same = view_->database.count(view_->kind.table, typedKey()) > 0;
        if (isKeyTyped() && !same) throw Refusal(view_->kind.missing, view_->kind.key.last()->name);
        code_tables::change(view_->database, view_->kind, record, *shown_);
    }
    shown_ = blank();
    panel_->load(*shown_);
    refresh();
    written(record);
}

void CodeTableForm::remove() {
    Record record = *shown_;
    panel_->store(record);
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "))) return;
    code_tables::remove(view_->database, view_->kind, record);
    abandon();
}

void CodeTableForm::abandon() {
    shown_ = blank();
    panel_->load(*shown_);
    refresh();
}

void CodeTableForm::refresh() {
    setAdding(false);
    shown();
    grid_->rows().refresh();
    if (grid_->rows().rowCount() > 0) grid_->selectRow(0);
    grid_->setFocus();
}

std::function<void(const Record&)> CodeTableForm::put(const Field& field, const Field& from) {
    return [this, &field, &from](const Record& row) {
        panel_->edit(field)->put(row.value(from));
        if (view_->kind.key.contains(static_cast<const Text*>(&field)))
            lookUp();
        else
            shown();
    };
}

void CodeTableForm::picker(const Field& field, const std::function<PickList()>& list) {
    onPick(
        panel_->edit(field), [this, list] { pick(list()); }, panel_->listButton(field));
}

void CodeTableForm::print() {
    RecordModel rows(view_->columns);
    const Order order = printOrder().value_or(view_->order);
    rows.setQuery([this, order](const Criterion&, const Order&) {
        return view_->database.select(view_->kind.table, view_->criterion, order);
    });
    desk().print(printedList(view_->caption, rows));
}

void CodeTableForm::closeEvent(QCloseEvent* event) {
    event->setAccepted(!panel_->differsFrom(*shown_) ||
                       prompt().ask(QStringLiteral("Abandonner les modifications en cours ?")));
}

} // namespace molven

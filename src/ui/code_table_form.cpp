#include "ui/code_table_form.h"

#include "data/format.h"
#include "dossier/references.h"
#include "ui/pick_panel.h"
#include "ui/printed_list.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace molven {

CodeTableForm::CodeTableForm(Desk& desk, const QString& name)
    : Form(desk, name), entry_(*this, QStringLiteral("Une fiche est en cours d'ajout : validez-la ou annulez")) {
    entry_.isTyped = [this] { return panel_->differsFrom(shownRecord()); }; // its boxes are open all the time
}

void CodeTableForm::build(const CodeTableView& view) {
    view_.emplace(view);
    auto* caption = new QLabel(view.caption, this);
    caption->setObjectName(QStringLiteral("Label1"));
    style::makeHeading(*caption);
    grid_ = new Grid(QStringLiteral("DBGrid1"), view.columns, this);
    panel_ = new RecordPanel(view.boxes, 1, this);
    panel_->markRequired(keyFields());
    for (const CodeTable::Required& field : view.kind.required) panel_->markRequired({&field.field});
    for (const FieldBox& box : panel_->boxes()) {
        const Field& field = *box.field;
        bind(field.name, panel_->edit(field));
        onLeft(panel_->edit(field), [this, &field] { left(field); });
    }
    codes_.emplace(*this, *panel_, view.files);
    codes_->valueOf = [this](const Text& field) { return blank().value(field); };
    codes_->wire([this](const Field& field) { left(field); });
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return view_->database.select(view_->kind.table, view_->criterion && filter, order.orElse(view_->order));
    });
    grid_->becameCurrent = grid_->chosen = [this](const Record& row) { bringUp(row); };
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body(caption), 1);
    layout->addLayout(buttonRow());
    resize(860, 620);
    applyTitle(view.title);
    entry_.view(blank());
    adapt();
    showRow(0);
    grid_->setFocus();
}

QLayout* CodeTableForm::body(QLabel* caption) {
    auto* column = new QVBoxLayout;
    column->addWidget(caption);
    column->addWidget(grid_, 1);
    column->addWidget(panel_);
    if (!view_->beside) return column;
    auto* row = new QHBoxLayout;
    row->setSpacing(style::WideGap);
    row->addLayout(column, 2);
    row->addWidget(view_->beside(), 5);
    return row;
}

QLayout* CodeTableForm::buttonRow() {
    auto* add = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    change_ = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { write(); });
    auto* remove = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { this->remove(); });
    validate_ = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { write(); });
    abandon_ = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { refresh(); });
    auto* printButton = button(QStringLiteral("Cmdvisu"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    entry_.add(RecordState::Acts::Idle, {add, change_, remove});
    if (!view_->validatesChanges) entry_.add(RecordState::Acts::Entering, {validate_});
    extraButtons_ = new QHBoxLayout;
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add, change_, remove}) row->addWidget(made);
    row->addLayout(extraButtons_);
    row->addStretch();
    for (QPushButton* made : {validate_, abandon_, printButton, quit}) row->addWidget(made);
    if (view_->hasFixedRows)
        for (QPushButton* made : {add, remove, validate_}) made->hide();
    return row;
}

Record CodeTableForm::blank() const {
    Record record(view_->kind.table);
    for (const Assignment& preset : view_->preset) record.set(preset.field, preset.value);
    return record;
}

void CodeTableForm::adapt() {
    const bool adding = entry_.isEntering();
    grid_->setEnabled(!adding);
    setDefaultButton(adding ? validate_ : nullptr); // beside it, Return walks from box to box
    setCancelButton(adding ? abandon_ : nullptr, true);
}

bool CodeTableForm::isKeyTyped() const {
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key) && typed(*key).isEmpty()) return false;
    return true;
}

Record CodeTableForm::typedKeyRecord() const {
    Record record = blank();
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key)) record.set(*key, typed(*key));
    return record;
}

Criterion CodeTableForm::typedKey() const { return view_->kind.sameKey(typedKeyRecord()); }

QList<const Field*> CodeTableForm::keyFields() const { return {view_->kind.key.begin(), view_->kind.key.end()}; }

/// The record in words: its codes, then its label.
QString CodeTableForm::nameOf(const Record& record) const {
    QStringList codes;
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key)) codes.append(record.value(*key));
    QString name = view_->caption + QStringLiteral(" : ") + codes.join(QStringLiteral(" / "));
    for (const GridColumn& column : view_->columns)
        if (column.field->kind == Field::Kind::Label) return name + QStringLiteral(", ") + record.value(*column.field);
    return name;
}

void CodeTableForm::left(const Field& field) { keyFields().contains(&field) ? lookUp() : showWords(); }

void CodeTableForm::showWords() {
    codes_->showWords();
    shown();
}

/// A code typed short stands as its table writes it: "2" is found as "002".
void CodeTableForm::completeKey() {
    const Text& code = *view_->kind.key.last();
    const QString brief = typed(code);
    Record wanted = typedKeyRecord();
    for (int width = static_cast<int>(brief.size()); width <= code.size; ++width) {
        wanted.set(code, padded(brief, width));
        if (view_->database.count(view_->kind.table, view_->kind.sameKey(wanted)) == 0) continue;
        return panel_->edit(code)->put(wanted.value(code));
    }
}

void CodeTableForm::lookUp() {
    const bool searching = !entry_.isEntering() && isKeyTyped();
    if (searching) completeKey();
    const auto found = searching ? view_->database.find(view_->kind.table, typedKey()) : std::nullopt;
    if (!found || view_->kind.isSameKey(*found, shownRecord())) return showWords();
    Record underTypedKey = shownRecord(); // another key is no work that would be lost, the other boxes are
    for (const Text* key : view_->kind.key)
        if (panel_->edit(*key)) underTypedKey.set(*key, typed(*key));
    if (!panel_->differsFrom(underTypedKey) || mayLoseWork()) return show(*found);
    for (const Text* key : view_->kind.key)
        if (Edit* edit = panel_->edit(*key)) edit->put(shownRecord().value(*key));
    showWords();
}

/// Another row became current: its record comes up, unless the user keeps what is typed over the one shown.
void CodeTableForm::bringUp(const Record& row) {
    if (entry_.isEntering()) return;
    if (!view_->kind.isSameKey(row, shownRecord()) && !mayLoseWork()) {
        const auto back = [this] { grid_->followRecord(shownRecord(), keyFields()); };
        QTimer::singleShot(0, this, back); // once the click is over
        return;
    }
    show(row);
}

void CodeTableForm::bringUp(const QString& code) {
    const Text& key = *view_->kind.key.last();
    Record wanted = blank();
    wanted.set(key, code);
    const auto found = view_->database.find(view_->kind.table, view_->kind.sameKey(wanted));
    if (!found) throw Refusal(QStringLiteral("Cette fiche n'existe plus"), key.name);
    if (mayLoseWork()) show(*found);
}

void CodeTableForm::show(const Record& record) {
    const auto fresh = view_->database.find(view_->kind.table, view_->kind.sameKey(record));
    entry_.view(fresh ? *fresh : blank());
    adapt();
    panel_->load(shownRecord());
    showWords();
    grid_->followRecord(shownRecord(), keyFields());
}

/// Shows the record of a row, the last one when there are fewer; empty boxes for an empty table.
void CodeTableForm::showRow(int row) {
    const auto record = grid_->rows().record(std::min(row, grid_->rows().rowCount() - 1));
    show(record ? *record : blank());
}

void CodeTableForm::startAdding() {
    if (!mayLoseWork()) return;
    entry_.startAdding(blank());
    adapt();
    panel_->load(shownRecord());
    showWords();
    Edit* first = panel_->edit(*panel_->boxes().first().field);
    first->setFocus();
    first->selectAll();
}

void CodeTableForm::save(const Record& record, const std::optional<Record>& before) {
    if (before)
        code_tables::change(view_->database, view_->kind, record, *before);
    else
        code_tables::add(view_->database, view_->kind, record);
}

/// Writes the record shown; false when another workstation had changed it meanwhile.
bool CodeTableForm::changed(const Record& record) {
    return entry_.change(
        [&] { save(record, shownRecord()); }, *panel_,
        [this] { return view_->database.find(view_->kind.table, view_->kind.sameKey(shownRecord())); });
}

void CodeTableForm::write() {
    const bool adding = entry_.isEntering();
    Record record = shownRecord();
    panel_->store(record);
    // A code typed over the one brought up names another record, or none.
    if (!adding && isKeyTyped() && view_->database.count(view_->kind.table, typedKey()) == 0)
        throw Refusal(view_->kind.missing, view_->kind.key.last()->name);
    if (adding)
        save(record, std::nullopt);
    else if (!changed(record))
        return;
    endEntry();
    show(record);
    grid_->setFocus(); // only now: an empty current row would become the first one
}

void CodeTableForm::remove() {
    Record record = typedKeyRecord();
    if (isKeyTyped()) {
        const auto stored = view_->database.find(view_->kind.table, typedKey());
        if (!stored) throw Refusal(view_->kind.missing, view_->kind.key.last()->name);
        const QString question = QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? ");
        if (!prompt().confirm(question, nameOf(*stored))) return;
        record = *stored;
    }
    const int row = grid_->currentIndex().row();
    references::remove(session(), record, [this, &record](references::Files& files) { erase(files, record); });
    endEntry();
    showRow(row);
    grid_->setFocus();
}

void CodeTableForm::refresh() {
    const Record before = shownRecord();
    endEntry();
    if (view_->database.count(view_->kind.table, view_->kind.sameKey(before)) > 0)
        show(before);
    else
        showRow(0);
    grid_->setFocus();
}

void CodeTableForm::rereadList() {
    grid_->rows().refresh();
    grid_->followRecord(shownRecord(), keyFields());
}

void CodeTableForm::endEntry() {
    entry_.view(entry_.record());
    adapt();
    grid_->rows().refresh();
}

void CodeTableForm::erase(references::Files& files, const Record& record) {
    code_tables::remove(files[view_->kind.file], view_->kind, record);
}

void CodeTableForm::print() {
    RecordModel rows(view_->columns);
    const Order order = printOrder().value_or(view_->order);
    rows.setQuery([this, order](const Criterion&, const Order&) {
        return view_->database.select(view_->kind.table, view_->criterion, order);
    });
    desk().print(printedList(view_->caption, rows));
}

} // namespace molven

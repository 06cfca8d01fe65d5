#include "ui/record_form.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

namespace molven {

RecordForm::RecordForm(Desk& desk, const QString& name)
    : Form(desk, name), entry_(*this, QStringLiteral("Une fiche est en cours de saisie : validez-la ou annulez")) {
    entry_.isTyped = [this] { return entry_.isEntering() && (panel_->differsFrom(*record()) || hasFurtherChanges()); };
}

void RecordForm::build(const Description& description) {
    description_.emplace(description);
    list_ = new Grid(QStringLiteral("DBGrid1"), description.list, this);
    list_->rows().setQuery(description.query);
    panel_ = new RecordPanel(description.boxes, description.columns, this);
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    codes_.emplace(*this, *panel_, description.files);
    codes_->wire([this](const Field&) { showWords(); });
    list_->becameCurrent = list_->chosen = [this](const Record& row) { bringUp(row); };
    panel_->edit(description.key)->isKey = true;
    panel_->markRequired(description.required + QList<const Field*>{&description.key});
    onLeft(panel_->edit(description.key), [this] { lookUp(); });

    auto* record = new QWidget(this);
    auto* recordLayout = new QVBoxLayout(record);
    style::nest(*recordLayout);
    recordLayout->addWidget(panel_);
    extraRows_ = new QVBoxLayout;
    recordLayout->addLayout(extraRows_);
    recordLayout->addStretch(1); // a high window leaves its room below the boxes, not between them
    // On a small screen a long record scrolls; its buttons stay in sight.
    auto* room = new QScrollArea(this);
    room->setFrameShape(QFrame::NoFrame);
    room->setWidgetResizable(true);
    room->setFocusPolicy(Qt::NoFocus);
    room->setWidget(record);
    auto* right = new QWidget(this);
    auto* rightLayout = new QVBoxLayout(right);
    style::nest(*rightLayout);
    rightLayout->addWidget(room, 1);
    rightLayout->addLayout(buttonRow());
    auto* left = new QWidget(this);
    underList_ = new QVBoxLayout(left);
    style::nest(*underList_);
    underList_->addWidget(list_, 1);
    auto* split = new QSplitter(this);
    split->addWidget(left);
    split->addWidget(right);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 3);
    split->setSizes({320, 940});
    split->setChildrenCollapsible(false);
    const QString place = habit() + QStringLiteral("/partage");
    split->restoreState(this->desk().habits.value(place).toByteArray());
    connect(split, &QSplitter::splitterMoved, this,
            [this, split, place] { this->desk().habits.set(place, split->saveState()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(split);
    resize(1264, 760);
    applyTitle(description.title);
    adapt();
    panel_->edit(description.key)->setFocus();
}

QLayout* RecordForm::buttonRow() {
    auto* add = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    auto* change = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { startChanging(); });
    auto* remove = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeRecord(); });
    auto* validation = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validate(); });
    auto* cancel = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    setDefaultButton(validation);
    setCancelButton(cancel);
    entry_.add(RecordState::Acts::Idle, {add, change, remove});
    entry_.add(RecordState::Acts::Entering, {validation, cancel});
    entry_.view({});
    extraButtons_ = new QHBoxLayout;
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add, change, remove}) row->addWidget(made);
    row->addLayout(extraButtons_);
    row->addStretch();
    for (QPushButton* made : {validation, cancel, quit}) row->addWidget(made);
    return row;
}

Record RecordForm::typed() const {
    Record typed = *record();
    panel_->store(typed);
    return typed;
}

const Record& RecordForm::requireRecord() const {
    if (!record()) throw Refusal(description_->noneChosen, description_->key.name);
    return *record();
}

void RecordForm::bringUp(const Record& row) {
    if (entry_.isEntering()) return;
    const auto fresh = find(row.value(description_->key));
    if (!fresh) throw Refusal(description_->unknown, description_->key.name);
    show(*fresh);
}

void RecordForm::bringUp(const QString& code) {
    const auto found = find(code);
    if (!found) throw Refusal(description_->unknown, description_->key.name);
    if (mayLoseWork()) show(*found);
}

void RecordForm::show(const Record& record) {
    panel_->load(record);
    entry_.view(record);
    adapt();
    list_->followRecord(record, {&description_->key});
}

void RecordForm::clearScreen() {
    const Record empty(blank().table());
    panel_->load(empty);
    entry_.view({});
    adapt();
    list_->followRecord(empty, {&description_->key});
}

/// Opens the boxes that the state leaves open.
void RecordForm::adapt() {
    if (entry_.isEntering())
        panel_->setEditable(true);
    else
        panel_->setEditableOnly({&description_->key});
    if (state() == State::Changing) panel_->edit(description_->key)->setEditable(false);
    list_->setEnabled(!entry_.isEntering());
    stateChanged();
    showWords();
}

void RecordForm::showWords() {
    codes_->showWords();
    shown();
}

void RecordForm::keyPicker(const std::function<PickList(const std::function<void(const Record&)>&)>& list) {
    onPick(panel_->edit(description_->key), [this, list] {
        if (!entry_.isEntering()) pick(list([this](const Record& row) { show(row); }));
    });
}

void RecordForm::lookUp() {
    if (entry_.isEntering()) return showWords();
    const QString key = panel_->edit(description_->key)->value().trimmed();
    if (key.isEmpty()) return clearScreen();
    const auto found = find(key);
    if (!found) throw Refusal(description_->unknown, description_->key.name);
    show(*found);
}

void RecordForm::startAdding() {
    entry_.startAdding(blank());
    panel_->load(*record());
    adapt();
    panel_->edit(description_->key)->setFocus();
    panel_->edit(description_->key)->selectAll();
}

void RecordForm::startChanging() {
    const auto fresh = find(requireRecord().value(description_->key));
    if (!fresh) throw Refusal(description_->unknown, description_->key.name);
    show(*fresh);
    entry_.startChanging();
    adapt();
    for (const FieldBox& box : panel_->boxes()) {
        if (panel_->edit(*box.field)->isReadOnly()) continue;
        panel_->edit(*box.field)->setFocus();
        break;
    }
}

void RecordForm::validate() {
    const Record record = typed();
    if (state() == State::Adding)
        write(record, std::nullopt);
    else if (!entry_.change([&] { write(record, this->record()); }, *panel_,
                            [this] { return find(this->record()->value(description_->key)); }))
        return;
    const auto written = find(record.value(description_->key).trimmed());
    list_->rows().refresh();
    show(written ? *written : record);
    panel_->edit(description_->key)->setFocus();
}

void RecordForm::abandon() {
    if (!mayLoseWork()) return;
    const auto before =
        record() && state() == State::Changing ? find(record()->value(description_->key)) : std::nullopt;
    if (before)
        show(*before);
    else
        clearScreen();
    panel_->edit(description_->key)->setFocus();
}

void RecordForm::removeRecord() {
    const Record record = requireRecord();
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "), nameOf(record))) return;
    erase(record);
    list_->rows().refresh();
    clearScreen();
}

} // namespace molven

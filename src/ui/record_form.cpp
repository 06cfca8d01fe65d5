#include "ui/record_form.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

namespace molven {

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
    recordLayout->addStretch();
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
    auto* split = new QSplitter(this);
    split->addWidget(list_);
    split->addWidget(right);
    split->setStretchFactor(1, 1);
    split->setSizes({380, 880});
    split->setChildrenCollapsible(false);
    const QString place = habit() + QStringLiteral("/partage");
    split->restoreState(this->desk().habits.value(place).toByteArray());
    connect(split, &QSplitter::splitterMoved, this,
            [this, split, place] { this->desk().habits.set(place, split->saveState()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(split);
    resize(1264, 760);
    applyTitle(description.title);
    setState(State::Viewing);
    panel_->edit(description.key)->setFocus();
}

QLayout* RecordForm::buttonRow() {
    add_ = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    change_ = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { startChanging(); });
    remove_ = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeRecord(); });
    validate_ = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validate(); });
    abandon_ = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    setDefaultButton(validate_);
    setCancelButton(abandon_);
    extraButtons_ = new QHBoxLayout;
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add_, change_, remove_}) row->addWidget(made);
    row->addLayout(extraButtons_);
    row->addStretch();
    for (QPushButton* made : {validate_, abandon_, quit}) row->addWidget(made);
    return row;
}

Record RecordForm::typed() const {
    Record record = *record_;
    panel_->store(record);
    return record;
}

const Record& RecordForm::requireRecord() const {
    if (!record_) throw Refusal(description_->noneChosen, description_->key.name);
    return *record_;
}

void RecordForm::bringUp(const Record& row) {
    if (state_ != State::Viewing) return;
    const auto fresh = find(row.value(description_->key));
    if (!fresh) throw Refusal(description_->unknown, description_->key.name);
    show(*fresh);
}

void RecordForm::show(const Record& record) {
    record_ = record;
    panel_->load(record);
    setState(State::Viewing);
    list_->followRecord(record, {&description_->key});
}

void RecordForm::clearScreen() {
    show(Record(blank().table()));
    record_.reset();
}

void RecordForm::setState(State state) {
    state_ = state;
    const bool editing = state != State::Viewing;
    if (state == State::Viewing)
        panel_->setEditableOnly({&description_->key});
    else
        panel_->setEditable(true);
    if (state == State::Changing) panel_->edit(description_->key)->setEditable(false);
    list_->setEnabled(!editing);
    for (QPushButton* made : {add_, change_, remove_})
        allow(made, !editing, QStringLiteral("Une fiche est en cours de saisie : validez-la ou annulez"));
    for (QPushButton* made : {validate_, abandon_})
        allow(made, editing, QStringLiteral("Rien n'est en cours de saisie : ajoutez ou modifiez une fiche"));
    stateChanged();
    showWords();
}

void RecordForm::showWords() {
    codes_->showWords();
    shown();
}

void RecordForm::picker(const Field& field, const std::function<PickList()>& list) {
    onPick(panel_->edit(field), [this, list] {
        if (state_ != State::Viewing) pick(list());
    });
}

void RecordForm::keyPicker(const std::function<PickList(const std::function<void(const Record&)>&)>& list) {
    onPick(panel_->edit(description_->key), [this, list] {
        if (state_ == State::Viewing) pick(list([this](const Record& row) { show(row); }));
    });
}

std::function<void(const Record&)> RecordForm::put(const Field& field, const Field& from) {
    return [this, &field, &from](const Record& row) {
        panel_->edit(field)->put(row.value(from));
        showWords();
    };
}

void RecordForm::lookUp() {
    if (state_ != State::Viewing) return showWords();
    const QString key = panel_->edit(description_->key)->value().trimmed();
    if (key.isEmpty()) return clearScreen();
    const auto found = find(key);
    if (!found) throw Refusal(description_->unknown, description_->key.name);
    show(*found);
}

void RecordForm::startAdding() {
    record_ = blank();
    panel_->load(*record_);
    setState(State::Adding);
    panel_->edit(description_->key)->setFocus();
    panel_->edit(description_->key)->selectAll();
}

void RecordForm::startChanging() {
    const auto fresh = find(requireRecord().value(description_->key));
    if (!fresh) throw Refusal(description_->unknown, description_->key.name);
    show(*fresh);
    setState(State::Changing);
    for (const FieldBox& box : panel_->boxes()) {
        if (panel_->edit(*box.field)->isReadOnly()) continue;
        panel_->edit(*box.field)->setFocus();
        break;
    }
}

void RecordForm::validate() {
    const Record record = typed();
    if (state_ == State::Adding) {
        write(record, std::nullopt);
    } else {
        const auto fresh = [this] {
            const auto found = find(record_->value(description_->key));
            if (!found) throw Refusal(QStringLiteral("Cette fiche a été supprimée par un autre poste"));
            return *found;
        };
        const auto changes = [&] { return panel_->changesOf(*record_, fresh()); };
        const auto reread = [&] {
            const Record now = fresh();
            panel_->reread(*record_, now);
            record_ = now;
        };
        if (!Form::written([&] { write(record, record_); }, changes, reread)) return;
    }
    const auto written = find(record.value(description_->key).trimmed());
    list_->rows().refresh();
    show(written ? *written : record);
    panel_->edit(description_->key)->setFocus();
}

void RecordForm::abandon() {
    if (!mayLoseWork()) return;
    const auto before = record_ && state_ == State::Changing ? find(record_->value(description_->key)) : std::nullopt;
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

bool RecordForm::hasUnsavedWork() const {
    return state_ != State::Viewing && (panel_->differsFrom(*record_) || hasFurtherChanges());
}

} // namespace molven

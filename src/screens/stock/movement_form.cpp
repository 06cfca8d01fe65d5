#include "screens/stock/movement_form.h"

#include "data/dates.h"
#include "data/format.h"
#include "reference/articles.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const QString QuantityPattern = QStringLiteral("###0.00"), PricePattern = QStringLiteral("#####0.000");

QList<GridColumn> movementColumns() {
    const auto& m = strmvtstk;
    return {{&m.dat_stk, QStringLiteral("Date"), 90},
            {&m.ref_stk, QStringLiteral("Référence"), 130},
            {&m.eta_stk, QStringLiteral("Etat"), 50},
            {&m.qte_stk, QStringLiteral("Quantité"), 90, QuantityPattern},
            {&m.pri_stk, QStringLiteral("Prix d'achat"), 100, PricePattern},
            {&m.com_stk, QStringLiteral("Commentaire"), 330},
            {&m.memo_stk, QStringLiteral("Mémo"), 200}};
}

QList<FieldBox> movementBoxes() {
    const auto& m = strmvtstk;
    return {{&m.ref_stk, QStringLiteral("&Référence :"), {}, 0, {}, false, false, QStringLiteral("Cmdref")},
            {&m.dat_stk, QStringLiteral("&Date :"), QStringLiteral("Mskdat_stk"), 0, {}, true},
            {&m.eta_stk, QStringLiteral("&Etat (E/S/I) :")},
            {&m.qte_stk, QStringLiteral("Q&uantité :"), {}, 10, QuantityPattern},
            {&m.pri_stk, QStringLiteral("&Prix d'achat :"), {}, 10, PricePattern},
            {&m.com_stk, QStringLiteral("&Commentaire :"), {}, 34},
            {&m.memo_stk, QStringLiteral("Mém&o :"), {}, 34}};
}

} // namespace

MovementForm::MovementForm(Desk& desk)
    : Form(desk, QStringLiteral("T_nsvges")), files_(openMovementFiles(workspace_, session())) {
    grid_ = new Grid(QStringLiteral("DBGrid1"), movementColumns(), this);
    grid_->becameCurrent = grid_->chosen = [this](const Record& movement) { bringUp(movement); };
    buildPanel();
    stock_ = new QLabel(this);
    stock_->setObjectName(QStringLiteral("lblstock"));
    style::emphasise(*stock_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addWidget(panel_);
    layout->addWidget(stock_);
    layout->addLayout(buttonRow());
    resize(1000, 680);
    applyTitle(QStringLiteral("Entrées / sorties de stock des articles non suivis"));
    setState(State::Viewing);
    list({});
    panel_->edit(strmvtstk.ref_stk)->setFocus();
}

void MovementForm::buildPanel() {
    const auto& m = strmvtstk;
    panel_ = new RecordPanel(movementBoxes(), 2, this);
    panel_->markRequired({&m.ref_stk, &m.dat_stk, &m.eta_stk, &m.qte_stk});
    panel_->edit(m.ref_stk)->isKey = true;
    codes_.emplace(*this, *panel_, QHash<DataFile, Database>{{DataFile::Molven, files_.molven}});
    for (const FieldBox& box : panel_->boxes()) {
        const Field& field = *box.field;
        bind(field.name, panel_->edit(field));
        onLeft(panel_->edit(field), [this, &field] { leave(field); });
    }
    codes_->wire([this](const Field& field) { leave(field); });
    codes_->list(m.ref_stk, [this] {
        return pick_lists::articles(files_.molven, codes_->put(strmvtstk.ref_stk, strarticle.art_ref),
                                    strarticle.art_aig == follow_up::ByMovements);
    });
}

QLayout* MovementForm::buttonRow() {
    add_ = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    change_ = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { startChanging(); });
    remove_ = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeMovement(); });
    validate_ = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validate(); });
    abandon_ = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* edition = button(QStringLiteral("Cmdedt"), QStringLiteral("Édi&tion"),
                           [this] { this->desk().open(QStringLiteral("T_nsvedt")); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add_, change_, remove_, edition}) row->addWidget(made);
    row->addStretch();
    for (QPushButton* made : {validate_, abandon_, quit}) row->addWidget(made);
    return row;
}

void MovementForm::setState(State state) {
    state_ = state;
    const bool isEditing = state != State::Viewing;
    if (isEditing)
        panel_->setEditable(true);
    else
        panel_->setEditableOnly({&strmvtstk.ref_stk});
    grid_->setEnabled(!isEditing);
    for (QPushButton* made : {add_, change_, remove_})
        allow(made, !isEditing, QStringLiteral("Un mouvement est en cours de saisie : validez-le ou annulez"));
    for (QPushButton* made : {validate_, abandon_})
        allow(made, isEditing, QStringLiteral("Rien n'est en cours de saisie : ajoutez ou modifiez un mouvement"));
    setDefaultButton(isEditing ? validate_ : nullptr);
    setCancelButton(isEditing ? abandon_ : nullptr);
    showWords();
}

void MovementForm::leave(const Field& field) {
    const auto& m = strmvtstk;
    if (&field == &m.ref_stk) return referenceLeft();
    if (state_ == State::Viewing) return;
    if (&field == &m.qte_stk) movements::checkQuantity(panel_->number(m.qte_stk, shown_));
    for (const Text* checked : {&m.eta_stk, &m.dat_stk})
        if (&field == checked) movements::checkValue(files_.molven, *checked, typed(field));
    showWords();
}

/// The article typed: its stock, and its movements in place of those that were listed.
void MovementForm::referenceLeft() {
    QString reference = typed(strmvtstk.ref_stk);
    if (!reference.isEmpty()) {
        reference = movements::requireArticle(files_.molven, reference).value(strarticle.art_ref);
        panel_->edit(strmvtstk.ref_stk)->put(reference);
    }
    if (state_ != State::Viewing) return showWords();
    list(reference);
    if (!reference.isEmpty() && grid_->rows().rowCount() == 0)
        notify(QStringLiteral("aucun mouvement sur cette référence"));
}

void MovementForm::showArticle(const QString& reference) {
    if (!mayLoseWork()) return;
    setState(State::Viewing);
    list(reference);
}

void MovementForm::list(const QString& reference) {
    listed_ = reference;
    movement_.reset();
    if (reference.isEmpty())
        grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
            const auto& m = strmvtstk;
            return files_.molven.select(m, filter, order.orElse(Order{m.tri_stk, m.ref_stk, m.eta_stk}));
        });
    else
        grid_->rows().setRecords(movements::of(files_, reference));
    shown_ = Record(strmvtstk);
    shown_[strmvtstk.ref_stk] = reference;
    panel_->load(shown_);
    showWords();
}

void MovementForm::bringUp(const Record& movement) {
    if (state_ != State::Viewing) return;
    movement_ = shown_ = movement;
    panel_->load(movement);
    showWords();
}

void MovementForm::showWords() {
    codes_->showWords();
    const auto article = articles::find(files_.molven, typed(strmvtstk.ref_stk));
    stock_->setText(article ? QStringLiteral("Stock actuel : ") + shown((*article)[strarticle.art_stk]) : QString());
    const QString kind = typed(strmvtstk.eta_stk);
    panel_->setHint(strmvtstk.eta_stk, kind.isEmpty() ? QString() : movements::kindName(kind));
}

const Record& MovementForm::requireMovement() const {
    if (!movement_) throw Refusal(QStringLiteral("Aucun mouvement sélectionné"));
    return *movement_;
}

void MovementForm::startAdding() {
    shown_ = movements::blank(typed(strmvtstk.ref_stk));
    panel_->load(shown_);
    setState(State::Adding);
    panel_->edit(typed(strmvtstk.ref_stk).isEmpty() ? static_cast<const Field&>(strmvtstk.ref_stk) : strmvtstk.eta_stk)
        ->setFocus();
}

void MovementForm::startChanging() {
    const auto now = movements::find(files_, requireMovement());
    if (!now) {
        list(listed_);
        throw Refusal(QStringLiteral("Ce mouvement a été modifié ou supprimé par un autre poste"));
    }
    bringUp(*now);
    setState(State::Changing);
    panel_->edit(strmvtstk.qte_stk)->setFocus();
}

void MovementForm::validate() {
    Record movement = shown_;
    panel_->store(movement);
    if (state_ == State::Changing) return change(movement);
    const Record written = movements::add(files_, movement);
    setState(State::Viewing);
    list(written[strmvtstk.ref_stk]);
    grid_->followRecord(written, {&strmvtstk.uid_stk});
    bringUp(written);
    add_->setFocus();
}

void MovementForm::change(const Record& movement) {
    const auto fresh = [this] {
        const auto found = movements::find(files_, *movement_);
        if (!found) throw Refusal(QStringLiteral("Ce mouvement a été modifié ou supprimé par un autre poste"));
        return *found;
    };
    std::optional<Record> stored;
    const auto reread = [&] {
        const Record now = fresh();
        panel_->reread(shown_, now);
        movement_ = shown_ = now;
    };
    if (!written([&] { stored = movements::change(files_, *movement_, movement); },
                 [&] { return panel_->changesOf(shown_, fresh()); }, reread))
        return;
    setState(State::Viewing);
    list(listed_.isEmpty() ? QString() : QString((*stored)[strmvtstk.ref_stk]));
    grid_->followRecord(*stored, {&strmvtstk.uid_stk});
    bringUp(*stored);
}

void MovementForm::abandon() {
    if (!mayLoseWork()) return;
    const std::optional<Record> before = movement_;
    setState(State::Viewing);
    list(listed_);
    if (before) {
        bringUp(*before);
        grid_->followRecord(*before, {&strmvtstk.uid_stk});
    }
    panel_->edit(strmvtstk.ref_stk)->setFocus();
}

void MovementForm::removeMovement() {
    const Record movement = requireMovement();
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer ce mouvement ? "),
                          movements::title(movement)))
        return;
    movements::remove(files_, movement);
    list(listed_);
    panel_->edit(strmvtstk.ref_stk)->setFocus();
}

bool MovementForm::hasUnsavedWork() const { return state_ != State::Viewing && panel_->differsFrom(shown_); }

} // namespace molven

#include "screens/reference/parameter_form.h"

#include "data/errors.h"
#include "ui/grid.h"
#include "ui/record_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const ParameterList& listOf(const QString& mode) {
    const ParameterList* found = parameters::listOfMode(mode);
    if (!found) throw Refusal(QStringLiteral("Cette liste n'est pas encore disponible dans cette version."));
    return *found;
}

QList<FieldBox> boxes(const QString& letter) {
    QList<FieldBox> made{{&strparam.num_par, QStringLiteral("&Code :"), QStringLiteral("Txtnum"), 6},
                         {&strparam.lib_par, QStringLiteral("Li&bellé :"), {}, 34}};
    if (letter == list::SubFamily)
        made.append({&strparam.cpt_par, QStringLiteral("&Famille :"), QStringLiteral("txtcf"), 6});
    else
        made.append({&strparam.cpt_par, QStringLiteral("C&ompte :"), QStringLiteral("Txtcpt"), 9});
    if (letter == list::Depot)
        made.append({&strparam.fam_dep, QStringLiteral("&Famille dépôt :"), QStringLiteral("txtfamd"), 6});
    return made;
}

} // namespace

ParameterForm::ParameterForm(Desk& desk)
    : Form(desk, QStringLiteral("T_param")),
      molven_(workspace_.open(session().molven())),
      list_(listOf(mode())),
      grid_(new Grid(QStringLiteral("DBGrid1"),
                     {{&strparam.num_par, QStringLiteral("Code"), 80},
                      {&strparam.lib_par, QStringLiteral("Libellé"), 340},
                      {&strparam.cpt_par,
                       list_.letter == list::SubFamily ? QStringLiteral("Famille") : QStringLiteral("Compte"), 90}},
                     this)),
      panel_(new RecordPanel(boxes(list_.letter), 1, this)) {
    auto* caption = new QLabel(list_.caption, this);
    caption->setObjectName(QStringLiteral("Label1"));
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return molven_.select(strparam, parameters::ofList(list_.letter) && filter,
                              order.terms.isEmpty() ? Order(strparam.num_par) : order);
    });
    grid_->clickedRow = grid_->chosen = [this](const Record& entry) {
        if (!adding_) show(entry);
    };
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(grid_, 1);
    layout->addWidget(panel_);
    layout->addLayout(buttonRow());
    resize(640, 560);
    applyTitle(QStringLiteral("Paramètres : ") + list_.caption);
    setAdding(false);
    if (grid_->rows().rowCount() > 0) grid_->selectRow(0);
    grid_->setFocus();
}

QLayout* ParameterForm::buttonRow() {
    add_ = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startAdding(); });
    change_ = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { write(); });
    remove_ = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { remove(); });
    validate_ = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { write(); });
    auto* abandon = button(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { leaveEntry(); });
    auto* quit = button(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {add_, change_, remove_}) row->addWidget(made);
    row->addStretch();
    for (QPushButton* made : {validate_, abandon, quit}) row->addWidget(made);
    return row;
}

void ParameterForm::setAdding(bool adding) {
    adding_ = adding;
    panel_->edit(strparam.num_par)->setEditable(adding);
    grid_->setEnabled(!adding);
    for (QPushButton* made : {add_, change_, remove_}) made->setEnabled(!adding);
    validate_->setEnabled(adding);
    setCancelButton(adding ? findChild<QPushButton*>(QStringLiteral("cmdannule")) : nullptr);
}

void ParameterForm::show(const Record& entry) {
    const auto fresh = parameters::find(molven_, list_.letter, entry[strparam.num_par]);
    shown_ = fresh ? *fresh : Record(strparam);
    panel_->load(shown_);
}

void ParameterForm::startAdding() {
    shown_ = Record(strparam);
    panel_->load(shown_);
    setAdding(true);
    panel_->edit(strparam.num_par)->setFocus();
}

void ParameterForm::write() {
    Record entry = shown_;
    panel_->store(entry);
    entry[strparam.cod_par] = list_.letter;
    if (adding_)
        parameters::add(molven_, entry);
    else
        parameters::change(molven_, entry, shown_);
    leaveEntry();
}

void ParameterForm::remove() {
    const QString code = panel_->edit(strparam.num_par)->value();
    if (code.isEmpty()) throw Refusal(QStringLiteral(" Code obligatoire"), strparam.num_par.name);
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "))) return;
    parameters::remove(molven_, list_.letter, code);
    leaveEntry();
}

void ParameterForm::leaveEntry() {
    setAdding(false);
    shown_ = Record(strparam);
    panel_->load(shown_);
    grid_->rows().refresh();
    if (grid_->rows().rowCount() > 0) grid_->selectRow(0);
    grid_->setFocus();
}

} // namespace molven

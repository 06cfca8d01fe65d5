#include "screens/stock/sets/set_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "dossier/references.h"
#include "reference/article_tables.h"
#include "reference/parameter_tables.h"
#include "screens/stock/sets/set_columns.h"
#include "screens/stock/sets/set_composition.h"
#include "screens/stock/sets/set_shelf.h"
#include "screens/stock/sets/set_trays.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/printed_list.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const AncillaryTypes& t = strancillaire;
const QString Price = QStringLiteral("#####0.00");
const QString ListTitle = QStringLiteral("LES ANCILLAIRES ");

QList<FieldBox> setBoxes() {
    const auto price = [](const Number& field, const char* caption) {
        return FieldBox{.field = &field, .caption = QString::fromUtf8(caption), .characters = 10, .pattern = Price};
    };
    const auto beside = [](FieldBox box) {
        box.beside = true;
        return box;
    };
    return {{&t.anc_code, QStringLiteral("Code :")},
            {&t.anc_lib, QStringLiteral("Libellé :"), {}, 26},
            {&t.anc_tva, QStringLiteral("Code TVA :")},
            price(t.anc_ht, "Prix HT :"),
            beside(price(t.anc_ttc, "TTC :")),
            price(t.anc_pa, "Prix d'achat :"),
            {&t.anc_cpt, QStringLiteral("Compte vente :")},
            beside({&t.anc_cpte, QStringLiteral("Export :")}),
            {&t.anc_cpta, QStringLiteral("Compte achat :")},
            beside({&t.anc_cpts, QStringLiteral("Stock :")}),
            {&t.anc_tar, QStringLiteral("Base H/T :")}};
}

/// The printed list of the sets: "Edition du : 25/11/2026 à 15:04  /  Page : 1" on each page.
Report listOf(const QList<Record>& sets) {
    const SetStates& e = stretatanc;
    Report report(ListTitle,
                  {{QStringLiteral("N° ancillaire")},
                   {QStringLiteral("Dépôt")},
                   {QStringLiteral("Nom")},
                   {QStringLiteral("Depuis le")},
                   {QStringLiteral("Bon")},
                   {QStringLiteral("Unités"), true},
                   {QStringLiteral("Sur"), true},
                   {QStringLiteral("Etat")},
                   {QStringLiteral("Péremption")}},
                  QStringLiteral("VERDANA"));
    report.headPages(QStringLiteral("Edition du : %1 à %2  /  Page : ")
                         .arg(dateText(Clock::today()), Clock::now().toString(QStringLiteral("hh:mm"))));
    QString type;
    for (const Record& set : sets) {
        if (set[e.stk_anc_code] != type) report.group(set[e.stk_anc_code], set[e.stk_anc_lib]);
        type = set[e.stk_anc_code];
        report.row({set[e.stk_anc_imm], set[e.stk_num_dep], set[e.stk_nom_dep], set[e.stk_dat_vte], set[e.stk_num_vte],
                    set[e.eta_nb].toString(), set[e.eta_tot].toString(), set[e.eta_com], set[e.eta_per]});
    }
    report.count();
    return report;
}

} // namespace

SetForm::SetForm(Desk& desk)
    : CodeTableForm(desk, QStringLiteral("AN_base")),
      notes_(session(), documentKind(QStringLiteral("BTR"))),
      files_{notes_.molven, notes_.workspace.open(session().path(DataFile::Compta)),
             notes_.workspace.open(session().path(DataFile::Ancillaire))},
      journeys_{notes_, files_.ancillaire} {
    CodeTableView view{QStringLiteral("Gestion des ancillaires"),
                       QStringLiteral("LES ANCILLAIRES"),
                       set_types::table(),
                       files_.ancillaire,
                       {{&t.anc_code, QStringLiteral("Code"), 110},
                        {&t.anc_lib, QStringLiteral("Libellé"), 220},
                        {&t.anc_stk, QStringLiteral("Nombre"), 60}},
                       setBoxes(),
                       t.anc_code};
    view.files = {{DataFile::Molven, files_.molven}, {DataFile::Compta, files_.compta}};
    view.validatesChanges = true;
    view.beside = [this] { return workbench(); };
    build(view);
    wireLists();
    extraButtons()->addWidget(button(QStringLiteral("cmdetat"), QStringLiteral("Liste &générale"),
                                     [this] { this->desk().open(QStringLiteral("AN_etat")); }));
    resize(1264, 720);
    applyTitle(view.title);
}

QWidget* SetForm::workbench() {
    auto* bench = new QWidget(this);
    composition_ = new SetComposition(*this, files_);
    shelf_ = new SetShelf(*this, journeys_);
    composition_->chosen = [this] {
        const auto component = composition_->component();
        shelf_->follow(component ? QString((*component)[strnomenclature.anc_article]) : QString());
    };
    composition_->changed = [this] { shelf_->show(shownType_); };
    shelf_->changed = [this] { rereadList(); };
    shelf_->trayOpened = [this](const SetTray* tray) {
        setCancelButton(tray ? tray->cancel() : nullptr, true);
        setDefaultButton(tray ? tray->validation() : nullptr);
    };
    auto* layout = new QVBoxLayout(bench);
    style::nest(*layout);
    layout->addWidget(composition_, 2);
    layout->addWidget(shelf_, 5);
    return bench;
}

void SetForm::wireLists() {
    const auto accounts = [this](const Text& field, const char* start) {
        picker(field, [this, &field, start] {
            return pick_lists::accounts(files_.compta, QString::fromLatin1(start), put(field, strplan.cpt_aff));
        });
    };
    accounts(t.anc_cpt, "7");
    accounts(t.anc_cpte, "7");
    accounts(t.anc_cpta, "6");
    accounts(t.anc_cpts, "3");
    picker(t.anc_tva, [this] {
        return pick_lists::vatCodes(files_.molven, put(t.anc_tva, strparfac.par1_cde), set_types::ofArticles());
    });
    picker(t.anc_code, [this] {
        return pick_lists::articles(files_.molven, put(t.anc_code, strarticle.art_ref),
                                    strarticle.art_anc == QStringLiteral("X"));
    });
}

/// Another type came up, or the boxes were left.
void SetForm::shown() {
    if (isAdding()) copyTypedArticle();
    composition_->setEnabled(!isAdding());
    shelf_->setEnabled(!isAdding());
    const QString type = record()[t.anc_code];
    if (type == shownType_) return;
    shownType_ = type;
    composition_->show(type);
    shelf_->show(type);
}

/// The code of a new type that is an article's brings the article's values with it.
void SetForm::copyTypedArticle() {
    const QString code = typed(t.anc_code);
    if (code == copied_) return;
    copied_ = code;
    const auto article = set_types::articleOf(files_.molven, code);
    if (!article) return;
    Record type = record();
    set_types::copyArticle(*article, type);
    panel().load(type);
}

void SetForm::save(const Record& record, const std::optional<Record>& before) {
    set_types::save(files_, record, before);
    copied_.clear();
}

void SetForm::erase(references::Files& files, const Record& record) {
    set_types::remove(files[DataFile::Ancillaire], record);
}

void SetForm::print() {
    const QList<Record> sets = set_overview::rows(files_.molven, files_.ancillaire);
    QList<Record> byType;
    for (const Record& type : files_.ancillaire.select(strancillaire, {}, t.anc_code))
        for (const Record& set : sets)
            if (set[stretatanc.stk_anc_code].compare(type[t.anc_code], Qt::CaseInsensitive) == 0) byType.append(set);
    desk().print(listOf(byType));
}

bool SetForm::hasUnsavedWork() const {
    return CodeTableForm::hasUnsavedWork() || (shelf_ && shelf_->hasUnsavedWork()) ||
           (composition_ && composition_->hasUnsavedWork());
}

SetStateForm::SetStateForm(Desk& desk)
    : Form(desk, QStringLiteral("AN_etat")),
      molven_(workspace_.open(session().molven())),
      ancillaire_(workspace_.open(session().path(DataFile::Ancillaire))),
      grid_(new Grid(QStringLiteral("DBGrid1"), set_columns::ofAllTypes(), this)),
      count_(new QLabel(this)) {
    count_->setObjectName(QStringLiteral("Label1"));
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] {
        this->desk().print(printedList(QStringLiteral("ETAT DES ANCILLAIRES"), grid_->rows()));
    });
    auto* exportButton = button(QStringLiteral("Cmdexp"), QStringLiteral("&Exporter"), [this] { grid_->exportCsv(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    row->addWidget(count_, 1);
    for (QPushButton* made : {printButton, exportButton, quit}) row->addWidget(made);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addLayout(row);
    resize(1180, 600);
    applyTitle(QStringLiteral("Liste générale des ancillaires"));
    refresh();
    grid_->setFocus();
}

void SetStateForm::bringUp(const QString& serial) {
    Record wanted(stretatanc);
    wanted[stretatanc.stk_anc_imm] = serial;
    grid_->followRecord(wanted, {&stretatanc.stk_anc_imm});
    if (!grid_->current()) throw Refusal(QStringLiteral("Cet ancillaire n'existe plus"), {});
}

void SetStateForm::refresh() {
    const QList<Record> sets = set_overview::urgentFirst(set_overview::rows(molven_, ancillaire_));
    grid_->rows().setRecords(sets);
    if (!sets.isEmpty()) grid_->selectRow(0);
    const auto away = std::count_if(sets.begin(), sets.end(),
                                    [](const Record& set) { return !QString(set[stretatanc.stk_nom_dep]).isEmpty(); });
    const auto partial =
        std::count_if(sets.begin(), sets.end(), [](const Record& set) { return !set_overview::isComplete(set); });
    count_->setText(QStringLiteral("Nbre sélection : %1, chez des clients : %2, incomplets : %3")
                        .arg(sets.size())
                        .arg(away)
                        .arg(partial));
}

} // namespace molven

#include "screens/stock/listing_forms.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameter_tables.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/party_tables.h"
#include "sales/unit_removal.h"
#include "stock/labels.h"
#include "stock/patient_enquiry.h"
#include "stock/units.h"
#include "ui/criteria_panel.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/printed_list.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>

namespace molven {

namespace {

CriterionBox listBox(const char* name, const char* caption, const QStringList& options) {
    return {QString::fromLatin1(name), QString::fromUtf8(caption), 0, CriterionBox::Kind::Text, options};
}

/// What units are asked, in words.
QString wordsOf(const ListingSelection& selection) {
    const QString words = listing::words(unit_listing::criteria(), selection);
    return QStringLiteral("Sélection : ") + (words.isEmpty() ? QStringLiteral("tous les produits") : words);
}

CriterionBox boxOf(const ListingCriterion& one) {
    using Match = ListingCriterion::Match;
    const int characters = one.match == Match::Year ? 4 : std::min(one.field.size, 16);
    return {one.control, one.caption, characters,
            one.match == Match::ExpiresBy ? CriterionBox::Kind::Month
            : one.match == Match::Date    ? CriterionBox::Kind::Day
                                          : CriterionBox::Kind::Text};
}

/// The criteria not in `known` yet: two listings of one screen share their boxes.
void append(QList<CriterionBox>& known, const ListingCriteria& criteria) {
    const auto isNew = [&known](const QString& name) {
        return std::none_of(known.begin(), known.end(), [&](const CriterionBox& box) { return box.name == name; });
    };
    for (const ListingCriterion& one : criteria.boxes)
        if (isNew(one.control)) known.append(boxOf(one));
    for (const ListingChoice& choice : criteria.choices) {
        QStringList options;
        for (const ListingOption& option : choice.options) options.append(option.caption);
        known.append({choice.control, choice.caption, 0, CriterionBox::Kind::Text, options});
    }
}

ListingSelection selectionOf(const CriteriaPanel& panel, const ListingCriteria& criteria) {
    ListingSelection selection;
    selection.values = panel.values();
    for (const ListingChoice& choice : criteria.choices)
        selection.choices.insert(choice.control, panel.choice(choice.control));
    selection.order = panel.choice(QStringLiteral("Cmbtri"));
    return selection;
}

/// The other criteria unfold when they are asked for.
void setUsual(QList<CriterionBox>& boxes, const QStringList& names) {
    for (CriterionBox& box : boxes) box.isUsual = names.contains(box.name);
}

QList<CriterionBox> unitBoxes() {
    QList<CriterionBox> boxes;
    append(boxes, unit_listing::criteria());
    boxes.append(listBox("Cmbtri", "Tri par :", unit_listing::orders()));
    boxes.append(listBox("Cmbrelance", "Relance :", {QStringLiteral("Non"), QStringLiteral("Oui")}));
    setUsual(boxes, {QStringLiteral("DEBIMM"), QStringLiteral("FINIMM"), QStringLiteral("REFD"), QStringLiteral("REFF"),
                     QStringLiteral("REF1"), QStringLiteral("txtnum_dep"), QStringLiteral("txtlot_art"),
                     QStringLiteral("txtdat_per"), QStringLiteral("txtfou_cde"), QStringLiteral("txtreg_pat"),
                     QStringLiteral("Cmbetat"), QStringLiteral("Cmbtri")});
    return boxes;
}

} // namespace

CriteriaForm::CriteriaForm(Desk& desk, const QString& screen, const QList<CriterionBox>& boxes)
    : Form(desk, screen), molven_(workspace_.open(session().molven())), criteria_(new CriteriaPanel(*this, boxes, 4)) {
    using pick_lists::Chosen;
    const auto parameters = [this](const QString& letter, const char* title) {
        return [this, letter, title = QString::fromUtf8(title)](const Chosen& chosen) {
            return pick_lists::parameters(molven_, letter, title, chosen);
        };
    };
    const auto articles = [this](const Chosen& chosen) { return pick_lists::articles(molven_, chosen); };
    const auto suppliers = [this](const Chosen& chosen) { return pick_lists::suppliers(molven_, chosen); };
    for (const char* name : {"REF1", "REFD", "REFF"}) setPicker(name, strarticle.art_ref, articles);
    for (const char* name : {"txtfou_cde", "txtfou"}) setPicker(name, strfournis.fou_cod, suppliers);
    setPicker("txtnum_dep", strparam.num_par, parameters(list::Depot, "LES DEPOTS"));
    setPicker("txtfam_dep", strparam.num_par, parameters(list::DepotFamily, "LES FAMILLES DE DEPOT"));
    setPicker("txtfam", strparam.num_par, parameters(list::ArticleFamily, "LES FAMILLES D'ARTICLES"));
}

void CriteriaForm::completeOnLeaving(const ListingCriteria& criteria) {
    for (const ListingCriterion& one : criteria.boxes) {
        Edit* edit = criteria_->edit(one.control);
        if (!edit || (one.digits == 0 && one.kinds.isEmpty())) continue;
        onLeft(edit, [this, edit, &one] { edit->put(listing::completed(molven_, one, edit->value())); });
    }
}

void CriteriaForm::setPicker(const char* box, const Field& field,
                             const std::function<PickList(const pick_lists::Chosen&)>& list) {
    Edit* edit = criteria_->edit(QString::fromLatin1(box));
    if (!edit) return;
    onPick(edit, [this, edit, list, &field] {
        pick(list([edit, &field](const Record& row) { edit->put(row.value(field)); }));
    });
}

UnitListForm::UnitListForm(Desk& desk)
    : CriteriaForm(desk, QStringLiteral("T_proedt"), unitBoxes()), tri_(workspace_.open(session().tri())) {
    completeOnLeaving(unit_listing::criteria());
    words_ = new QLabel(this);
    words_->setObjectName(QStringLiteral("Label1"));
    words_->setTextFormat(Qt::PlainText);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("Label2"));
    QList<GridColumn> columns = pick_lists::unitColumns();
    columns.append({&strproduit.fou_cde, QStringLiteral("Fournis"), 70});
    columns.append({&strproduit.fou_imm, QStringLiteral("Imm Frs"), 110});
    columns.append({&strproduit.reg_pat, QStringLiteral("Patient"), 160});
    grid_ = new Grid(QStringLiteral("DBGrid1"), columns, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteria_);
    layout->addWidget(words_);
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons());
    resize(1260, 760);
    applyTitle(QStringLiteral("Edition des produits"));
    criteria_->edit(QStringLiteral("DEBIMM"))->setFocus();
}

QLayout* UnitListForm::buttons() {
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); });
    QPushButton* others[] = {
        button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }),
        button(QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { makeLabels(); }),
        button(QStringLiteral("Cmdretour"), QStringLiteral("Retour au &dépôt 001"), [this] { returnUnits(); }),
        button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeUnit(); }),
        leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); })};
    setDefaultButton(search);
    auto* row = new QHBoxLayout;
    row->addWidget(search);
    row->addWidget(count_, 1);
    for (QPushButton* other : others) row->addWidget(other);
    return row;
}

void UnitListForm::select() {
    selected_.reset();
    grid_->rows().setRecords({});
    count_->clear();
    const ListingSelection selection = selectionOf(*criteria_, unit_listing::criteria());
    unit_listing::criterion(molven_, selection); // a faulty box is told before any question
    isReminder_ = criteria_->choice(QStringLiteral("Cmbrelance")) == 1;
    const bool withoutReminded =
        isReminder_ &&
        !prompt().ask(QStringLiteral("Voulez-vous que l'on sélectionne ceux qui ont été déjà relancés ? "));
    reminderWords_ = !isReminder_      ? QString()
                     : withoutReminded ? QStringLiteral("Relance : produits jamais relancés")
                                       : QStringLiteral("Relance : produits déjà relancés compris");
    words_->setText(wordsOf(selection));
    const Criterion criterion = unit_listing::criterion(molven_, selection, withoutReminded);
    if (molven_.count(strproduit, criterion) == 0)
        throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"), QStringLiteral("DEBIMM"));
    selection_ = selection;
    selected_ = criterion;
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return molven_.select(strproduit, *selected_ && filter,
                              order.terms.isEmpty() ? unit_listing::order(selection_) : order);
    });
    count_->setText(QStringLiteral("Nbre sélection : %1").arg(grid_->rows().rowCount()));
    grid_->selectRow(0);
}

void UnitListForm::requireSelection() const {
    if (!selected_) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("DEBIMM"));
}

Recordset UnitListForm::selected() { return molven_.select(strproduit, *selected_, unit_listing::order(selection_)); }

void UnitListForm::print() {
    requireSelection();
    working_copy::keep(tri_, selected());
    if (desk().print(report())) unit_listing::markSelected(molven_, tri_, isReminder_);
}

Report UnitListForm::report() {
    Report report(QStringLiteral("LISTE DES PRODUITS"), {{QStringLiteral("N° Immatriculation")},
                                                         {QStringLiteral("Référence")},
                                                         {QStringLiteral("Désignation")},
                                                         {QStringLiteral("Fournis")},
                                                         {QStringLiteral("Imm Frs")},
                                                         {QStringLiteral("N° Lot")},
                                                         {QStringLiteral("Dép")},
                                                         {QStringLiteral("N° Pièce")},
                                                         {QStringLiteral("Péremption")},
                                                         {QStringLiteral("Dépôt Initial")}});
    report.say(wordsOf(selection_));
    report.say(reminderWords_);
    const bool byClient = selection_.order == 2;
    std::optional<QString> client;
    for (const Record& unit : tri_.select(tripro)) {
        const QString holder = unit[tripro.clt_vte];
        if (byClient && client != holder) report.group(groupTitle(QStringLiteral("Client"), holder), nameOf(holder));
        client = holder;
        report.row({unit[tripro.imm_art], unit[tripro.ref_art], unit[tripro.pro_li1], unit[tripro.fou_cde],
                    unit[tripro.fou_imm], unit[tripro.lot_art], unit[tripro.num_dep], unit[tripro.pie_art],
                    unit[tripro.dat_per], unit[tripro.nom_dep]});
    }
    report.count();
    return report;
}

QString UnitListForm::nameOf(const QString& client) const {
    const auto known = parties::findClient(molven_, client);
    return known ? known->value(strclient.clt_nom) : QString();
}

void UnitListForm::makeLabels() {
    requireSelection();
    labels::fill(molven_, tri_, session().rules(), selected());
    desk().open(QStringLiteral("T_etibarre"));
}

void UnitListForm::returnUnits() {
    requireSelection();
    const qint64 away = molven_.count(strproduit, unit_listing::returnable(*selected_));
    const QString about =
        QStringLiteral("%1 à retourner, parmi toute la sélection : %2")
            .arg(away == 1 ? QStringLiteral("1 produit") : QStringLiteral("%1 produits").arg(away), words_->text());
    if (!prompt().confirm(QStringLiteral("voulez-vous retourner ces produits au dépôt 001 ?"), about)) return;
    unit_listing::returnToMainDepot(molven_, session().rules(), *selected_);
    grid_->rows().refresh();
}

void UnitListForm::removeUnit() {
    requireSelection();
    const auto unit = grid_->current();
    if (!unit) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("DEBIMM"));
    const QString number = unit->value(strproduit.imm_art);
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer : ") + number, units::title(*unit)))
        return;
    unit_removal::remove(session(), Immatriculation::fromText(number));
    grid_->rows().refresh();
    count_->setText(QStringLiteral("Nbre sélection : %1").arg(grid_->rows().rowCount()));
}

namespace {

const QList<GridColumn>& articleColumns() {
    static const QList<GridColumn> columns{
        {&strarticle.art_ref, QStringLiteral("Référence"), 140},
        {&strarticle.art_li1, QStringLiteral("Désignation"), 640},
        {&strarticle.art_fam, QStringLiteral("Famille"), 70},
        {&strarticle.art_stk, QStringLiteral("Quantité"), 90, QStringLiteral("# ##0")},
        {&strarticle.art_pam, QStringLiteral("P.A.Moyen"), 110, QStringLiteral("# ##0.00")}};
    return columns;
}

/// The box of the listing that selects by this field.
QString boxName(const Field& field) {
    for (const ListingCriterion& one : stock_listing::articleCriteria().boxes)
        if (&one.field == &field) return one.control;
    return {};
}

QList<CriterionBox> stockBoxes() {
    QList<CriterionBox> boxes;
    append(boxes, stock_listing::articleCriteria());
    boxes.append({QStringLiteral("Mskdate"), QStringLiteral("Stock à la date :"), 10, CriterionBox::Kind::Day});
    append(boxes, stock_listing::unitCriteria());
    boxes.append(listBox("Cmbtri", "Tri des produits :", stock_listing::unitOrders()));
    setUsual(boxes, {QStringLiteral("REF1"), QStringLiteral("REFD"), QStringLiteral("REFF"), QStringLiteral("txtfam"),
                     QStringLiteral("txtfou"), QStringLiteral("Mskdate"), QStringLiteral("txtnum_dep"),
                     QStringLiteral("Cmbtri")});
    return boxes;
}

} // namespace

StockListForm::StockListForm(Desk& desk)
    : CriteriaForm(desk, QStringLiteral("T_stkedt"), stockBoxes()),
      compta_(workspace_.open(session().path(DataFile::Compta))) {
    completeOnLeaving(stock_listing::articleCriteria());
    completeOnLeaving(stock_listing::unitCriteria());
    for (const articles::Account& account : articles::accounts()) {
        const QString box = boxName(account.field);
        bind(account.field.name, criteria_->edit(box));
        setPicker(box.toLatin1().constData(), strplan.cpt_aff, [this, &account](const pick_lists::Chosen& chosen) {
            return pick_lists::accounts(compta_, account.start, chosen);
        });
    }
    grid_ = new Grid(QStringLiteral("DBGrid1"), articleColumns(), this);
    total_ = new QLabel(this);
    total_->setObjectName(QStringLiteral("Label2"));
    words_ = new QLabel(this);
    words_->setObjectName(QStringLiteral("Lblselect"));
    words_->setTextFormat(Qt::PlainText);
    step_ = new QLabel(this);
    step_->setObjectName(QStringLiteral("Label1"));
    QPushButton* buttons[] = {
        button(QStringLiteral("Cmdok"), QStringLiteral("Stock des &articles"), [this] { listArticles(); }),
        button(QStringLiteral("Cmdokdate"), QStringLiteral("Calcul du stock à la &date sélectionnée"),
               [this] { listArticlesAt(); }),
        button(QStringLiteral("Cmdokpro"), QStringLiteral("Stock des &produits"), [this] { listUnits(); }),
        button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }),
        leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); })};
    auto* row = new QHBoxLayout;
    row->addWidget(step_);
    row->addWidget(total_, 1);
    for (QPushButton* made : buttons) row->addWidget(made);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteria_);
    layout->addWidget(words_);
    layout->addWidget(grid_, 1);
    layout->addLayout(row);
    resize(1200, 720);
    applyTitle(QStringLiteral("Inventaire"));
    criteria_->edit(QStringLiteral("REF1"))->setFocus();
}

ListingSelection StockListForm::selection(const ListingCriteria& criteria) {
    title_.clear();
    words_->clear();
    step_->clear();
    const ListingSelection selection = selectionOf(*criteria_, criteria);
    if (&criteria == &stock_listing::articleCriteria())
        for (const articles::Account& account : articles::accounts())
            if (const QString number = criteria_->value(boxName(account.field)); !number.isEmpty())
                articles::checkAccount(compta_, account, number);
    const QString words = listing::words(criteria, selection);
    if (!words.isEmpty()) words_->setText(QStringLiteral("Sélection : ") + words);
    return selection;
}

void StockListForm::listArticles() {
    QList<Record> found;
    for (const Record& article : stock_listing::articles(molven_, selection(stock_listing::articleCriteria())))
        found.append(article);
    showArticles(found, QStringLiteral("INVENTAIRE ARTICLES AU ") + dateText(Clock::today()));
}

void StockListForm::listArticlesAt() {
    const ListingSelection asked = selection(stock_listing::articleCriteria());
    const QString date = criteria_->value(QStringLiteral("Mskdate"));
    if (!dateFromText(date).isValid()) throw Refusal(QStringLiteral("date invalide"), QStringLiteral("Mskdate"));
    step_->setText(QStringLiteral("TRAITEMENT EN COURS"));
    step_->repaint();
    const auto finished = qScopeGuard([this] { step_->setText(QStringLiteral("TRAITEMENT TERMINE")); });
    showArticles(stock_listing::articlesAt(molven_, asked, sortKey(date)),
                 QStringLiteral("INVENTAIRE ARTICLES AU ") + date);
}

void StockListForm::showArticles(const QList<Record>& found, const QString& title) {
    articles_ = found;
    title_ = title;
    units_.reset();
    grid_->setColumns(articleColumns());
    grid_->rows().setRecords(found);
    Decimal quantity, value;
    for (const Record& article : found) {
        quantity += article[strarticle.art_stk];
        value += article[strarticle.art_stk] * article[strarticle.art_pam];
    }
    total_->setText(QStringLiteral("Nbre sélection : %1   QUANTITE : %2   VALEUR : %3")
                        .arg(found.size())
                        .arg(format(quantity, QStringLiteral("# ##0")), format(value, QStringLiteral("### ##0.00"))));
}

void StockListForm::listUnits() {
    const ListingSelection asked = selection(stock_listing::unitCriteria());
    const Criterion criterion = stock_listing::units(molven_, asked);
    if (molven_.count(strproduit, criterion) == 0)
        throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"));
    title_ = QStringLiteral("INVENTAIRE PRODUITS");
    unitSelection_ = asked;
    units_ = criterion;
    grid_->setColumns({{&strproduit.num_dep, QStringLiteral("Dépôt"), 70},
                       {&strproduit.ref_art, QStringLiteral("Référence"), 140},
                       {&strproduit.imm_art, QStringLiteral("Immatriculation"), 130},
                       {&strproduit.pro_li1, QStringLiteral("Désignation"), 640},
                       {&strproduit.pro_pac, QStringLiteral("P.Achat"), 110, amountPattern()}});
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return molven_.select(strproduit, *units_ && filter,
                              order.terms.isEmpty() ? stock_listing::unitOrder(unitSelection_) : order);
    });
    total_->setText(QStringLiteral("Nbre sélection : %1").arg(grid_->rows().rowCount()));
}

void StockListForm::print() {
    if (title_.isEmpty()) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("REF1"));
    desk().print(units_ ? unitReport() : articleReport());
}

QString StockListForm::amountPattern() {
    return session().rules().purchasePriceDecimals() == 3 ? QStringLiteral("# ##0.000") : QStringLiteral("# ##0.00");
}

QString StockListForm::words() const {
    return words_->text().isEmpty() ? QStringLiteral("Sélection : tout le stock") : words_->text();
}

Report StockListForm::articleReport() {
    const QString amount = amountPattern();
    Report report(title_, {{QStringLiteral("Référence")},
                           {QStringLiteral("Désignation")},
                           {QStringLiteral("Quantité"), true},
                           {QStringLiteral("P.A.Moyen"), true},
                           {QStringLiteral("Valeur du Stock"), true}});
    report.say(words());
    Decimal quantity, total;
    for (const Record& article : articles_) {
        const Decimal value = article[strarticle.art_stk] * article[strarticle.art_pam];
        quantity += article[strarticle.art_stk];
        total += value;
        report.row({article[strarticle.art_ref], article[strarticle.art_li1], shown(article[strarticle.art_stk]),
                    format(article[strarticle.art_pam], amount), format(value, amount)});
    }
    report.total(QStringLiteral("TOTAUX DE L'INVENTAIRE : QUANTITE ") + shown(quantity));
    report.total(QStringLiteral("TOTAUX DE L'INVENTAIRE ") + format(total, amount));
    return report;
}

Report StockListForm::unitReport() {
    Report report(title_, {{QStringLiteral("Dépôt / Référence")},
                           {QStringLiteral("Immatriculation")},
                           {QStringLiteral("Désignation")},
                           {QStringLiteral("P.Achat"), true}});
    report.say(words());
    const bool byDepot = unitSelection_.order == 2, byReference = unitSelection_.order == 1;
    std::optional<QString> group;
    int quantity = 0;
    const auto endGroup = [&] {
        if (group) report.total(QStringLiteral("Quantité : ") + QString::number(quantity));
        quantity = 0;
    };
    for (const Record& unit : molven_.select(strproduit, *units_, stock_listing::unitOrder(unitSelection_))) {
        const QString depot = unit[strproduit.num_dep], reference = unit[strproduit.ref_art];
        const QString now = byDepot ? depot : reference;
        if ((byDepot || byReference) && group != now) {
            endGroup();
            group = now;
            report.group(groupTitle(byDepot ? QStringLiteral("Dépôt") : QStringLiteral("Référence"), now));
        }
        ++quantity;
        report.row({depot + QStringLiteral(" / ") + reference, unit[strproduit.imm_art], unit[strproduit.pro_li1],
                    format(unit[strproduit.pro_pac], amountPattern())});
    }
    endGroup();
    report.count();
    return report;
}

} // namespace molven

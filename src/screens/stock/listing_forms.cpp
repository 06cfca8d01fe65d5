#include "screens/stock/listing_forms.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/parameter_tables.h"
#include "reference/parties.h"
#include "reference/party_tables.h"
#include "sales/unit_removal.h"
#include "stock/labels.h"
#include "stock/patient_enquiry.h"
#include "stock/units.h"
#include "ui/edit.h"
#include "ui/printed_list.h"
#include "ui/progress.h"

#include <QHBoxLayout>
#include <QLabel>
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
    const auto nothing = [](const Text&) { return QString(); };
    return {.name = one.control,
            .caption = one.caption,
            .characters = one.match == Match::Year ? 4 : std::min(one.field.size, 16),
            .kind = one.match == Match::ExpiresBy ? CriterionBox::Kind::Month
                    : one.match == Match::Date    ? CriterionBox::Kind::Day
                                                  : CriterionBox::Kind::Text,
            .code = codes::kindOf(one.field, nothing),
            .isBound = one.match == Match::AtLeast || one.match == Match::AtMost,
            .digits = one.digits};
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

UnitListForm::UnitListForm(Desk& desk)
    : SelectionForm(desk, QStringLiteral("T_proedt")),
      molven_(workspace_.open(session().molven())),
      tri_(workspace_.open(session().tri())) {
    QList<GridColumn> columns = pick_lists::unitColumns();
    columns.append({&strproduit.fou_cde, QStringLiteral("Fournis"), 70});
    columns.append({&strproduit.fou_imm, QStringLiteral("Imm Frs"), 110});
    columns.append({&strproduit.reg_pat, QStringLiteral("Patient"), 160});
    build({.title = QStringLiteral("Edition des produits"),
           .criteria = unitBoxes(),
           .list = columns,
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); }}},
           .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }},
                     {QStringLiteral("Cmdetiq"), QStringLiteral("É&tiquettes"), [this] { makeLabels(); }},
                     {QStringLiteral("Cmdretour"), QStringLiteral("Retour au &dépôt 001"), [this] { returnUnits(); }},
                     {QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { removeUnit(); }}},
           .files = {{DataFile::Molven, molven_}},
           .words = QStringLiteral("Label1"),
           .size = {1260, 760}});
}

void UnitListForm::select() {
    const ListingSelection selection = selectionOf(criteria(), unit_listing::criteria());
    clearSelection(wordsOf(selection));
    unit_listing::criterion(molven_, selection); // a faulty box is told before any question
    isReminder_ = criteria().choice(QStringLiteral("Cmbrelance")) == 1;
    const bool withoutReminded =
        isReminder_ &&
        !prompt().ask(QStringLiteral("Voulez-vous que l'on sélectionne ceux qui ont été déjà relancés ? "));
    reminderWords_ = !isReminder_      ? QString()
                     : withoutReminded ? QStringLiteral("Relance : produits jamais relancés")
                                       : QStringLiteral("Relance : produits déjà relancés compris");
    const Criterion criterion = unit_listing::criterion(molven_, selection, withoutReminded);
    if (molven_.count(strproduit, criterion) == 0)
        throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"), QStringLiteral("DEBIMM"));
    selection_ = selection;
    selected_ = criterion;
    patiently(*this, workspace_, QStringLiteral("Recherche des produits"), [this] {
        showRows([this](const Criterion& filter, const Order& order) {
            return molven_.select(strproduit, selected_ && filter, order.orElse(unit_listing::order(selection_)));
        });
    });
}

Recordset UnitListForm::selected() { return molven_.select(strproduit, selected_, unit_listing::order(selection_)); }

void UnitListForm::print() {
    requireSelection();
    std::optional<Report> read;
    patiently(*this, workspace_, QStringLiteral("Lecture des produits"), [&] {
        working_copy::keep(tri_, selected());
        read = report();
    });
    if (desk().print(*read)) unit_listing::markSelected(molven_, tri_, isReminder_);
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
    patiently(*this, workspace_, QStringLiteral("Préparation des étiquettes"),
              [this] { labels::fill(molven_, tri_, session().rules(), selected()); });
    desk().open(QStringLiteral("T_etibarre"));
}

void UnitListForm::returnUnits() {
    requireSelection();
    const qint64 away = molven_.count(strproduit, unit_listing::returnable(selected_));
    const QString about =
        QStringLiteral("%1 à retourner, parmi toute la sélection : %2")
            .arg(away == 1 ? QStringLiteral("1 produit") : QStringLiteral("%1 produits").arg(away), words());
    if (!prompt().confirm(QStringLiteral("voulez-vous retourner ces produits au dépôt 001 ?"), about)) return;
    patiently(*this, workspace_, QStringLiteral("Retour au dépôt 001"),
              [this] { unit_listing::returnToMainDepot(molven_, session().rules(), selected_); });
    list().rows().refresh();
}

void UnitListForm::removeUnit() {
    requireSelection();
    const auto unit = list().current();
    if (!unit) throw Refusal(QStringLiteral("Faire une sélection"), QStringLiteral("DEBIMM"));
    const QString number = unit->value(strproduit.imm_art);
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer : ") + number, units::title(*unit)))
        return;
    unit_removal::remove(session(), Immatriculation::fromText(number));
    list().rows().refresh();
    showCount({});
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
    : SelectionForm(desk, QStringLiteral("T_stkedt")),
      unitFiles_(openUnitFiles(workspace_, session())),
      molven_(unitFiles_.molven),
      compta_(workspace_.open(session().path(DataFile::Compta))) {
    build({.title = QStringLiteral("Inventaire"),
           .criteria = stockBoxes(),
           .list = articleColumns(),
           .searches = {{QStringLiteral("Cmdok"), QStringLiteral("Stock des &articles"), [this] { listArticles(); }},
                        {QStringLiteral("Cmdokdate"), QStringLiteral("Calcul du stock à la &date sélectionnée"),
                         [this] { listArticlesAt(); }},
                        {QStringLiteral("Cmdokpro"), QStringLiteral("Stock des &produits"), [this] { listUnits(); }}},
           .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }}},
           .files = {{DataFile::Molven, molven_}, {DataFile::Compta, compta_}},
           .words = QStringLiteral("Lblselect"),
           .size = {1200, 720}});
    for (const articles::Account& account : articles::accounts()) {
        const QString box = boxName(account.field);
        bind(account.field.name, criteria().edit(box));
        picker(box, strplan.cpt_aff, [this, &account](const pick_lists::Chosen& chosen) {
            return pick_lists::accounts(compta_, account.start, chosen);
        });
    }
    step_ = new QLabel(this);
    step_->setObjectName(QStringLiteral("Label1"));
    row()->insertWidget(3, step_);
}

ListingSelection StockListForm::selection(const ListingCriteria& criteria) {
    step_->clear();
    const ListingSelection selection = selectionOf(this->criteria(), criteria);
    const QString words = listing::words(criteria, selection);
    clearSelection(words.isEmpty() ? QString() : QStringLiteral("Sélection : ") + words);
    if (&criteria == &stock_listing::articleCriteria())
        for (const articles::Account& account : articles::accounts())
            if (const QString number = this->criteria().value(boxName(account.field)); !number.isEmpty())
                articles::checkAccount(compta_, account, number);
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
    const QString date = criteria().value(QStringLiteral("Mskdate"));
    if (!dateFromText(date).isValid()) throw Refusal(QStringLiteral("date invalide"), QStringLiteral("Mskdate"));
    step_->setText(QStringLiteral("TRAITEMENT EN COURS"));
    step_->repaint();
    const auto finished = qScopeGuard([this] { step_->setText(QStringLiteral("TRAITEMENT TERMINE")); });
    QList<Record> found;
    patiently(*this, workspace_, QStringLiteral("Calcul du stock au ") + date,
              [&] { found = stock_listing::articlesAt(unitFiles_, asked, sortKey(date)); });
    showArticles(found, QStringLiteral("INVENTAIRE ARTICLES AU ") + date);
}

void StockListForm::showArticles(const QList<Record>& found, const QString& title) {
    articles_ = found;
    title_ = title;
    units_.reset();
    list().setColumns(articleColumns());
    Decimal quantity, value;
    for (const Record& article : found) {
        quantity += article[strarticle.art_stk];
        value += article[strarticle.art_stk] * article[strarticle.art_pam];
    }
    showRows(found, QStringLiteral("Nbre sélection : %1   QUANTITE : %2   VALEUR : %3")
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
    list().setColumns({{&strproduit.num_dep, QStringLiteral("Dépôt"), 70},
                       {&strproduit.ref_art, QStringLiteral("Référence"), 140},
                       {&strproduit.imm_art, QStringLiteral("Immatriculation"), 130},
                       {&strproduit.pro_li1, QStringLiteral("Désignation"), 640},
                       {&strproduit.pro_pac, QStringLiteral("P.Achat"), 110, amountPattern()}});
    patiently(*this, workspace_, QStringLiteral("Recherche des produits"), [this] {
        showRows([this](const Criterion& filter, const Order& order) {
            return molven_.select(strproduit, *units_ && filter,
                                  order.orElse(stock_listing::unitOrder(unitSelection_)));
        });
    });
}

void StockListForm::print() {
    requireSelection();
    std::optional<Report> read;
    patiently(*this, workspace_, QStringLiteral("Lecture du stock"),
              [&] { read = units_ ? unitReport() : articleReport(); });
    desk().print(*read);
}

QString StockListForm::amountPattern() {
    return session().rules().purchasePriceDecimals() == 3 ? QStringLiteral("# ##0.000") : QStringLiteral("# ##0.00");
}

QString StockListForm::asked() const {
    return words().isEmpty() ? QStringLiteral("Sélection : tout le stock") : words();
}

Report StockListForm::articleReport() {
    const QString amount = amountPattern();
    Report report(title_, {{QStringLiteral("Référence")},
                           {QStringLiteral("Désignation")},
                           {QStringLiteral("Quantité"), true},
                           {QStringLiteral("P.A.Moyen"), true},
                           {QStringLiteral("Valeur du Stock"), true}});
    report.say(asked());
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
    report.say(asked());
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

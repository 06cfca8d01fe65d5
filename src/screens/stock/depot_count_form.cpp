#include "screens/stock/depot_count_form.h"

#include "data/format.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_tables.h"
#include "screens/stock/count_statement.h"
#include "ui/grid.h"
#include "ui/pick_panel.h"
#include "ui/progress.h"
#include "ui/record_panel.h"
#include "ui/scan_box.h"
#include "ui/style.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

using style::Tone;
using Kind = count_documents::Offer::Kind;
const auto& Finding = strconstat;

enum View { Readings, Missing, Unexpected, Expiring, ToSettle };

/// A figure of the count: its name, its caption, and where it stands in the tally.
struct Figure {
    const char* name;
    const char* caption;
    qint64 CountTally::*value;
};
constexpr Figure Figures[] = {
    {"lblattendus", "Attendues :", &CountTally::expected},  {"lbltrouves", "Trouvées :", &CountTally::found},
    {"lblmanquants", "Manquantes :", &CountTally::missing}, {"lblinattendus", "Inattendues :", &CountTally::unexpected},
    {"lbldeplaces", "Déplacées :", &CountTally::moved},     {"lbldoubles", "Lues plusieurs fois :", &CountTally::twice},
    {"lblperimes", "Périmées :", &CountTally::expired},     {"lblaperimer", "À périmer :", &CountTally::soon}};

CellMark verdictMark(const Record& row) {
    const QString found = row[Finding.lig_con];
    if (found == verdict::Found) return {QStringLiteral("Trouvée"), Tone::Good, {}};
    if (found == verdict::Missing) return {QStringLiteral("Manquante"), Tone::Alarm, {}};
    if (found == verdict::Unexpected) return {QStringLiteral("Inattendue"), Tone::Warning, {}};
    return {QStringLiteral("Déplacée"), Tone::Away, {}};
}

CellMark tickMark(const Record& row) {
    return row[Finding.lig_coc].isEmpty() ? CellMark{} : CellMark{QStringLiteral("Cochée"), Tone::Good, {}};
}

QList<GridColumn> columns(const std::function<CellMark(const Record&)>& expiryMark) {
    return {{&Finding.lig_coc, QStringLiteral("À régler"), 80, {}, tickMark},
            {&Finding.lig_con, QStringLiteral("Constat"), 105, {}, verdictMark},
            {&Finding.lig_imm, QStringLiteral("Immatriculation"), 110},
            {&Finding.lig_ref, QStringLiteral("Référence"), 100},
            {&Finding.lig_lib, QStringLiteral("Désignation"), 210},
            {&Finding.lig_lot, QStringLiteral("Lot"), 90},
            {&Finding.lig_ser, QStringLiteral("N° de série"), 105},
            {&Finding.lig_per, QStringLiteral("Péremption"), 100, {}, expiryMark},
            {&Finding.lig_lec, QStringLiteral("Lectures"), 70, QStringLiteral("###0")},
            {&Finding.lig_sit, QStringLiteral("Situation"), 240}};
}

QLabel* captionOf(const QString& caption, QWidget* box, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setBuddy(box);
    return label;
}

} // namespace

DepotCountForm::DepotCountForm(Desk& desk)
    : Form(desk, QStringLiteral("T_invdep")), molven_(workspace_.open(session().molven())) {
    buildPanel();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(panel_);
    layout->addLayout(buildScan());
    layout->addLayout(buildFigures());
    layout->addWidget(buildGrid(), 1);
    layout->addLayout(buildButtons());
    resize(1240, 720);
    applyTitle(QStringLiteral("Inventaire d'un dépôt"));
    showCount();
    panel_->edit(strinvdep.inv_dep)->setFocus();
}

void DepotCountForm::buildPanel() {
    const auto& t = strinvdep;
    panel_ =
        new RecordPanel(QList<FieldBox>{{&t.inv_dep,
                                         QStringLiteral("&Dépôt :"),
                                         QStringLiteral("txtdep"),
                                         4,
                                         {},
                                         false,
                                         false,
                                         QStringLiteral("Cmddep")},
                                        {&t.inv_clt,
                                         QStringLiteral("&Client :"),
                                         QStringLiteral("txtclt"),
                                         6,
                                         {},
                                         false,
                                         false,
                                         QStringLiteral("cmdclt")},
                                        {&t.inv_par, QStringLiteral("Compté &par :"), QStringLiteral("txtpar"), 24},
                                        {&t.inv_moi, QStringLiteral("&Mois avant péremption :"),
                                         QStringLiteral("txtmois"), 4, QStringLiteral("##0")}},
                        2, this);
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    codes_.emplace(*this, *panel_, QHash<DataFile, Database>{{DataFile::Molven, molven_}});
    codes_->wire([this](const Field& field) { boxLeft(field); });
    for (const Field* field : QList<const Field*>{&t.inv_par, &t.inv_moi})
        onLeft(panel_->edit(*field), [this, field] { boxLeft(*field); });
}

QLayout* DepotCountForm::buildScan() {
    scan_ = new ScanBox(
        *this, QStringLiteral("txtlecture"), [this](const QString& scanned) { return take(scanned); }, this);
    last_ = new QLabel(this);
    last_->setObjectName(QStringLiteral("lbllecture"));
    last_->setTextFormat(Qt::PlainText);
    takeBack_ = button(QStringLiteral("Cmdretire"), QStringLiteral("Re&tirer la lecture"), [this] { takeBack(); });
    auto* row = new QHBoxLayout;
    row->addWidget(captionOf(QStringLiteral("&Lire :"), scan_, this));
    row->addWidget(scan_, 2);
    row->addWidget(last_, 3);
    row->addWidget(takeBack_);
    return row;
}

QLayout* DepotCountForm::buildFigures() {
    auto* row = new QHBoxLayout;
    for (const Figure& figure : Figures) {
        auto* value = new QLabel(QStringLiteral("0"), this);
        value->setObjectName(QString::fromLatin1(figure.name));
        style::emphasise(*value);
        figures_.append(value);
        row->addWidget(captionOf(QString::fromUtf8(figure.caption), nullptr, this));
        row->addWidget(value);
        row->addSpacing(style::WideGap);
    }
    row->addStretch();
    view_ = new QComboBox(this);
    view_->setObjectName(QStringLiteral("Cmbvue"));
    view_->addItems({QStringLiteral("Lectures"), QStringLiteral("Manquantes"), QStringLiteral("Inattendues"),
                     QStringLiteral("Périmées ou à périmer"), QStringLiteral("À régler")});
    connect(view_, &QComboBox::currentIndexChanged, this, [this] { showRows(); });
    row->addWidget(captionOf(QStringLiteral("&Voir :"), view_, this));
    row->addWidget(view_);
    return row;
}

QWidget* DepotCountForm::buildGrid() {
    const auto expiryMark = [this](const Record& row) {
        const Freshness freshness = count_ ? count_->freshnessOf(row) : Freshness::Good;
        const QString expiry = row[Finding.lig_per];
        if (freshness == Freshness::Expired) return CellMark{expiry, Tone::Alarm, QStringLiteral("Périmée")};
        if (freshness == Freshness::Soon) return CellMark{expiry, Tone::Warning, QStringLiteral("À périmer")};
        return CellMark{};
    };
    grid_ = new Grid(QStringLiteral("DBGrid1"), columns(expiryMark), this);
    grid_->chosen = [this](const Record& row) { guarded([this, row] { toggle(row); }); };
    return grid_;
}

QLayout* DepotCountForm::buildButtons() {
    patient_ = new Edit(this);
    patient_->setObjectName(QStringLiteral("txtpat"));
    patient_->setMaxLength(40);
    patient_->setFixedWidth(style::boxWidth(20));
    bind(strlive.fac_pat.name, patient_);
    state_ = new QLabel(this);
    state_->setObjectName(QStringLiteral("lbletat"));
    tickAll_ = button(QStringLiteral("Cmdtout"), QStringLiteral("T&out cocher"), [this] { tickAll(); });
    close_ = button(QStringLiteral("cmdcloture"), QStringLiteral("Clôtu&rer"), [this] { settleOrClose(); });
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); });
    again_ = button(QStringLiteral("Cmdnouveau"), QStringLiteral("No&uveau"), [this] { openDepot(); });
    auto* others = button(QStringLiteral("Cmdliste"), QStringLiteral("I&nventaires"), [this] { chooseCount(); });
    drop_ = button(QStringLiteral("Cmdabandon"), QStringLiteral("Abandonn&er"), [this] { drop(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    row->addWidget(state_, 1);
    row->addWidget(captionOf(QStringLiteral("P&atient livré :"), patient_, this));
    row->addWidget(patient_);
    for (QPushButton* made : {tickAll_, close_, printButton, again_, others, drop_, quit}) row->addWidget(made);
    return row;
}

QString DepotCountForm::typed(const Field& field) const { return panel_->edit(field)->value().trimmed(); }

void DepotCountForm::boxLeft(const Field& field) {
    if (&field == &strinvdep.inv_dep)
        openDepot();
    else if (count_ && !count_->isClosed())
        describe();
    codes_->showWords();
}

/// The open count of the depot typed, whoever began it, else a new one. An empty box leaves none.
void DepotCountForm::openDepot() {
    const QString depot = typed(strinvdep.inv_dep);
    count_.reset();
    ticked_.clear();
    if (depot.isEmpty()) return showCount();
    showCount(); // nothing of another depot stays in sight when this one is refused
    const Record fresh = depot_counts::blank(molven_, depot);
    open(depot_counts::openOf(molven_, fresh[strinvdep.inv_dep]).value_or(fresh));
}

void DepotCountForm::open(const Record& count) {
    ticked_.clear();
    last_->clear();
    patient_->put({});
    count_.emplace(molven_, count);
    view_->setCurrentIndex(count_->isClosed() ? ToSettle : Readings);
    panel_->load(count_->header());
    codes_->showWords();
    showCount();
}

void DepotCountForm::describe() {
    const auto months = Decimal::parse(typed(strinvdep.inv_moi));
    if (!months || *months != months->rounded(0))
        throw Refusal(QStringLiteral("Nombre de mois incorrect"), strinvdep.inv_moi.name);
    count_->describe(typed(strinvdep.inv_clt), typed(strinvdep.inv_par), static_cast<int>(months->toInteger()));
    showCount();
}

/// What was typed beside the depot, refused on leaving included; what another workstation wrote stays.
void DepotCountForm::takeDescription() {
    if (panel_->differsFrom(count_->header())) describe();
}

DepotCount& DepotCountForm::requireCount() {
    if (!count_) throw Refusal(QStringLiteral("Dépôt obligatoire"), strinvdep.inv_dep.name);
    return *count_;
}

bool DepotCountForm::take(const QString& scanned) {
    DepotCount& count = requireCount();
    if (count.isClosed()) throw Refusal(QStringLiteral("Cet inventaire est clôturé"));
    try {
        showReading(count.read(scanned));
    } catch (const Refusal&) {
        count.refresh(); // another workstation may have closed it
        showCount();
        throw;
    }
    showCount();
    return true;
}

/// What was read, in words; whatever is not as it should be also sounds.
void DepotCountForm::showReading(const DepotCount::Reading& reading) {
    const Record& row = reading.row;
    const QString found = row[Finding.lig_con];
    const Freshness freshness = count_->freshnessOf(row);
    QStringList words;
    if (reading.isAgain) words.append(QStringLiteral("déjà lue"));
    words.append(found == verdict::Found ? QStringLiteral("attendue")
                                         : QStringLiteral("inattendue, ") + row[Finding.lig_sit]);
    if (freshness == Freshness::Expired) words.append(QStringLiteral("PÉRIMÉE depuis ") + row[Finding.lig_per]);
    if (freshness == Freshness::Soon) words.append(QStringLiteral("périme le ") + row[Finding.lig_per]);
    if (reading.alike > 1)
        words.append(QStringLiteral("%1 sur %2 de ce lot").arg(reading.alikeRead).arg(reading.alike));
    last_->setText(
        QStringLiteral("%1 %2 : %3").arg(row[Finding.lig_imm], row[Finding.lig_lib], words.join(QStringLiteral(", "))));
    if (reading.isAgain || found != verdict::Found || freshness == Freshness::Expired) QApplication::beep();
}

void DepotCountForm::takeBack() {
    const auto row = grid_->current();
    if (!row || row->value(Finding.lig_con) == verdict::Missing)
        throw Refusal(QStringLiteral("Choisissez une lecture dans la liste"));
    const QString about = QStringLiteral("%1 %2").arg(row->value(Finding.lig_imm), row->value(Finding.lig_lib));
    if (!prompt().confirm(QStringLiteral("Retirer cette lecture ?"), about)) return;
    requireCount().takeBack(row->value(Finding.lig_imm));
    showCount();
    scan_->setFocus();
}

void DepotCountForm::toggle(const Record& row) {
    if (!requireCount().isClosed()) throw Refusal(QStringLiteral("Clôturez d'abord l'inventaire"));
    const QString unit = row[Finding.lig_imm];
    if (!ticked_.remove(unit)) {
        count_documents::kindOf(*count_, row);
        ticked_.insert(unit);
    }
    showRows();
    grid_->followRecord(row, {&Finding.lig_imm});
}

/// Every row in sight that a document can settle; once more, none.
void DepotCountForm::tickAll() {
    QSet<QString> units;
    for (const Record& row : rowsInView())
        if (count_documents::isSettleable(*count_, row)) units.insert(row[Finding.lig_imm]);
    if (units.isEmpty()) throw Refusal(QStringLiteral("Rien à régler dans cette liste"));
    if (ticked_.contains(units))
        ticked_.subtract(units);
    else
        ticked_.unite(units);
    showRows();
}

void DepotCountForm::settleOrClose() { requireCount().isClosed() ? writeDocuments() : closeCount(); }

void DepotCountForm::closeCount() {
    takeDescription();
    count_->refresh();
    showCount();
    const CountTally tally = count_->tally();
    const QString about = QStringLiteral("Dépôt %1 : %2").arg(count_->header()[strinvdep.inv_dep], countWords(tally));
    if (!count_->isBegun()) throw Refusal(QStringLiteral("Aucune unité n'a été lue"), QStringLiteral("txtlecture"));
    if (!prompt().confirm(QStringLiteral("Clôturer l'inventaire ? Aucune lecture ne pourra plus être ajoutée."), about))
        return;
    open(depot_counts::close(molven_, *count_, progress(*this, QStringLiteral("Clôture de l'inventaire"))));
    print();
}

QString DepotCountForm::questionOf(const count_documents::Offer& offer) const {
    const QString units = counted(offer.units.size(), QStringLiteral("unité"));
    if (offer.kind == Kind::Delivery)
        return QStringLiteral("Établir un bon de livraison de %1 au client %2, patient %3 ?")
            .arg(units, offer.client, patient_->text().trimmed());
    return QStringLiteral("Établir un bon de transfert de %1 du dépôt %2 au dépôt %3 ?")
        .arg(units, offer.from, offer.to);
}

/// One document after the other; what one yes has written stays, whatever becomes of the next.
void DepotCountForm::writeDocuments() {
    QList<Record> chosen;
    for (const QString& found : {verdict::Missing, verdict::Unexpected, verdict::Moved, verdict::Found})
        for (const Record& row : count_->rows(found))
            if (ticked_.contains(row[Finding.lig_imm])) chosen.append(row);
    if (chosen.isEmpty()) throw Refusal(QStringLiteral("Cochez les unités à régler : Entrée ou double clic"));
    for (const count_documents::Offer& offer : count_documents::offers(molven_, *count_, chosen)) {
        count_documents::requirePatient(offer, patient_->text());
        if (!prompt().ask(questionOf(offer))) continue;
        const QString number = count_documents::write(session(), count_->header(), offer, patient_->text());
        for (const QString& unit : offer.units) ticked_.remove(unit);
        count_->refresh();
        showCount();
        notify(
            (offer.kind == Kind::Delivery ? QStringLiteral("Bon de livraison ") : QStringLiteral("Bon de transfert ")) +
            number);
    }
}

void DepotCountForm::print() {
    if (!requireCount().isClosed()) takeDescription();
    const Record& header = count_->header();
    const auto client = parties::findClient(molven_, header[strinvdep.inv_clt]);
    desk().print(countStatement(*count_, parameters::label(molven_, list::Depot, header[strinvdep.inv_dep]),
                                session().spe_nom, client ? client->value(strclient.clt_nom) : QString()));
}

void DepotCountForm::chooseCount() {
    const auto& t = strinvdep;
    const auto state = [](const Record& count) {
        return count[strinvdep.inv_eta] == count_state::Open ? CellMark{QStringLiteral("En cours"), Tone::Warning, {}}
                                                             : CellMark{QStringLiteral("Clôturé"), Tone::Done, {}};
    };
    pick({QStringLiteral("LES INVENTAIRES DE DÉPÔT"),
          {{&t.inv_no, QStringLiteral("N°"), 80},
           {&t.inv_dep, QStringLiteral("Dépôt"), 70},
           {&t.inv_clt, QStringLiteral("Client"), 80},
           {&t.inv_dat, QStringLiteral("Commencé le"), 100},
           {&t.inv_clo, QStringLiteral("Clôturé le"), 100},
           {&t.inv_eta, QStringLiteral("État"), 100, {}, state},
           {&t.inv_par, QStringLiteral("Compté par"), 160}},
          [this](const Criterion& filter, const Order& order) {
              return molven_.select(strinvdep, filter, order.orElse(Order::descending(strinvdep.inv_no)));
          },
          [this](const Record& count) { open(count); }});
}

void DepotCountForm::drop() {
    DepotCount& count = requireCount();
    const QString about = QStringLiteral("Dépôt %1, inventaire %2, %3")
                              .arg(count.header()[strinvdep.inv_dep], count.header()[strinvdep.inv_no],
                                   counted(count.readings().size(), QStringLiteral("unité")));
    if (!prompt().confirm(QStringLiteral("Abandonner cet inventaire et toutes ses lectures ?"), about)) return;
    depot_counts::drop(molven_, count.header());
    const Record next = depot_counts::blank(molven_, count.header()[strinvdep.inv_dep]);
    open(next);
}

void DepotCountForm::shownAgain() {
    if (!count_) return;
    guarded([this] {
        count_->refresh();
        showCount();
    });
}

void DepotCountForm::showCount() {
    const CountTally tally = count_ ? count_->tally() : CountTally();
    for (qsizetype i = 0; i < figures_.size(); ++i)
        figures_[i]->setText(count_ ? QString::number(tally.*Figures[i].value) : QString());
    const bool isClosed = count_ && count_->isClosed();
    const QString number = count_ ? count_->header()[strinvdep.inv_no] : QString();
    state_->setText(
        number.isEmpty() ? QString()
        : isClosed ? QStringLiteral("Inventaire %1, clôturé le %2").arg(number, count_->header()[strinvdep.inv_clo])
                   : QStringLiteral("Inventaire %1, commencé le %2").arg(number, count_->header()[strinvdep.inv_dat]));
    close_->setText(isClosed ? QStringLiteral("Éta&blir les bons") : QStringLiteral("Clôtu&rer"));
    const bool isOpen = count_ && !isClosed && count_->isBegun();
    allow(takeBack_, isOpen, QStringLiteral("Aucune lecture d'un inventaire en cours"));
    allow(drop_, isOpen, QStringLiteral("Aucun inventaire en cours"));
    again_->setVisible(isClosed);
    allow(tickAll_, isClosed, QStringLiteral("Clôturez d'abord l'inventaire"));
    patient_->setEditable(isClosed);
    for (const Field* field : QList<const Field*>{&strinvdep.inv_clt, &strinvdep.inv_par, &strinvdep.inv_moi})
        panel_->edit(*field)->setEditable(count_ && !isClosed);
    showRows();
}

QList<Record> DepotCountForm::rowsInView() const {
    if (!count_) return {};
    QList<Record> found;
    switch (view_->currentIndex()) {
    case Missing:
        return count_->rows(verdict::Missing);
    case Unexpected:
        return count_->rows(verdict::Unexpected) + count_->rows(verdict::Moved);
    case Expiring:
        for (const Record& row : count_->readings())
            if (count_->freshnessOf(row) != Freshness::Good) found.append(row);
        return found;
    case ToSettle:
        for (const QString& one : {verdict::Missing, verdict::Unexpected, verdict::Moved, verdict::Found})
            for (const Record& row : count_->rows(one))
                if (count_documents::isSettleable(*count_, row)) found.append(row);
        return found;
    default:
        return count_->readings();
    }
}

void DepotCountForm::showRows() {
    QList<Record> rows = rowsInView();
    if (!ticked_.isEmpty())
        for (Record& row : rows)
            if (ticked_.contains(row[Finding.lig_imm])) row[Finding.lig_coc] = QStringLiteral("O");
    grid_->rows().setRecords(rows);
}

} // namespace molven

#include "screens/sales/line_entry.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/unit_rules.h"
#include "screens/price_notice.h"
#include "screens/sales/document_layout.h"
#include "screens/sales/typed_boxes.h"
#include "screens/sales/unit_range.h"
#include "screens/sales/unit_warnings.h"
#include "stock/units.h"
#include "ui/form.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

LineEntry::LineEntry(Form& form, SalesBook& book, const DocumentLayout& layout)
    : TrayPart(&form),
      form_(form),
      book_(book),
      table_(book.kind().lines),
      layout_(layout),
      draft_(table_),
      shown_(table_) {
    build();
    setPickers();
}

void LineEntry::build() {
    panel_ = new RecordPanel(layout_.line, 3, this);
    for (const FieldBox& fieldBox : panel_->boxes()) form_.bind(fieldBox.field->name, box(*fieldBox.field));
    validate_ = form_.button(QStringLiteral("cmdValidlig"), QStringLiteral("Valider la &ligne"),
                             [this] { attempt([this] { validate(); }); });
    validateChange_ = form_.button(QStringLiteral("cmdvalmajlig"), QStringLiteral("Valider &la modification"),
                                   [this] { attempt([this] { changeLine(); }); });
    range_ = form_.button(QStringLiteral("cmdtranche"), QStringLiteral("&Tranche d'immat."), [this] { askRange(); });
    auto* leave =
        form_.leaveButton(QStringLiteral("Cmdquitlig"), QStringLiteral("&Fin des lignes"), [this] { left(); });
    auto* buttons = new QHBoxLayout;
    if (book_.kind().isPriced) addDiscounts(*buttons);
    buttons->addStretch();
    for (QPushButton* made : {validate_, validateChange_, range_, leave}) buttons->addWidget(made);
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(panel_);
    layout->addLayout(buttons);
    if (book_.kind().hasUnits) form_.onLeft(box(table_.fac_imm), [this] { takeUnit(); });
    if (!book_.kind().isPriced) return;
    form_.onLeft(box(table_.fac_tip), [this] { takeReimbursement(); });
    for (const Number* amount : {&table_.fac_qte, &table_.fac_px, &table_.fac_remx})
        form_.onLeft(box(*amount), [this] { takeAmounts(); });
}

/// The discount categories that a price depends on, and the currency it is in.
void LineEntry::addDiscounts(QHBoxLayout& row) {
    const auto category = [this, &row](const QString& caption, const QString& name) {
        auto* made = new Edit(this);
        made->setObjectName(name);
        made->setEditable(false);
        made->setFixedWidth(style::boxWidth(3));
        row.addWidget(new QLabel(caption, this));
        row.addWidget(made);
        return made;
    };
    clientDiscount_ = category(QStringLiteral("Catégories de remise, client :"), QStringLiteral("txtremc"));
    articleDiscount_ = category(QStringLiteral("article :"), QStringLiteral("Txtrema"));
    row.addSpacing(style::WideGap);
    row.addWidget(priceNotice(form_.session(), this));
}

void LineEntry::setPickers() {
    codes_.emplace(form_, *panel_, QHash<DataFile, Database>{{DataFile::Molven, book_.molven}});
    codes_->wire([this](const Field& field) {
        if (&field == &table_.fac_ref) takeArticle();
    });
    if (!book_.kind().takesTrackedArticles)
        codes_->list(table_.fac_ref, [this] {
            return pick_lists::articles(book_.molven, codes_->put(table_.fac_ref, strarticle.art_ref),
                                        strarticle.art_aig != QString(follow_up::ByUnit));
        });
    if (book_.kind().hasUnits)
        form_.onPick(
            box(table_.fac_imm), [this] { pickUnit(); }, panel_->listButton(table_.fac_imm));
    if (book_.kind().isPriced)
        form_.onPick(
            box(table_.fac_tip), [this] { pickReimbursement(); }, panel_->listButton(table_.fac_tip));
}

void LineEntry::pickUnit() {
    const QString reference = typed(table_.fac_ref);
    if (reference.isEmpty()) throw Refusal(QStringLiteral("Référence obligatoire"), table_.fac_ref.name);
    const Criterion free = unit_rules::available(book_, *header_, reference);
    if (book_.molven.count(strproduit, free) == 0)
        throw Refusal(QStringLiteral("Aucune immatriculation disponible dans le dépôt"), table_.fac_imm.name);
    PickList units = pick_lists::units(book_.molven, QStringLiteral("LES IMMATRICULATIONS DISPONIBLES"), free,
                                       [this](const Record& unit) {
                                           box(table_.fac_imm)->put(unit[strproduit.imm_art]);
                                           form_.guarded([this] { takeUnit(); });
                                       });
    units.columns = unitChoiceColumns();
    form_.pick(units);
}

/// An article with several LPP codes: the user picks the one that applies to this line.
void LineEntry::pickReimbursement() {
    PickList codes = pick_lists::lppCodes(book_.molven, [this](const Record& code) {
        box(table_.fac_tip)->put(code[strlpp.lpp_code]);
        draft_.line[table_.fac_tip] = code[strlpp.lpp_code];
    });
    codes.query = [this](const Criterion& filter, const Order& order) {
        return book_.molven.select(strlpp, isOneOf(strlpp.lpp_code, draft_.reimbursements) && filter,
                                   order.orElse(Order(strlpp.lpp_code)));
    };
    form_.pick(codes);
}

void LineEntry::takeReimbursement() {
    const QString code = typed(table_.fac_tip);
    if (!draft_.reimbursements.contains(code))
        throw Refusal(QStringLiteral("Code LPP à choisir parmi : ") + draft_.reimbursements.join(QStringLiteral(", ")),
                      table_.fac_tip.name);
    draft_.line[table_.fac_tip] = code;
}

Edit* LineEntry::box(const Field& field) const { return panel_->edit(field); }

QString LineEntry::typed(const Field& field) const {
    const Edit* edit = box(field);
    return edit ? edit->value().trimmed() : QString();
}

int LineEntry::typedNumber() const {
    const QString number = typed(table_.fac_lg);
    return number == preset_ ? 0 : numbering::typedLine(number);
}

QPushButton* LineEntry::validation() const { return purpose_ == Purpose::Change ? validateChange_ : validate_; }

QString LineEntry::unsaved() const {
    const bool typedHere = purpose_ == Purpose::Change
                               ? panel_->differsFrom(shown_)
                               : !typed(table_.fac_ref).isEmpty() || !typed(table_.fac_imm).isEmpty();
    if (!typedHere) return {};
    return QStringLiteral("Ligne %1 : %2 %3")
        .arg(typed(table_.fac_lg), typed(table_.fac_ref), typed(table_.fac_imm))
        .trimmed();
}

void LineEntry::focusUnit() { box(table_.fac_imm)->setFocus(Qt::OtherFocusReason); }

void LineEntry::start(Purpose purpose, const Record& header) {
    purpose_ = purpose;
    header_ = header;
    draft_ = document_lines::Draft(table_);
    if (book_.kind().isPriced) {
        const auto client = parties::findClient(book_.molven, header[book_.kind().headers.fac_clt]);
        clientDiscount_->put(client ? QString((*client)[strclient.clt_rem]) : QString());
        articleDiscount_->put({});
    }
    validate_->setVisible(purpose != Purpose::Change);
    range_->setVisible(purpose == Purpose::Add && book_.kind().hasUnits);
    validateChange_->setVisible(purpose == Purpose::Change);
}

void LineEntry::startAdding(const Record& header) {
    start(Purpose::Add, header);
    preset_ = proposedNumber();
    draft_.line[table_.fac_lg] = preset_;
    show();
    box(table_.fac_ref)->setFocus();
}

QString LineEntry::proposedNumber() const {
    const DocumentHeaders& headers = book_.kind().headers;
    const Record& header = *header_;
    return numbering::lineKey(numbering::nextLine(book_.vente, table_, header[headers.fac_aa], header[headers.fac_no]));
}

void LineEntry::startInserting(const Record& header, const Record& before) {
    start(Purpose::Insert, header);
    chosen_ = before;
    draft_.line[table_.fac_lg] = before[table_.fac_lg];
    show();
    box(table_.fac_ref)->setFocus();
}

void LineEntry::startChanging(const Record& header, const Record& line) {
    start(Purpose::Change, header);
    chosen_ = line;
    fillFrom(line);
    show();
    box(draft_.tracked ? static_cast<const Field&>(table_.fac_px) : table_.fac_qte)->setFocus();
}

void LineEntry::fillFrom(const Record& line) {
    draft_.line = line;
    draft_.tracked = !line[table_.fac_imm].isEmpty();
    draft_.isText = document_lines::isText(table_, line);
    draft_.reimbursements = document_lines::reimbursementsOf(book_, line[table_.fac_ref]);
    if (book_.kind().isCredit) draft_.line[table_.fac_qte] = -line[table_.fac_qte];
    shown_ = draft_.line;
}

std::optional<Record> LineEntry::chosenNow() const {
    const Record& chosen = *chosen_;
    for (const Record& line : documents::lines(book_, *header_)) {
        const bool same = chosen[table_.fac_imm].isEmpty() ? line[table_.fac_lg] == chosen[table_.fac_lg]
                                                           : line[table_.fac_imm] == chosen[table_.fac_imm];
        if (same && line[table_.fac_ref] == chosen[table_.fac_ref]) return line;
    }
    return std::nullopt;
}

void LineEntry::reread(const Record& document) {
    header_ = document;
    if (purpose_ == Purpose::Add) {
        const bool proposed = typed(table_.fac_lg) == preset_;
        preset_ = proposedNumber();
        if (proposed) box(table_.fac_lg)->put(preset_);
        return;
    }
    const auto line = chosenNow();
    if (!line) return left();
    chosen_ = line;
    if (purpose_ == Purpose::Insert) return box(table_.fac_lg)->put((*line)[table_.fac_lg]);
    const Record before = shown_;
    fillFrom(*line);
    carryTyped(*panel_, before, draft_.line);
    show();
}

void LineEntry::show() {
    panel_->load(draft_.line);
    adaptBoxes();
}

void LineEntry::adaptBoxes() {
    QList<const Field*> open;
    if (purpose_ == Purpose::Add) open.append(&table_.fac_lg);
    if (purpose_ != Purpose::Change) open += QList<const Field*>{&table_.fac_ref, &table_.fac_imm, &table_.fac_li1};
    if (!draft_.isText) open += QList<const Field*>{&table_.fac_px, &table_.fac_remx};
    if (!draft_.isText && !draft_.tracked) open.append(&table_.fac_qte);
    if (draft_.reimbursements.size() > 1) open.append(&table_.fac_tip);
    panel_->setEditableOnly(open);
}

/// An immatriculation scanned where an article was asked for.
bool LineEntry::isUnit(const QString& typed) {
    return book_.kind().hasUnits && !articles::find(book_.molven, typed) &&
           units::find(book_.molven, Immatriculation::fromText(typed));
}

void LineEntry::takeArticle() {
    const QString reference = typed(table_.fac_ref);
    if (reference.isEmpty()) return;
    if (isUnit(reference)) {
        box(table_.fac_ref)->put({});
        box(table_.fac_imm)->put(reference);
        return takeUnit();
    }
    const QString number = typed(table_.fac_lg);
    draft_ = document_lines::preset(book_, *header_, reference);
    draft_.line[table_.fac_lg] = number;
    if (book_.kind().isPriced) {
        const auto article = articles::find(book_.molven, reference);
        articleDiscount_->put((*article)[strarticle.art_rem]);
    }
    show();
    takeAmounts();
    if (!draft_.priceMessage.isEmpty()) form_.notify(draft_.priceMessage);
    box(draft_.tracked  ? static_cast<const Field&>(table_.fac_imm)
        : draft_.isText ? static_cast<const Field&>(table_.fac_li1)
                        : table_.fac_qte)
        ->setFocus();
}

void LineEntry::takeUnit() {
    const QString number = typed(table_.fac_imm);
    if (number.isEmpty()) return;
    const Record unit = unit_rules::check(book_, *header_, number);
    const QString reference = unit[strproduit.ref_art];
    if (typed(table_.fac_ref).isEmpty()) {
        box(table_.fac_ref)->put(reference);
        takeArticle();
    }
    const Record& line = draft_.line;
    if (reference.compare(line[table_.fac_ref], Qt::CaseInsensitive) != 0)
        throw Refusal(QStringLiteral("Cette immatriculation est de la référence : ") + reference, table_.fac_imm.name);
    document_lines::setUnit(book_, draft_, unit);
    show();
    takeAmounts();
    unit_warnings::tellNotes(form_, book_, *header_, {unit});
    validate_->setFocus();
}

/// Shows the net price that follows from what is typed.
void LineEntry::takeAmounts() {
    if (draft_.isText || !book_.kind().isPriced) return;
    Record& line = draft_.line;
    const Record loaded = line;
    const auto number = [&](const Number& field) { return panel_->number(field, loaded); };
    line[table_.fac_lg] = typed(table_.fac_lg);
    line[table_.fac_li1] = typed(table_.fac_li1);
    line[table_.fac_qte] = number(table_.fac_qte);
    line[table_.fac_px] = number(table_.fac_px);
    line[table_.fac_remx] = number(table_.fac_remx);
    line[table_.fac_pv] = pricing::net(number(table_.fac_px), number(table_.fac_remx));
    panel_->load(line);
}

void LineEntry::validate() {
    const int number = purpose_ == Purpose::Add ? typedNumber() : 0;
    const Record& line = draft_.line;
    if (line[table_.fac_ref].compare(typed(table_.fac_ref), Qt::CaseInsensitive) != 0 ||
        typed(table_.fac_ref).isEmpty())
        draft_ = document_lines::preset(book_, *header_, typed(table_.fac_ref));
    QList<Record> units;
    if (draft_.tracked) {
        units.append(unit_rules::check(book_, *header_, typed(table_.fac_imm)));
        document_lines::setUnit(book_, draft_, units.first());
    } else {
        takeUnit(); // one left in its box says again why it cannot be on this line
    }
    if (draft_.reimbursements.size() > 1) takeReimbursement();
    takeAmounts();
    draft_.line[table_.fac_li1] = typed(table_.fac_li1);
    if (const QString warning = document_lines::stockWarning(book_, draft_); !warning.isEmpty())
        form_.prompt().tell(warning, {}, Icon::Warning);
    if (!unit_warnings::areAccepted(form_, book_, *header_, units)) return;
    if (purpose_ == Purpose::Insert) {
        document_lines::insert(book_, *header_, draft_, *chosen_);
        written();
        return left();
    }
    document_lines::add(book_, *header_, {draft_}, number);
    written();
    startAdding(*header_);
}

void LineEntry::changeLine() {
    takeAmounts();
    document_lines::change(book_, *header_, draft_.line, *chosen_);
    written();
    left();
}

void LineEntry::askRange() {
    const QString reference = typed(table_.fac_ref);
    if (reference.isEmpty()) throw Refusal(QStringLiteral("Référence obligatoire"), table_.fac_ref.name);
    if (typed(table_.fac_imm).isEmpty()) throw Refusal(layout_.askFirstUnit, table_.fac_imm.name);
    rangeWanted(reference, typed(table_.fac_imm));
}

} // namespace molven

#include "screens/sales/header_entry.h"

#include "data/errors.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "sales/transfer_notes.h"
#include "screens/sales/document_layout.h"
#include "screens/sales/typed_boxes.h"
#include "ui/form.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>

namespace molven {

namespace {

QList<FieldBox> addressBoxes() {
    QList<FieldBox> boxes;
    for (const Label* line : strbl.address()) boxes.append({.field = line, .caption = {}, .characters = 20});
    boxes.first().caption = QStringLiteral("Livraison :");
    return boxes;
}

} // namespace

HeaderEntry::HeaderEntry(Form& form, SalesBook& book, const DocumentLayout& layout)
    : QWidget(&form),
      form_(form),
      book_(book),
      table_(book.kind().headers),
      layout_(layout),
      shown_(table_),
      preset_(table_),
      presetAddress_(strbl) {
    build();
    wire();
}

void HeaderEntry::build() {
    const auto words = [this](const QString& name) {
        auto* made = new QLabel(this);
        made->setObjectName(name);
        made->setTextFormat(Qt::PlainText);
        made->setWordWrap(true);
        made->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        return made;
    };
    boxes_ = new RecordPanel(layout_.header, 2, this);
    boxes_->markRequired(layout_.required);
    address_ = new RecordPanel(addressBoxes(), 1, this);
    invoiced_ = words(QStringLiteral("Lbladresse"));
    invoiced_->setFixedWidth(style::boxWidth(16));
    invoiced_->setVisible(book_.kind().isPriced);
    memo_ = words(QStringLiteral("Lblmemo"));
    for (const FieldBox& box : boxes_->boxes()) form_.bind(box.field->name, boxes_->edit(*box.field));
    auto* right = new QVBoxLayout;
    right->addWidget(address_);
    right->addWidget(memo_, 1);
    auto* row = new QHBoxLayout(this);
    style::nest(*row);
    row->addWidget(boxes_, 1);
    row->addWidget(invoiced_);
    row->addLayout(right);
}

void HeaderEntry::wire() {
    boxes_->edit(table_.fac_no)->isKey = true;
    form_.onLeft(boxes_->edit(table_.fac_no), [this] { numberTyped(); });
    form_.onLeft(boxes_->edit(table_.fac_nom), [this] { searchClient(); });
    codes_.emplace(form_, *boxes_, QHash<DataFile, Database>{{DataFile::Molven, book_.molven}});
    codes_->wire([this](const Field& field) {
        if (&field == &table_.fac_clt) takeClient();
        if (&field == &table_.fac_mon) showEuro();
        showWords();
    });
    QList<const Field*> refused;
    for (const FieldBox& box : boxes_->boxes())
        if (box.field->code && box.field != &table_.fac_mon) refused.append(box.field);
    codes_->refuseOnLeaving(refused);
}

QString HeaderEntry::typed(const Field& field) const { return boxes_->edit(field)->value().trimmed(); }

QString HeaderEntry::number() const { return typed(table_.fac_no); }

QString HeaderEntry::client() const { return typed(table_.fac_clt); }

QList<const Field*> HeaderEntry::fieldsOfNew() const {
    QList<const Field*> fields;
    for (const FieldBox& box : boxes_->boxes())
        if (!box.readOnly && box.field != &table_.fac_no && !fixed_.contains(box.field)) fields.append(box.field);
    return fields;
}

void HeaderEntry::setOpen(Open open) {
    open_ = open;
    QList<const Field*> fields{&table_.fac_no};
    if (open == Open::Search) fields.append(&table_.fac_clt);
    if (open == Open::New) fields = fieldsOfNew();
    if (open == Open::Kept) {
        fields.clear();
        for (const WatchedField& kept : book_.kind().open) fields.append(kept.field);
    }
    boxes_->setEditableOnly(fields);
    address_->setEditable(open == Open::New);
}

/// The euro field follows the currency.
void HeaderEntry::showEuro() { boxes_->edit(table_.fac_eur)->put(documents::euroOf(book_, typed(table_.fac_mon))); }

void HeaderEntry::startNew(const QString& client, const Preset& preset, const QList<const Field*>& fixed) {
    presetFor_ = preset;
    fixed_ = fixed;
    setOpen(Open::New);
    Record header = documents::blank(book_);
    shown_ = preset_ = header;
    presetAddress_ = Record(strbl);
    header[table_.fac_clt] = client;
    load(header, presetAddress_);
    takeClient();
    focusFirst();
}

void HeaderEntry::show(const std::optional<Record>& document) {
    shown_ = document.value_or(Record(table_));
    load(shown_, document ? documents::deliveryAddress(book_, shown_) : Record(strbl));
}

void HeaderEntry::reread(const Record& document) {
    Record header = document;
    carryTyped(*boxes_, shown_, header);
    show(document);
    boxes_->load(header);
    showWords();
}

void HeaderEntry::load(const Record& header, const Record& address) {
    boxes_->load(header);
    address_->load(address);
    QStringList lines{QStringLiteral("Facturation :")};
    for (const Label* line : table_.address())
        if (!header[*line].isEmpty()) lines.append(header[*line]);
    invoiced_->setText(book_.kind().isPriced && lines.size() > 1 ? lines.join(u'\n') : QString());
    showWords();
}

/// Presets the header from the client; what the user typed stays.
void HeaderEntry::takeClient() {
    if (client().isEmpty()) return;
    const auto found = parties::findClient(book_.molven, client());
    if (!found) throw Refusal(QStringLiteral("Ce code n'existe pas"), table_.fac_clt.name);
    const Record& known = *found;
    if (open_ != Open::New) {
        boxes_->edit(table_.fac_clt)->put(known[strclient.clt_cod]);
        return showWords();
    }
    const Record preset = presetFor_(known[strclient.clt_cod]);
    const Record presetAddress = documents::presetDeliveryAddress(known);
    Record header = preset, address = presetAddress;
    carryTyped(*boxes_, preset_, header, {&table_.fac_clt, &table_.fac_nom});
    carryTyped(*address_, presetAddress_, address);
    preset_ = preset;
    presetAddress_ = presetAddress;
    load(header, address);
}

/// The beginning of a name finds the client.
void HeaderEntry::searchClient() {
    const QString name = typed(table_.fac_nom);
    if (open_ != Open::New || name.isEmpty() || !client().isEmpty()) return;
    PickList clients = pick_lists::clients(book_.molven, [this](const Record& client) {
        boxes_->edit(table_.fac_clt)->put(client[strclient.clt_cod]);
        form_.guarded([this] { takeClient(); });
    });
    clients.query = [this, name](const Criterion& filter, const Order& order) {
        return book_.molven.select(strclient, startsWith(strclient.clt_nom, name) && filter,
                                   order.orElse(Order(strclient.clt_nom)));
    };
    form_.pick(clients);
}

/// The words beside the codes; the client's name has a box of its own.
void HeaderEntry::showWords() {
    codes_->showWords();
    if (!layout_.depotWords.isEmpty())
        boxes_->setHint(book_.kind().depot, layout_.depotWords + typed(book_.kind().depot));
    if (const QString renewed =
            layout_.has(DocumentLayout::Part::Renewal) ? transfer_notes::renewedOn(shown_) : QString();
        !renewed.isEmpty())
        boxes_->setHint(strbtre.fac_eta, QStringLiteral("renouvelé sur le bon ") + renewed);
    const auto client = parties::findClient(book_.molven, this->client());
    boxes_->setHint(table_.fac_clt, client ? QString((*client)[strclient.clt_l5]) : QString());
    memo_->setText(client ? QString((*client)[strclient.clt_memo]) : QString());
}

bool HeaderEntry::isTyped() const {
    if (open_ == Open::New) return boxes_->differsFrom(shown_) || address_->differsFrom(presetAddress_);
    return open_ == Open::Kept && boxes_->differsFrom(shown_);
}

bool HeaderEntry::restoreNumber() {
    const QString shown = shown_[table_.fac_no];
    if (number() == shown) return false;
    boxes_->edit(table_.fac_no)->put(shown);
    return true;
}

Record HeaderEntry::entered() {
    if (client().isEmpty()) throw Refusal(QStringLiteral("Client obligatoire"), table_.fac_clt.name);
    takeClient();
    Record header = preset_;
    carryTyped(*boxes_, preset_, header, {&table_.fac_no});
    return header;
}

Record HeaderEntry::deliveryAddress() const {
    Record address = presetAddress_;
    address_->store(address);
    return address;
}

Record HeaderEntry::changed() const {
    Record header = shown_;
    carryTyped(*boxes_, shown_, header);
    return header;
}

void HeaderEntry::focusFirst() {
    boxes_->edit(open_ == Open::New ? table_.fac_clt : *book_.kind().open.first().field)->setFocus();
}

void HeaderEntry::focusNumber() { boxes_->edit(table_.fac_no)->setFocus(Qt::OtherFocusReason); }

void HeaderEntry::setTabOrderBefore(QWidget* validation) {
    QWidget* before = nullptr;
    for (const RecordPanel* panel : {boxes_, address_})
        for (const FieldBox& box : panel->boxes()) {
            QWidget* edit = panel->edit(*box.field);
            if (before) setTabOrder(before, edit);
            before = edit;
        }
    setTabOrder(before, validation);
}

} // namespace molven

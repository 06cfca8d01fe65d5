#include "screens/sales/header_entry.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "screens/sales/typed_boxes.h"
#include "ui/form.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>

#include <array>

namespace molven {

namespace {

QList<FieldBox> headerBoxes(const DocumentKind& kind) {
    const auto& h = kind.headers;
    const bool credit = kind.isCredit;
    const auto list = [](const Field& field, const char* caption, const char* control, const char* button,
                         int characters = 0) {
        return FieldBox{&field, QString::fromUtf8(caption), QString::fromLatin1(control), characters, {}, false,
                        false,  QString::fromLatin1(button)};
    };
    return {{&h.fac_no, QStringLiteral("N° :"), QStringLiteral("txtno")},
            list(h.fac_clt, "Client :", "txtclt", "cmdclt"),
            {&h.fac_nom, QStringLiteral("Nom :"), QStringLiteral("Txtnom"), 26},
            {&h.fac_datf, QStringLiteral("Date :"), QStringLiteral("Mskdatf"), 0, {}, true},
            {&h.fac_refc, QStringLiteral("Réf. commande :"), QStringLiteral("txtrefc"), 20},
            {&h.fac_datc, QStringLiteral("Date commande :"), QStringLiteral("Mskdatc"), 0, {}, true},
            {&h.fac_pat, QStringLiteral("Patient :"), QStringLiteral("txtpat"), 24},
            {&h.fac_btr, QStringLiteral("Bon :"), QStringLiteral("txtbtr"), 20},
            list(h.fac_chr, "Chirurgien :", "txtchr", "cmdchr"),
            list(h.fac_trs, "Transport :", "txttrs", "Cmdtrs"),
            list(h.fac_mon, "Monnaie :", "Txtmon", "Cmdmon"),
            {&h.fac_eur, QStringLiteral("Euro :"), QStringLiteral("Txteur"), 8, {}, false, true},
            list(h.fac_dep, credit ? "Dépôt retour :" : "Dépôt :", credit ? "txtavodep" : "txtdep",
                 credit ? "Cmdavodep" : "Cmddep"),
            {&h.fac_rep, QStringLiteral("Représentant :"), QStringLiteral("txtrep"), 4, {}, false, true}};
}

QList<FieldBox> addressBoxes() {
    return {{&strbl.bl_l1, QStringLiteral("Livraison :"), {}, 20},
            {&strbl.bl_l2, {}, {}, 20},
            {&strbl.bl_l3, {}, {}, 20},
            {&strbl.bl_l4, {}, {}, 20},
            {&strbl.bl_l5, {}, {}, 20}};
}

Record deliveryAddressOf(const Record& client) {
    Record address(strbl);
    address[strbl.bl_l1] = client[strclient.clt_liv1];
    address[strbl.bl_l2] = client[strclient.clt_liv2];
    address[strbl.bl_l3] = client[strclient.clt_liv3];
    address[strbl.bl_l4] = client[strclient.clt_liv4];
    address[strbl.bl_l5] = client[strclient.clt_liv5];
    return address;
}

} // namespace

HeaderEntry::HeaderEntry(Form& form, SalesBook& book)
    : QWidget(&form),
      form_(form),
      book_(book),
      table_(book.kind().headers),
      shown_(table_),
      preset_(table_),
      presetAddress_(strbl) {
    build();
    setPickers();
    setChecks();
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
    boxes_ = new RecordPanel(headerBoxes(book_.kind()), 2, this);
    boxes_->markRequired({&table_.fac_clt});
    address_ = new RecordPanel(addressBoxes(), 1, this);
    invoiced_ = words(QStringLiteral("Lbladresse"));
    invoiced_->setFixedWidth(style::boxWidth(16));
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

void HeaderEntry::setPickers() {
    codes_.emplace(form_, *boxes_, QHash<DataFile, Database>{{DataFile::Molven, book_.molven}});
    codes_->offer();
    const auto put = [this](const Text& field, const Text& from) {
        return [this, &field, &from](const Record& row) {
            boxes_->edit(field)->put(row[from]);
            showWords();
            showEuro();
        };
    };
    const auto picker = [this](const Text& field, const std::function<PickList()>& makeList) {
        form_.onPick(
            boxes_->edit(field), [this, makeList] { form_.pick(makeList()); }, boxes_->listButton(field));
    };
    picker(table_.fac_clt, [this] {
        return pick_lists::clients(book_.molven, [this](const Record& client) {
            boxes_->edit(table_.fac_clt)->put(client[strclient.clt_cod]);
            form_.guarded([this] { takeClient(); });
        });
    });
    const std::tuple<const Text*, QString, QString> lists[] = {
        {&table_.fac_chr, list::Surgeon, QStringLiteral("LES CHIRURGIENS")},
        {&table_.fac_trs, list::Dispatch, QStringLiteral("LES TRANSPORTEURS")},
        {&table_.fac_dep, list::Depot, QStringLiteral("LES DEPOTS")}};
    for (const auto& [field, letter, title] : lists)
        picker(*field, [this, put, field = field, letter = letter, title = title] {
            return pick_lists::parameters(book_.molven, letter, title, put(*field, strparam.num_par));
        });
    picker(table_.fac_mon,
           [this, put] { return pick_lists::currencies(book_.molven, put(table_.fac_mon, strmonnaie.mon_cle)); });
}

void HeaderEntry::setChecks() {
    boxes_->edit(table_.fac_no)->isKey = true;
    form_.onLeft(boxes_->edit(table_.fac_no), [this] { numberTyped(); });
    form_.onLeft(boxes_->edit(table_.fac_clt), [this] { takeClient(); });
    form_.onLeft(boxes_->edit(table_.fac_nom), [this] { searchClient(); });
    const auto complete = [this](const Text& field) {
        Edit* box = boxes_->edit(field);
        box->put(codes::completed(book_.molven, *field.code, box->value()));
        showWords();
    };
    form_.onLeft(boxes_->edit(table_.fac_mon), [this, complete] {
        complete(table_.fac_mon);
        showEuro();
    });
    for (const Text* field : {&table_.fac_chr, &table_.fac_trs, &table_.fac_dep})
        form_.onLeft(boxes_->edit(*field), [this, complete, field] {
            complete(*field);
            codes::require(book_.molven, *field, *field->code, typed(*field));
        });
}

QString HeaderEntry::typed(const Field& field) const { return boxes_->edit(field)->value().trimmed(); }

QString HeaderEntry::number() const { return typed(table_.fac_no); }

QString HeaderEntry::client() const { return typed(table_.fac_clt); }

void HeaderEntry::setOpen(Open open) {
    open_ = open;
    const auto& h = table_;
    const QList<const Field*> kept{&h.fac_chr, &h.fac_trs, &h.fac_btr, &h.fac_pat};
    switch (open) {
    case Open::Search:
        boxes_->setEditableOnly({&h.fac_no, &h.fac_clt});
        break;
    case Open::Number:
        boxes_->setEditableOnly({&h.fac_no});
        break;
    case Open::New:
        boxes_->setEditableOnly(kept + QList<const Field*>{&h.fac_clt, &h.fac_nom, &h.fac_datf, &h.fac_refc,
                                                           &h.fac_datc, &h.fac_mon, &h.fac_dep});
        break;
    case Open::Kept:
        boxes_->setEditableOnly(kept);
        break;
    }
    address_->setEditable(open == Open::New);
}

/// The euro field follows the currency.
void HeaderEntry::setCurrency(Record& header, const QString& currency) {
    header[table_.fac_mon] = currency;
    const auto found = book_.molven.find(strmonnaie, strmonnaie.mon_cle == currency);
    header[table_.fac_eur] = found ? molven::shown(std::as_const(*found)[strmonnaie.mon_euro]) : QString();
}

void HeaderEntry::showEuro() {
    Record header(table_);
    setCurrency(header, typed(table_.fac_mon));
    boxes_->edit(table_.fac_eur)->put(std::as_const(header)[table_.fac_eur]);
}

void HeaderEntry::startNew(const QString& client) {
    Record header(table_);
    header[table_.fac_datf] = dateText(Clock::today());
    setCurrency(header, parameters::companyCurrency(book_.molven, form_.session().spe_mon));
    shown_ = preset_ = header;
    presetAddress_ = Record(strbl);
    header[table_.fac_clt] = client;
    load(header, presetAddress_);
    takeClient();
}

void HeaderEntry::show(const std::optional<Record>& document) {
    shown_ = document.value_or(Record(table_));
    const auto address = book_.blent.find(strbl, strbl.bl_cod == std::as_const(shown_)[table_.fac_clt]);
    load(shown_, document && address ? *address : Record(strbl));
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
    for (const Label* line : {&table_.fac_l1, &table_.fac_l2, &table_.fac_l3, &table_.fac_l4, &table_.fac_l5})
        if (!header[*line].isEmpty()) lines.append(header[*line]);
    invoiced_->setText(lines.size() > 1 ? lines.join(u'\n') : QString());
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
    Record preset = documents::blank(book_, known[strclient.clt_cod]);
    setCurrency(preset, parameters::companyCurrency(book_.molven, form_.session().spe_mon));
    const Record presetAddress = deliveryAddressOf(known);
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
                                   order.terms.isEmpty() ? Order(strclient.clt_nom) : order);
    };
    form_.pick(clients);
}

/// The words beside the codes.
void HeaderEntry::showWords() {
    const auto label = [this](const Text& field, const QString& letter) {
        boxes_->setHint(field, parameters::label(book_.molven, letter, typed(field)));
    };
    label(table_.fac_chr, list::Surgeon);
    label(table_.fac_trs, list::Dispatch);
    label(table_.fac_rep, list::Representative);
    label(table_.fac_dep, list::Depot);
    if (book_.kind().isCredit)
        boxes_->setHint(table_.fac_dep, QStringLiteral("Dépôt Retour marchandises : ") + typed(table_.fac_dep));
    const auto client = parties::findClient(book_.molven, this->client());
    boxes_->setHint(table_.fac_clt, client ? QString((*client)[strclient.clt_l5]) : QString());
    memo_->setText(client ? QString((*client)[strclient.clt_memo]) : QString());
}

bool HeaderEntry::isTyped() const {
    if (open_ == Open::New) return boxes_->differsFrom(shown_) || address_->differsFrom(presetAddress_);
    return open_ == Open::Kept && boxes_->differsFrom(shown_);
}

bool HeaderEntry::restoreNumber() {
    const QString shown = std::as_const(shown_)[table_.fac_no];
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

QStringList HeaderEntry::deliveryAddress() const {
    QStringList lines;
    for (const FieldBox& box : address_->boxes()) lines.append(address_->edit(*box.field)->value().trimmed());
    return lines;
}

Record HeaderEntry::changed() const {
    Record header = shown_;
    carryTyped(*boxes_, shown_, header);
    return header;
}

void HeaderEntry::focusFirst() {
    boxes_->edit(open_ == Open::New ? static_cast<const Field&>(table_.fac_clt) : table_.fac_chr)->setFocus();
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

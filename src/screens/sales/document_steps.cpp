// What a user does with a document: header, lines, footer, closing. The screen itself is built in document_form.cpp.

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/unit_rules.h"
#include "screens/sales/document_form.h"
#include "screens/sales/line_entry.h"
#include "screens/sales/note_choice.h"
#include "screens/sales/unit_range.h"
#include "shell/menu_tree.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace molven {

QString DocumentForm::typed(const Field& field) const { return header_->edit(field)->value().trimmed(); }

const Record& DocumentForm::requireDocument() const {
    if (!document_) throw Refusal(QStringLiteral("N° inconnu"), table_.fac_no.name);
    return *document_;
}

Record DocumentForm::requireLine() const {
    const auto line = lines_->current();
    if (!line) throw Refusal(QStringLiteral("N° ligne obligatoire"), lines_->objectName());
    return *line;
}

void DocumentForm::setStage(Stage stage) {
    stage_ = stage;
    const auto& h = table_;
    const QList<const Field*> kept{&h.fac_chr, &h.fac_trs, &h.fac_btr, &h.fac_pat};
    const QList<const Field*> whole = kept + QList<const Field*>{&h.fac_clt,  &h.fac_nom, &h.fac_datf, &h.fac_refc,
                                                                 &h.fac_datc, &h.fac_mon, &h.fac_dep};
    header_->setEditableOnly(stage == Stage::Entering   ? whole
                             : stage == Stage::Changing ? kept
                                                        : QList<const Field*>{&h.fac_no});
    address_->setEditable(stage == Stage::Entering);
    const bool typing = stage == Stage::Entering || stage == Stage::Changing;
    for (QPushButton* made : whenEntering_) made->setEnabled(typing);
    for (QPushButton* made : whenShown_) made->setEnabled(stage == Stage::Shown);
    add_->setEnabled(!typing);
    leaveTray();
}

void DocumentForm::showTray(QWidget* part) {
    tray_->setCurrentWidget(part);
    tray_->show();
}

void DocumentForm::leaveTray() {
    tray_->hide();
    if (stage_ == Stage::Shown) addLine_->setFocus();
}

void DocumentForm::startNew() {
    if (!closeDocument()) return;
    document_.reset();
    lines_->rows().setRecords({});
    Record header(table_);
    header[table_.fac_datf] = dateText(Clock::today());
    header[table_.fac_mon] = parameters::companyCurrency(book_.molven, session().spe_mon);
    header_->load(header);
    address_->load(Record(strbl));
    total_->clear();
    kindLabel_->setText(book_.kind().label);
    setStage(Stage::Entering);
    showWords();
    header_->edit(table_.fac_clt)->setFocus();
}

/// Presets the header from the client; what is already typed elsewhere stays.
void DocumentForm::takeClient() {
    if (typed(table_.fac_clt).isEmpty()) return;
    Record header = documents::blank(book_, typed(table_.fac_clt));
    for (const Field* field : {static_cast<const Field*>(&table_.fac_datf), static_cast<const Field*>(&table_.fac_refc),
                               static_cast<const Field*>(&table_.fac_datc), static_cast<const Field*>(&table_.fac_pat),
                               static_cast<const Field*>(&table_.fac_btr), static_cast<const Field*>(&table_.fac_chr)})
        if (!typed(*field).isEmpty()) header.set(*field, typed(*field));
    header_->load(header);
    const Record client = *parties::findClient(book_.molven, typed(table_.fac_clt));
    Record address(strbl);
    address[strbl.bl_l1] = client[strclient.clt_liv1];
    address[strbl.bl_l2] = client[strclient.clt_liv2];
    address[strbl.bl_l3] = client[strclient.clt_liv3];
    address[strbl.bl_l4] = client[strclient.clt_liv4];
    address[strbl.bl_l5] = client[strclient.clt_liv5];
    address_->load(address);
    showWords();
}

/// The beginning of a name finds the client.
void DocumentForm::searchClient() {
    const QString name = typed(table_.fac_nom);
    if (stage_ != Stage::Entering || name.isEmpty() || !typed(table_.fac_clt).isEmpty()) return;
    PickList clients = pick_lists::clients(book_.molven, [this](const Record& client) {
        header_->edit(table_.fac_clt)->put(client[strclient.clt_cod]);
        guarded([this] { takeClient(); });
    });
    clients.query = [this, name](const Criterion& filter, const Order& order) {
        return book_.molven.select(strclient, startsWith(strclient.clt_nom, name) && filter,
                                   order.terms.isEmpty() ? Order(strclient.clt_nom) : order);
    };
    pick(clients);
}

void DocumentForm::validateHeader() {
    if (stage_ == Stage::Changing) {
        Record header = *document_;
        header_->store(header);
        display(documents::change(book_, header, *document_));
        return;
    }
    const QString client = typed(table_.fac_clt);
    if (client.isEmpty()) throw Refusal(QStringLiteral("Client obligatoire"), table_.fac_clt.name);
    Record header = documents::blank(book_, client);
    header_->store(header);
    QStringList address;
    for (const FieldBox& box : address_->boxes()) address.append(address_->edit(*box.field)->value().trimmed());
    const Record written = documents::create(book_, header, address);
    display(written);
    touched_ = true;
    addLine_->setFocus();
}

void DocumentForm::startChanging() {
    documents::requireOpen(book_, requireDocument());
    prompt().tell(QStringLiteral("modifs possibles : chirurgien/transport/bon/patient/lignes "));
    setStage(Stage::Changing);
    header_->edit(table_.fac_chr)->setFocus();
}

void DocumentForm::abandon() {
    display(document_);
    add_->setFocus();
}

void DocumentForm::removeDocument() {
    const Record header = requireDocument();
    if (!book_.kind().isDeletable) documents::requireDeletable(book_, header);
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir supprimer ce Bon Livraison ? "))) return;
    documents::remove(book_, header);
    touched_ = false;
    display(std::nullopt);
}

void DocumentForm::display(const std::optional<Record>& header) {
    const bool same = header && document_ && (*header)[table_.fac_no] == (*document_)[table_.fac_no];
    if (!same && !closeDocument()) return;
    document_ = header;
    const Record shown = header.value_or(Record(table_));
    header_->load(shown);
    const auto address = book_.blent.find(strbl, strbl.bl_cod == shown[table_.fac_clt]);
    address_->load(header && address ? *address : Record(strbl));
    kindLabel_->setText(header ? book_.kind().shownLabel : book_.kind().label);
    setStage(header ? Stage::Shown : Stage::Empty);
    showWords();
    if (header)
        refresh();
    else {
        lines_->rows().setRecords({});
        total_->clear();
    }
}

void DocumentForm::displayTyped() {
    const QString number = typed(table_.fac_no);
    if (number.isEmpty() || stage_ == Stage::Entering || stage_ == Stage::Changing) return;
    const auto found = documents::find(book_, number);
    if (!found) throw Refusal(QStringLiteral("N° inconnu"), table_.fac_no.name);
    display(found);
}

void DocumentForm::pickDocument() {
    const QString client = document_ ? QString(std::as_const(*document_)[table_.fac_clt]) : typed(table_.fac_clt);
    documents::ofClient(book_, client);
    pick({book_.kind().listTitle,
          {{&table_.fac_no, QStringLiteral("N°"), 80},
           {&table_.fac_datf, QStringLiteral("Date"), 100},
           {&table_.fac_pat, QStringLiteral("Patient"), 260},
           {&table_.fac_ht, QStringLiteral("Total HT"), 100, QStringLiteral("#####0.00")},
           {&table_.fac_cpt, QStringLiteral("Etat"), 50}},
          [this, client](const Criterion& filter, const Order& order) {
              return book_.vente.select(table_, documents::documentsOf(book_, client) && filter,
                                        order.terms.isEmpty() ? Order{table_.tri_datf, table_.fac_no} : order);
          },
          [this](const Record& header) { display(header); }});
}

/// The words beside the codes of the header.
void DocumentForm::showWords() {
    const auto label = [this](const Text& field, const QString& letter) {
        header_->setHint(field, parameters::label(book_.molven, letter, typed(field)));
    };
    label(table_.fac_chr, list::Surgeon);
    label(table_.fac_trs, list::Dispatch);
    label(table_.fac_rep, list::Representative);
    label(table_.fac_dep, list::Depot);
    if (book_.kind().isCredit)
        header_->setHint(table_.fac_dep, QStringLiteral("Dépôt Retour marchandises : ") + typed(table_.fac_dep));
    const auto client = parties::findClient(book_.molven, typed(table_.fac_clt));
    header_->setHint(table_.fac_clt, client ? QString((*client)[strclient.clt_l5]) : QString());
    memo_->setText(client ? QString((*client)[strclient.clt_memo]) : QString());
}

/// Reads header and lines again after a write.
void DocumentForm::refresh() {
    touched_ = true;
    document_ = documents::current(book_, requireDocument());
    lines_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return book_.vente.select(book_.kind().lines, documents::linesOf(book_, *document_) && filter,
                                  order.terms.isEmpty() ? Order{book_.kind().lines.fac_no, book_.kind().lines.fac_lg}
                                                        : order);
    });
    const int count = lines_->rows().rowCount();
    if (count > 0) lines_->selectRow(count - 1);
    total_->setText(QStringLiteral("Total HT : ") +
                    format(requireDocument()[table_.fac_ht], QStringLiteral("#####0.00")));
    footer_->load(*document_);
}

bool DocumentForm::closeDocument() {
    if (!document_ || !touched_) return true;
    touched_ = false;
    const auto stored = documents::find(book_, requireDocument()[table_.fac_no]);
    if (!stored || (*stored)[table_.fac_cpt] == documents::Transferred) return true;
    const bool empty = book_.vente.count(book_.kind().lines, documents::linesOf(book_, *stored)) == 0;
    if (!empty && !std::as_const(*stored)[table_.fac_ht].isZero()) return true;
    const QString question = empty ? QStringLiteral("Aucune ligne sur ce document ,voulez-vous le supprimer ? ")
                                   : QStringLiteral("Montant HT = 0 ,voulez-vous supprimer ce document ? ");
    if (!prompt().ask(question)) return true;
    return guarded([this, &stored] { documents::abandon(book_, *stored); });
}

void DocumentForm::print() {
    requireDocument();
    const bool barcodes = prompt().ask(QStringLiteral("Edition Code Barre? "));
    const QString screen = reprintScreen(session().rules(), mode(), barcodes);
    desk().open(screen, mode(), QStringLiteral("Edition : ") + book_.kind().shownLabel);
}

void DocumentForm::addLine() {
    documents::requireOpen(book_, requireDocument());
    showTray(lineEntry_);
    lineEntry_->startAdding(*document_);
}

void DocumentForm::insertLine() {
    documents::requireOpen(book_, requireDocument());
    const Record line = requireLine();
    showTray(lineEntry_);
    lineEntry_->startInserting(*document_, line);
}

void DocumentForm::changeLine() {
    documents::requireOpen(book_, requireDocument());
    const Record line = requireLine();
    showTray(lineEntry_);
    lineEntry_->startChanging(*document_, line);
}

void DocumentForm::removeLine() {
    const Record line = requireLine();
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir supprimer cette ligne ? "))) return;
    document_lines::remove(book_, requireDocument(), line);
    refresh();
}

void DocumentForm::addRange(const QStringList& units) {
    QList<document_lines::Draft> drafts;
    for (const QString& number : units) {
        const Record unit = unit_rules::check(book_, *document_, number);
        document_lines::Draft draft = document_lines::preset(book_, *document_, unit[strproduit.ref_art]);
        document_lines::setUnit(book_, draft, unit);
        drafts.append(draft);
    }
    document_lines::add(book_, *document_, drafts);
    refresh();
    addLine();
}

void DocumentForm::openIntegration() {
    documents::requireOpen(book_, requireDocument());
    showTray(noteChoice_);
    if (!guarded([this] { noteChoice_->open(*document_); })) leaveTray();
}

void DocumentForm::openFooter() {
    footer_->load(requireDocument());
    footer_->setEditable(std::as_const(*document_)[table_.fac_cpt] != documents::Transferred);
    showTray(footerPart_);
    footer_->edit(table_.fac_rem)->setFocus();
}

void DocumentForm::validateFooter() {
    Record header = requireDocument();
    footer_->store(header);
    documents::changeFooter(book_, header, *document_);
    refresh();
    leaveTray();
}

void DocumentForm::closeEvent(QCloseEvent* event) {
    bool leave = true;
    guarded([&] { leave = closeDocument(); });
    event->setAccepted(leave);
}

} // namespace molven

// What a user does with a document as a whole: bringing up, header, deleting, closing.

#include "data/errors.h"
#include "data/format.h"
#include "sales/documents.h"
#include "sales/transfer_notes.h"
#include "screens/sales/document_form.h"
#include "screens/sales/header_entry.h"
#include "screens/sales/line_entry.h"
#include "screens/sales/print_form.h"
#include "shell/menu_tree.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/pick_panel.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace molven {

namespace {

const QString NoLine = QStringLiteral("Aucune ligne sur ce document ,voulez-vous le supprimer ? ");

} // namespace

/// The document that deeds are done to: the one the number box names, never another that was shown before.
const Record& DocumentForm::requireDocument() const {
    if (!shown() || padded(header_->number(), 6) != (*shown())[table_.fac_no])
        throw Refusal(QStringLiteral("N° inconnu"), table_.fac_no.name);
    return *shown();
}

QString DocumentForm::about(const Record& document) const {
    return QStringLiteral("%1 %2 du %3, %4")
        .arg(book_.kind().shownLabel, document[table_.fac_no], document[table_.fac_datf], document[table_.fac_nom]);
}

bool DocumentForm::mayLeaveHeader() {
    return !header_->isTyped() ||
           givesUp(shown() && entry_.state() != State::Adding ? about(*shown())
                                                              : book_.kind().label + QStringLiteral(", en-tête"));
}

bool DocumentForm::mayLeaveTray() {
    const TrayPart* part = trayPart();
    const QString unsaved = part ? part->unsaved() : QString();
    return unsaved.isEmpty() || givesUp(unsaved);
}

void DocumentForm::startNew() {
    if (!mayLeaveTray() || !closeDocument()) return;
    const QString client = !shown() && !entry_.isEntering() ? header_->client() : QString();
    entry_.startAdding();
    lines_->rows().setRecords({});
    total_->clear();
    kindLabel_->setText(book_.kind().label);
    adapt();
    header_->startNew(client, [this](const QString& code) { return documents::blank(book_, code); });
}

void DocumentForm::validateHeader() {
    if (!mayLeaveTray()) return;
    if (entry_.state() == State::Changing) {
        touched_ = true;
        return display(documents::change(book_, header_->changed(), header_->asRead()));
    }
    const Record header = header_->entered(), address = header_->deliveryAddress();
    display(renewal_ ? transfer_notes::renew(book_, header, renewal_->units, address, renewal_->note)
                     : documents::create(book_, header, address));
    touched_ = true;
    addLine_->setFocus();
}

void DocumentForm::startChanging() {
    documents::requireOpen(book_, requireDocument());
    if (!mayLeaveTray()) return;
    notify(book_.kind().openWords);
    entry_.startChanging();
    adapt();
    header_->focusFirst();
}

void DocumentForm::abandon() {
    display(shown());
    add_->setFocus();
}

void DocumentForm::removeDocument() {
    const Record document = requireDocument();
    const QList<Record> lines = linesRead_;
    if (!book_.kind().isDeletable) documents::requireDeletable(book_, document);
    if (!prompt().confirm(book_.kind().confirmDeletion, about(document))) return;
    documents::remove(book_, document, lines);
    touched_ = false;
    display(std::nullopt);
}

void DocumentForm::display(const std::optional<Record>& document) {
    const bool same = document && shown() && (*document)[table_.fac_no] == (*shown())[table_.fac_no];
    if (!same && !closeDocument()) return;
    if (!same) touched_ = false;
    entry_.view(document);
    header_->show(document);
    kindLabel_->setText(document ? book_.kind().shownLabel : book_.kind().label);
    adapt();
    if (document) return refresh();
    lines_->rows().setRecords({});
    total_->clear();
}

/// Brings up another document, unless the user keeps what is typed on this one.
void DocumentForm::leafTo(const std::optional<Record>& document) {
    if (mayLeaveTray() && mayLeaveHeader())
        display(document);
    else
        header_->restoreNumber();
}

void DocumentForm::displayTyped() {
    if (header_->number().isEmpty() || entry_.isEntering()) return;
    leafTo(numbered(header_->number()));
}

Record DocumentForm::numbered(const QString& number) {
    const auto found = documents::find(book_, number);
    if (!found) throw Refusal(QStringLiteral("N° inconnu"), table_.fac_no.name);
    return *found;
}

void DocumentForm::bringUp(const QString& number) {
    guarded([&] { leafTo(numbered(number)); });
}

void DocumentForm::offer(const QString& title, const Criterion& criterion) {
    QList<GridColumn> columns = layout_.documents;
    columns.insert(2, {&table_.fac_nom, QStringLiteral("Client"), 230});
    offer(title, columns, criterion);
}

void DocumentForm::offer(const QString& title, const QList<GridColumn>& columns, const Criterion& criterion) {
    pick({title, columns,
          [this, criterion](const Criterion& filter, const Order& order) {
              return book_.vente.select(table_, criterion && filter,
                                        order.orElse(Order{table_.tri_datf, table_.fac_no}));
          },
          [this](const Record& document) { leafTo(document); }});
}

void DocumentForm::pickDocument() {
    const QString client = header_->client();
    documents::ofClient(book_, client);
    offer(book_.kind().listTitle, layout_.documents, documents::documentsOf(book_, client));
}

QPushButton* DocumentForm::deed(const QString& name, const QString& caption, const std::function<void()>& handler) {
    return button(name, caption, [this, handler] { attempt(handler); });
}

/// Runs a deed. What another workstation changed meanwhile stops it: the user may read the document again, and goes on
/// from what is typed.
void DocumentForm::attempt(const std::function<void()>& deed) {
    try {
        deed();
    } catch (const ChangedElsewhere& change) {
        const QString offer = QStringLiteral("\n\nRelire le document ? Votre saisie reste à l'écran.");
        if (prompt().ask(change.text + offer, {}, Icon::Warning)) reread();
    }
}

/// The document shown as it is now, nothing when another workstation deleted it.
std::optional<Record> DocumentForm::stored() {
    try {
        return documents::current(book_, *shown());
    } catch (const ChangedElsewhere&) {
        return std::nullopt;
    }
}

void DocumentForm::reread() {
    if (!shown()) return;
    if (!stored()) return display(std::nullopt);
    readAgain();
    if (entry_.state() == State::Changing) header_->reread(*shown());
    if (TrayPart* part = trayPart()) part->reread(*shown());
}

/// Documents that a crash left without lines come up one after the other with the question that closes them.
void DocumentForm::offerUnfinished() {
    for (const Record& document : documents::unfinished(book_)) {
        display(document);
        touched_ = true;
    }
    display(std::nullopt);
}

/// Reads header and lines again. A header being changed keeps what its user reads and types.
void DocumentForm::readAgain() {
    entry_.reread(documents::current(book_, *shown()));
    if (!entry_.isEntering()) header_->show(shown());
    lines_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return book_.vente.select(book_.kind().lines, documents::linesOf(book_, *shown()) && filter,
                                  order.orElse(Order{book_.kind().lines.fac_no, book_.kind().lines.fac_lg}));
    });
    linesRead_ = documents::linesRead(book_, *shown());
    const int count = lines_->rows().rowCount();
    if (count > 0) lines_->selectRow(count - 1);
    total_->setText(totalWords());
}

QString DocumentForm::totalWords() const {
    if (book_.kind().isPriced)
        return QStringLiteral("Total HT : ") + format((*shown())[table_.fac_ht], QStringLiteral("#####0.00"));
    return counted(lines_->rows().rowCount(), QStringLiteral("ligne"));
}

void DocumentForm::refresh() {
    readAgain();
    for (int i = 0; i < tray_->count(); ++i) static_cast<TrayPart*>(tray_->widget(i))->follow(*shown());
}

QString DocumentForm::closingQuestion() {
    if (!shown() || !touched_) return {};
    const auto found = stored();
    if (!found || (*found)[table_.fac_cpt] == documents::Transferred) return {};
    if (book_.vente.count(book_.kind().lines, documents::linesOf(book_, *found)) == 0)
        return book_.kind().droppedWords.isEmpty() ? NoLine : book_.kind().droppedWords;
    return book_.kind().isPriced && (*found)[table_.fac_ht].isZero()
               ? QStringLiteral("Montant HT = 0 ,voulez-vous supprimer ce document ? ")
               : QString();
}

bool DocumentForm::closeDocument() {
    const QString question = closingQuestion();
    touched_ = false;
    if (question.isEmpty()) return true;
    const bool isDroppedAnyway = question == book_.kind().droppedWords;
    if (isDroppedAnyway) notify(question);
    const bool dropped = isDroppedAnyway || prompt().confirm(question, about(*shown()));
    return guarded([&] {
        if (dropped)
            documents::abandon(book_, *shown());
        else if (question == NoLine)
            documents::keep(book_, *shown());
    });
}

void DocumentForm::print() {
    const Record document = requireDocument();
    const bool barcodes =
        book_.kind().isPriced && !book_.kind().isProforma() && prompt().ask(QStringLiteral("Edition Code Barre? "));
    const QString words = printWords(book_.kind());
    const QString screen = reprintScreen(session().rules(), words, barcodes);
    Form* opened = desk().open(screen, words, QStringLiteral("Édition : ") + book_.kind().shownLabel);
    if (auto* form = dynamic_cast<PrintForm*>(opened)) form->guarded([&] { form->take(document); });
}

/// Escape leaves one thing at a time, from the inside out, and never leads to the question of a deletion.
void DocumentForm::leaveInnermost() {
    if (TrayPart* part = trayPart()) {
        if (mayLeaveTray()) part->left();
    } else if (entry_.isEntering()) {
        if (mayLeaveHeader()) abandon();
    } else if (header_->restoreNumber()) {
        header_->focusNumber();
    } else if (closingQuestion().isEmpty()) {
        close();
    } else {
        quit_->setFocus();
    }
}

void DocumentForm::keyPressEvent(QKeyEvent* event) {
    const auto* list = findChild<QWidget*>(QStringLiteral("FrameListe"));
    auto* edit = dynamic_cast<Edit*>(focusWidget());
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (list && list->isVisible()) {
        Form::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Escape) {
        guarded([this] { leaveInnermost(); });
    } else if (isReturn && edit && edit->isUnsettled()) {
        // What was just typed or scanned is taken first; the next Return validates.
        if (!edit->leave()) return;
        if (focusWidget() == edit) focusNextChild();
    } else {
        Form::keyPressEvent(event);
    }
}

bool DocumentForm::mayClose() {
    bool leave = true;
    guarded([&] { leave = mayLeaveTray() && mayLeaveHeader() && closeDocument(); });
    return leave;
}

} // namespace molven

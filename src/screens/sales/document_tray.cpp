// The lines of a document, and what opens below them: line entry, ranges of units, delivery notes, the footer.

#include "data/errors.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/unit_rules.h"
#include "screens/sales/document_form.h"
#include "screens/sales/footer_entry.h"
#include "screens/sales/line_entry.h"
#include "screens/sales/note_choice.h"
#include "screens/sales/scan_entry.h"
#include "screens/sales/unit_range.h"
#include "screens/sales/unit_warnings.h"
#include "ui/grid.h"

#include <QPushButton>
#include <QStackedWidget>

namespace molven {

TrayPart* DocumentForm::trayPart() const {
    return tray_->isHidden() ? nullptr : static_cast<TrayPart*>(tray_->currentWidget());
}

void DocumentForm::showTray(TrayPart* part) {
    tray_->setCurrentWidget(part);
    tray_->setFixedHeight(part->sizeHint().height());
    tray_->show();
    setDefaultButton(part->validation());
}

void DocumentForm::openTray(TrayPart* part, const std::function<void()>& start) {
    if (!mayLeaveTray()) return;
    showTray(part);
    if (!guarded(start)) leaveTray();
}

void DocumentForm::leaveTray() {
    tray_->hide();
    setDefaultButton(entry_.isEntering() ? validate_ : nullptr);
    if (addLine_->isEnabled()) addLine_->setFocus();
}

Record DocumentForm::requireLine() const {
    const auto line = lines_->current();
    if (!line) throw Refusal(layout_.lineMissing, lines_->objectName());
    return *line;
}

void DocumentForm::addLine() {
    documents::requireOpen(book_, requireDocument());
    openTray(lineEntry_, [this] { lineEntry_->startAdding(*shown()); });
}

void DocumentForm::insertLine() {
    documents::requireOpen(book_, requireDocument());
    const Record line = requireLine();
    openTray(lineEntry_, [&] { lineEntry_->startInserting(*shown(), line); });
}

void DocumentForm::changeLine() {
    documents::requireOpen(book_, requireDocument());
    const Record line = requireLine();
    openTray(lineEntry_, [&] { lineEntry_->startChanging(*shown(), line); });
}

void DocumentForm::removeLine() {
    const DocumentLines& table = book_.kind().lines;
    const Record document = requireDocument();
    const Record line = requireLine();
    if (!mayLeaveTray()) return;
    const QString about = QStringLiteral("Ligne %1 : %2 %3 %4")
                              .arg(line[table.fac_lg], line[table.fac_imm], line[table.fac_ref], line[table.fac_li1]);
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer cette ligne ? "), about.simplified()))
        return;
    document_lines::remove(book_, document, line);
    touched_ = true;
    leaveTray();
    refresh();
}

void DocumentForm::openScans() {
    documents::requireOpen(book_, requireDocument());
    if (!mayLeaveTray()) return;
    showTray(scans_);
    scans_->open(*shown());
}

void DocumentForm::addRange(const QStringList& units) {
    const QList<Record> checked = unit_rules::checkAll(book_, *shown(), units);
    const QList<document_lines::Draft> drafts = document_lines::ofUnits(book_, *shown(), checked);
    unit_warnings::tellNotes(*this, book_, *shown(), checked);
    if (!unit_warnings::areAccepted(*this, book_, *shown(), checked)) return;
    document_lines::add(book_, *shown(), drafts);
    touched_ = true;
    refresh();
    addLine();
}

void DocumentForm::openIntegration() {
    documents::requireOpen(book_, requireDocument());
    openTray(noteChoice_, [this] { noteChoice_->open(*shown()); });
}

void DocumentForm::openFooter() {
    requireDocument();
    openTray(footer_, [this] { footer_->open(*shown()); });
}

} // namespace molven

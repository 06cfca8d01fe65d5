#include "ui/printer.h"

#include "data/errors.h"
#include "ui/progress.h"
#include "ui/prompt.h"

#include <QApplication>
#include <QFileDialog>
#include <QPageLayout>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>

namespace molven {

namespace {

/// True when the file was written.
bool savePdf(const PrintJob& job, QWidget* parent) {
    const QString path =
        QFileDialog::getSaveFileName(parent, QStringLiteral("Enregistrer en PDF"), job.title() + QStringLiteral(".pdf"),
                                     QStringLiteral("Fichiers PDF (*.pdf)"));
    if (path.isEmpty()) return false;
    try {
        job.savePdf(path, progress(*parent, QStringLiteral("Enregistrement du PDF")));
        return true;
    } catch (const Refusal& refusal) {
        MessageBoxPrompt().tell(refusal.text, {}, Icon::Warning);
        return false;
    }
}

/// On the screen or on paper; what is stopped ends with the page reached.
void paint(const PrintJob& job, QPrinter& printer, const Progress& told) {
    QPainter painter(&printer);
    for (int page = 0; page < job.pages() && told(page, job.pages()); ++page) {
        if (page > 0) printer.newPage();
        job.paint(painter, page);
    }
}

bool hasFailed(const QPrinter& printer) {
    return printer.printerState() == QPrinter::Error || printer.printerState() == QPrinter::Aborted;
}

} // namespace

bool PreviewPrinter::print(const PrintJob& job) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(job.title());
    printer.setPageLayout(job.pageLayout());
    bool isSaved = false;
    QPrintPreviewDialog preview(&printer, QApplication::activeWindow());
    preview.setWindowTitle(QStringLiteral("Aperçu : ") + job.title());
    preview.resize(900, 700);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview, [&job, &preview](QPrinter* target) {
        paint(job, *target, progress(preview, QStringLiteral("Préparation des pages")));
    });
    if (auto* bar = preview.findChild<QToolBar*>())
        bar->addAction(QStringLiteral("Enregistrer en PDF..."), &preview,
                       [&] { isSaved = savePdf(job, &preview) || isSaved; });
    const bool isPrinted = preview.exec() == QDialog::Accepted && !hasFailed(printer); // it accepts what it has printed
    return isPrinted || isSaved;
}

} // namespace molven

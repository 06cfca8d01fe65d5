#include "ui/printer.h"

#include "data/errors.h"
#include "ui/progress.h"
#include "ui/prompt.h"

#include <QApplication>
#include <QFileDialog>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
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
void paint(const PrintJob& job, QPrinter& printer, const Progress& told, int times = 1) {
    QPainter painter(&printer);
    const int all = job.pages() * times;
    for (int page = 0; page < all && (!told || told(page, all)); ++page) {
        if (page > 0) printer.newPage();
        job.paint(painter, page % job.pages());
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

bool PreviewPrinter::printCopies(const PrintJob& job, int copies) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(job.title());
    printer.setPageLayout(job.pageLayout());
    printer.setCopyCount(copies);
    QWidget* window = QApplication::activeWindow();
    QPrintDialog choice(&printer, window);
    choice.setWindowTitle(QStringLiteral("Imprimer : ") + job.title());
    if (choice.exec() != QDialog::Accepted) return false;
    const int times = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    const Progress told = window ? progress(*window, QStringLiteral("Impression")) : Progress();
    paint(job, printer, told, times);
    return !hasFailed(printer);
}

} // namespace molven

#include "ui/printer.h"

#include "data/errors.h"
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

void savePdf(const PrintJob& job, QWidget* parent) {
    const QString path =
        QFileDialog::getSaveFileName(parent, QStringLiteral("Enregistrer en PDF"), job.title() + QStringLiteral(".pdf"),
                                     QStringLiteral("Fichiers PDF (*.pdf)"));
    if (path.isEmpty()) return;
    try {
        job.savePdf(path);
    } catch (const Refusal& refusal) {
        MessageBoxPrompt().tell(refusal.text, {}, Icon::Warning);
    }
}

} // namespace

void PreviewPrinter::print(const PrintJob& job) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(job.title());
    printer.setPageSize(QPageSize(QPageSize::A4));
    const double margin = PrintJob::MarginTwips * 72.0 / TwipsPerInch;
    printer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Point);
    QPrintPreviewDialog preview(&printer, QApplication::activeWindow());
    preview.setWindowTitle(QStringLiteral("Aperçu : ") + job.title());
    preview.resize(900, 700);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview, [&job](QPrinter* target) {
        QPainter painter(target);
        for (int page = 0; page < job.pages(); ++page) {
            if (page > 0) target->newPage();
            job.paint(painter, page);
        }
    });
    if (auto* bar = preview.findChild<QToolBar*>())
        bar->addAction(QStringLiteral("Enregistrer en PDF..."), &preview, [&job, &preview] { savePdf(job, &preview); });
    preview.exec();
}

} // namespace molven

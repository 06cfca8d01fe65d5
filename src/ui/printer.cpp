#include "ui/printer.h"

#include <QApplication>
#include <QPageLayout>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace molven {

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
    preview.exec();
}

} // namespace molven

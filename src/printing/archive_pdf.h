#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Files inside a PDF, and what a PDF must say of itself to be kept for long (PDF/A-3).
namespace molven::archive_pdf {

/// A file inside a PDF.
struct Attachment {
    QString name;
    QByteArray bytes;
};

/// What the metadata say of a PDF that carries an invoice.
struct Factur {
    QString fileName; ///< of the attachment
    QString profile;  ///< "EN 16931"
};

/// Pages made as PDF/A-1 with one file embedded as their other form ("Alternative"): a PDF/A-3b that says so.
QByteArray embed(const QByteArray& pages, const Attachment& file, const Factur& factur);

/// The files embedded in a PDF. Throws Refusal for what is no PDF, or is damaged or locked.
QList<Attachment> attachments(const QByteArray& pdf);

} // namespace molven::archive_pdf

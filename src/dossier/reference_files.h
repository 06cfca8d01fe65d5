#pragma once

#include "shell/session.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace molven::reference_files {

/// What can be brought in and taken out: "articles", "clients", "fournisseurs", "lpp",
/// "dotations", "tarifs".
QStringList kinds();

/// A row of a file that could not be taken.
struct Fault {
    int line; ///< of the file, 1 for the header
    QString text;
};

struct Outcome {
    qint64 written = 0;
    QList<Fault> faults; ///< when there is one, nothing is written
    QStringList ignored; ///< fields given that the program keeps itself, such as the stock
};

/// Brings a CSV file in, all or nothing: a header of field names, then a record a row, new or replacing the fields
/// given of the record with its key. Each row passes the checks of its screen. Fields that receipts and documents keep
/// are not taken. Throws Refusal for an unknown kind.
Outcome bringIn(const Session& session, const QString& kind, const QByteArray& file);

/// The whole table as a CSV file that bringIn() takes. Throws Refusal for an unknown kind.
QByteArray takeOut(const Session& session, const QString& kind);

} // namespace molven::reference_files

#pragma once

#include "accounting/document_entries.h"
#include "accounting/sales_statistics.h"
#include "data/progress.h"

/// The invoices and credit notes, current and archived, become entries of the sales journal, once.
namespace molven::transfer {

struct Files {
    sales_statistics::Files lines;
    QString series; ///< name of the user's folder that the documents lie in; empty for the data folder
};
Files openFiles(Workspace& workspace, const Session& session);

/// A document that stays as it is, and why.
struct LeftOut {
    QString year, number, client, reason;
};

/// What a transfer would write, as it was controlled; the entries themselves lie in the work file's `strecrit`.
struct Control {
    QString until; ///< last day, "yyyymmdd"
    qint64 documents = 0, entries = 0;
    Decimal debit, credit;
    QList<LeftOut> leftOut;
    QByteArray fingerprint; ///< of all entries
};

/// Prepares the documents not yet transferred up to a typed date. Throws Refusal "date obligatoire", "date fin non
/// valide", "aucune facture sélectionnée".
Control control(Files files, const QString& until, const Progress& progress = {});

/// Writes the controlled entries and marks their documents transferred, in one transaction; answers the number of the
/// transfer. Throws Refusal when the documents are no longer as they were controlled, and writes nothing.
QString run(Files files, const Control& controlled, const Progress& progress = {});

/// One transfer of the past.
struct Past {
    QString number, day; ///< "000001", "yyyymmdd"
    qint64 entries = 0;
    Decimal debit;
};
/// The latest first.
QList<Past> past(Database compta);

/// The name by which entries tell the folder that documents lie in from the other users' folders.
QString seriesOf(const Session& session, const QString& documentsFile);

} // namespace molven::transfer

#pragma once

#include "accounting/tables.h"
#include "data/database.h"
#include "data/period.h"
#include "sales/document_tables.h"
#include "shell/session.h"

/// Invoices and credit notes, current and archived, for statements and lists of due dates.
namespace molven::invoice_listing {

/// Whose invoices: bounds of client codes as typed, "000000" and "999999" when empty, and a client family when given.
struct Clients {
    QString first, last, family;
    /// "clients 000010 à 999999   famille client 001"; empty for all.
    QString words() const;
};

struct Files {
    Database molven, vente, historic;
};
Files openFiles(Workspace& workspace, const Session& session);

/// The invoices of a period by client and date; a range leaves out the clients that get no statement (`clt_edtr`).
/// Throws Refusal "N° Fin < N° Début ???", "aucune facture sélectionnée".
QList<Record> ofPeriod(Files files, const Period& period, const Clients& clients);

/// How a list of due dates is grouped.
enum class Grouping { DueDate, Client, PaymentMode };
/// What the invoices of one group have in common, whatever name their client had then.
QString groupKey(const Record& header, Grouping grouping);
/// The invoices due in a period, by their group and due date. Throws Refusal as ofPeriod() does.
QList<Record> due(Files files, const Period& period, const Clients& clients, Grouping grouping);

/// The due date of an invoice as a sort key; its own date when it has none.
QString dueKey(const Record& header);
/// VAT of an invoice as a whole.
Decimal vatOf(const Record& header);

} // namespace molven::invoice_listing

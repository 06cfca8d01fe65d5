#pragma once

#include "accounting/tables.h"
#include "data/database.h"
#include "data/joined.h"
#include "data/period.h"
#include "shell/session.h"

/// The invoice lines that statistics, commissions and the transfer to accounting are made from: the one place that says
/// what the fields of `statd` are.
///
/// `sta_brut` is quantity x unit price, without VAT, before any discount. `sta_net` is the line's amount without VAT
/// after line, document and settlement discount; of a document's lines of one VAT code it adds up, to the cent, to what
/// the document's total has of them. `sta_achat` is quantity x purchase price, `sta_marge` the net amount less that,
/// `sta_pourc` the margin in percent of the net amount, 0 without one. Credit notes are negative. `sta_mac` is the
/// month "yyyymm"; `sta_cp` the first word of `clt_l5` when it holds a digit, `sta_vil` the rest. Amounts of a document
/// in another currency are turned into the company's by the document's euro field. `sta_vte` is the account that the
/// amount is booked on: the line's, or for a client abroad its article's export account.
namespace molven::sales_statistics {

/// Where carriage is booked unless the company's record names an account (`spe_cpt`).
inline const QString CarriageAccount = QStringLiteral("708500000");

/// Files that the lines are read from, and the work file that they are written to.
struct Files {
    Database molven, vente, historic, tri, compta;
    QString currency; ///< of the company
    QString country;  ///< of the company, ISO 3166
    QString carriage; ///< account of carriage
};
Files openFiles(Workspace& workspace, const Session& session);

/// A field of the header, for the condition of fill().
Expression ofHeader(const Field& field);

/// Replaces the content of a work table by the lines of the invoices and credit notes that meet the condition on their
/// headers, current and archived, in one transaction. Number of lines.
qint64 fill(Files files, const SalesStatistics& table, const Criterion& headers);
/// The same for a period. Throws Refusal "aucune facture sélectionnée", and leaves what was there, when it has none.
qint64 regenerate(Files files, const SalesStatistics& table, const Period& period);

} // namespace molven::sales_statistics

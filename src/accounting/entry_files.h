#pragma once

#include "accounting/tables.h"
#include "data/database.h"
#include "data/period.h"

/// The entries of the sales journal as files for accounting programs; docs/exports.md states their layouts.
namespace molven::entry_files {

inline const QString FixedName = QStringLiteral("ExportecrituresAPI.txt"),
                     SemicolonName = QStringLiteral("ximport.TXT");

/// One byte a character; what the code page lacks is written without its accent.
QByteArray windows1252(const QString& text);

/// Fixed columns, one line an entry's line, of one transfer. Windows-1252, lines end with CR LF.
QByteArray fixedColumns(Database compta, const QString& transfer);
/// The same separated by semicolons, under a line of titles.
QByteArray semicolons(Database compta, const QString& transfer);

/// The legal file of accounting entries of a year's sales journal: 18 fields separated by tabs, ISO 8859-15, by number
/// of entry. `molven` names the clients.
QByteArray legalFile(Database compta, Database molven, const Period& year);
/// "SIRENFECAAAAMMJJ.txt" of the day that the year closes. Throws Refusal without SIREN of nine digits.
QString legalName(const QString& siren, const Period& year);

/// Writes both files of a transfer into a folder. Throws Refusal.
void writeTransfer(Database compta, const QString& transfer, const QString& folder);

} // namespace molven::entry_files

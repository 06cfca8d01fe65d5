#pragma once

#include "data/database.h"
#include "reference/seller_tables.h"

#include <QStringList>

/// The company whose data a dossier holds, as its papers and electronic invoices name it.
namespace molven::seller {

/// Its identity. Before it was entered: the name and the address lines that the company's own record holds, and the
/// usual texts of penalties and early payment.
Record read(Database molven);
/// Writes it over `before`, which read() gave. Throws Refusal with the faulty field, DataError RecordChanged when
/// another workstation wrote it meanwhile.
void save(Database molven, Record identity, const Record& before);

/// The lines of the postal address that are not empty, postal code and town last.
QStringList addressLines(const Record& identity);
/// Replaces the address by lines as a letter shows them, the last one being "postal code town" when it begins with
/// digits. Throws Refusal for more than four lines, or a line that is too long.
void setAddress(Database molven, const QStringList& lines);
/// The nine digits of the SIREN, empty without SIRET.
QString siren(const Record& identity);

} // namespace molven::seller

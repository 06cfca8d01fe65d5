#pragma once

#include "data/record.h"

#include <QMap>
#include <QString>

/// What the journal keeps of the values that a record had when it was created: enough to tell that one of them is
/// another now, and which. It finds accidents and careless hands; a forger who can write the file can write the journal
/// too, which is what seals and backups are for.
namespace molven::digest {

/// A value in 18 bits, 0 for an empty one; a number's does not depend on how it is written.
using Mark = quint32;
Mark markOf(const Field& field, QStringView value);
/// A field in 18 bits, by its name: fields may be added and reordered.
Mark markOf(const Field& field);

/// A whole record: six characters a field that holds a value, three for its name and three for the value.
QString of(const Record& record);

/// By field, from of(); fields that a later version dropped are left out.
QMap<const Field*, Mark> read(const Table& table, const QString& digest);

/// What a field's value adds to the sum of its record; of a record the sum is that of its fields.
quint64 weight(Mark field, Mark value);
quint64 sumOf(const Record& record);
quint64 sumOf(const QString& digest);

} // namespace molven::digest

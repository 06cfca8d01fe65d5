#pragma once

#include "data/schema.h"

#include <QStringView>

namespace molven::collation {

/// The order of the data, which the engine and what is sorted or bounded in memory share: negative, 0 or positive.

/// Names and labels: French order, case apart.
int french(QStringView a, QStringView b);
/// Codes: by character, case apart for unaccented letters.
int code(QStringView a, QStringView b);
/// Stored values of a field: numbers by value, null before all.
int compare(const Field& field, const QString& a, const QString& b);

} // namespace molven::collation

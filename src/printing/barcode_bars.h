#pragma once

#include <QList>
#include <QString>

namespace molven::barcode_bars {

/// Widths in modules of the bars and spaces of a Code 128 string as EncodeCode128 makes it (kind 0), in turn and
/// beginning with a bar; by the patterns of ISO/IEC 15417. Characters that are no symbol are left out.
QList<int> widths(const QString& barString);

} // namespace molven::barcode_bars

#pragma once

#include "printing/print_job.h"

namespace molven::barcode_line {

constexpr int Height = 440; ///< twips

/// What is printed, in the barcode font, of a code as EncodeCode128 makes it, or drawn as bars when the family is
/// BarcodeFont::Drawn; its top left corner at this place. The job's font changes.
void print(PrintJob& job, int x, int y, const QString& code, const QString& family);

} // namespace molven::barcode_line

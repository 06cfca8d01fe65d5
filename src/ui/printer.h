#pragma once

#include "ui/desk.h"

namespace molven {

/// Shows a finished job as the paper will be; the user prints it or saves it as a PDF from there.
class PreviewPrinter : public PrintTarget {
public:
    bool print(const PrintJob& job) override;
    bool printCopies(const PrintJob& job, int copies) override;
};

} // namespace molven

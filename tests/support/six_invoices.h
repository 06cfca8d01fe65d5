#pragma once

#include "support/dossier.h"

namespace molven::test {

/// Six documents whose every figure can be worked by hand; see the table in six_invoices.cpp.
class SixInvoices : public testing::Test {
protected:
    SixInvoices();

    Dossier dossier;
};

inline Decimal euros(const char* text) { return Decimal::fromText(QString::fromLatin1(text)); }

} // namespace molven::test

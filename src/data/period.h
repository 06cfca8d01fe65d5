#pragma once

#include "data/criteria.h"

namespace molven {

/// The days from one to another, both included, as sort keys "yyyymmdd".
struct Period {
    QString from, to;

    Criterion covers(const Expression& key) const { return key >= from && key <= to; }
    /// " Du 01/03/2026 au 31/03/2026".
    QString words() const;
    bool operator==(const Period&) const = default;
};

/// The period of two typed dates. Throws Refusal naming the faulty box: `missing` for an empty one, "date début non
/// valide", "date fin non valide", "date fin < date début".
Period typedPeriod(const QString& from, const QString& to, const QString& fromBox = QStringLiteral("Mskdatdeb"),
                   const QString& toBox = QStringLiteral("Mskdatfin"),
                   const QString& missing = QStringLiteral("date obligatoire"));
/// "dd/mm/yyyy" of a sort key.
QString dayOfKey(const QString& key);

} // namespace molven

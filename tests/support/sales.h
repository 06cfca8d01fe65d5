#pragma once

#include "support/dossier.h"

#include "sales/documents.h"
#include "sales/unit_rules.h"
#include "stock/units.h"

namespace molven::test {

/// A dossier to write sales documents in.
class Sales : public testing::Test {
protected:
    explicit Sales(const QString& company = QStringLiteral("CE")) : dossier(company) {}

    SalesBook book(const char* mode) { return SalesBook(dossier.session, documentKind(QString::fromLatin1(mode))); }
    QString checkOf(const char* mode, const QString& unit, const QString& client = QStringLiteral("1")) {
        SalesBook opened = book(mode);
        Record header = documents::blank(opened, client);
        return refusalOf([&] { unit_rules::check(opened, header, unit); });
    }
    /// Its state, depot, document of the depot and last document.
    QString stateOf(const QString& unit) {
        const Record record = dossier.unit(unit);
        return record[strproduit.tes_vte] + u'/' + record[strproduit.num_dep] + u'/' + record[strproduit.nbl_dep] +
               u'/' + record[strproduit.num_vte];
    }

    Dossier dossier;
};

} // namespace molven::test

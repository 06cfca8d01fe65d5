#pragma once

#include "support/dossier.h"

#include "reference/articles.h"
#include "stock/movements.h"

namespace molven::test {

/// A dossier to keep articles by quantity in: "SCREW" has neither stock nor movement.
class Movements : public testing::Test {
protected:
    Record movement(const char* kind, const char* quantity, const char* price,
                    const QString& day = QStringLiteral("05/03/2026")) {
        Record made = movements::blank(QStringLiteral("SCREW"));
        made[strmvtstk.eta_stk] = QString::fromLatin1(kind);
        made[strmvtstk.qte_stk] = Decimal::fromText(QString::fromLatin1(quantity));
        made[strmvtstk.pri_stk] = Decimal::fromText(QString::fromLatin1(price));
        made[strmvtstk.dat_stk] = day;
        return made;
    }
    Record add(const char* kind, const char* quantity, const char* price,
               const QString& day = QStringLiteral("05/03/2026")) {
        return movements::add(files, movement(kind, quantity, price, day));
    }
    /// Stock, average and last purchase price of an article: "12/5.5/6".
    QString stockOf(const char* reference = "SCREW") {
        const Record article = *articles::find(files.molven, QString::fromLatin1(reference));
        return article[strarticle.art_stk].toString() + u'/' + article[strarticle.art_pam].toString() + u'/' +
               article[strarticle.art_dpa].toString();
    }

    Dossier dossier;
    Workspace workspace;
    MovementFiles files = openMovementFiles(workspace, dossier.session);
};

} // namespace molven::test

#pragma once

#include "data/database.h"
#include "stock/unit_tables.h"

#include <QHash>

namespace molven {

/// One criterion of the unit listing: a box, what it selects, and its words.
struct UnitCriterion {
    enum class Match { Equal, AtLeast, AtMost, Beginning, Year, ExpiresBy, Date };

    QString control; ///< object name of the box
    QString caption;
    const Field& field;
    Match match;
    QString words;        ///< before the value and its closing quote
    int digits = 0;       ///< of a numeric code padded with zeros
    QString list = {};    ///< letter of the parameter list that knows the code
    QString unknown = {}; ///< before and behind the code: "Ce dépôt |n'existe pas"
};

/// One choice of a criterion with few values.
struct UnitOption {
    QString caption;
    Criterion criterion;
    QString words; ///< ready to be joined
};

/// A criterion chosen from a list; the first option selects everything.
struct UnitChoice {
    QString control;
    QString caption;
    QList<UnitOption> options;
};

/// What the user asked: texts by box, option numbers by list.
struct UnitSelection {
    QHash<QString, QString> values;
    QHash<QString, int> choices;
    int order = 0;                ///< of orders()
    bool withoutReminded = false; ///< leaves out the units reminded already
};

namespace unit_listing {

const QList<UnitCriterion>& criteria();
const QList<UnitChoice>& choices();
/// Captions of the sort orders.
QStringList orders();

/// Throws Refusal for an unknown code or a faulty date.
Criterion criterion(Database molven, const UnitSelection& selection);
Order order(const UnitSelection& selection);
/// The criteria in words, "Sélection : " left out.
QString words(const UnitSelection& selection);

/// Writes today's date as the units' last selection, and as their last reminder when it is one. Answers how many.
qint64 markSelected(Database molven, const Criterion& units, bool isReminder);
/// Puts the units in stock of a selection back into the main depot. Answers how many.
qint64 returnToMainDepot(Database molven, const Criterion& units);

} // namespace unit_listing
} // namespace molven

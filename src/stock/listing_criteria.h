#pragma once

#include "data/code_kind.h"
#include "data/database.h"

#include <QHash>

namespace molven {

/// One criterion of a listing: a box, what it selects, and its words.
struct ListingCriterion {
    enum class Match { Equal, AtLeast, AtMost, Beginning, Year, ExpiresBy, Date };

    QString control; ///< object name of the box
    QString caption;
    const Field& field;
    Match match;
    QString words;                     ///< before the value and its closing quote
    int digits = 0;                    ///< of a number padded with zeros
    QList<const CodeKind*> kinds = {}; ///< of a code, one of which must know it
    QString unknown = {};              ///< before and behind the code: "Ce dépôt |n'existe pas"
    QString choice = {};               ///< the list whose chosen option changes the words
    QStringList choiceWords = {};      ///< by option; an empty one keeps `words`
};

/// One choice of a criterion with few values.
struct ListingOption {
    QString caption;
    Criterion criterion;
    QString words; ///< ready to be joined
};

/// A criterion chosen from a list; the first option selects everything.
struct ListingChoice {
    QString control;
    QString caption;
    QList<ListingOption> options;
};

/// The boxes and lists of a listing, in the order of the screen.
struct ListingCriteria {
    QList<ListingCriterion> boxes;
    QList<ListingChoice> choices;
};

/// What the user asked: texts by box, option numbers by list.
struct ListingSelection {
    QHash<QString, QString> values;
    QHash<QString, int> choices;
    int order = 0; ///< number of the sort order
};

namespace listing {

/// A row of the table of criteria.
ListingCriterion box(const char* control, const char* caption, const Field& field, ListingCriterion::Match match,
                     const char* words, int digits = 0);
/// The same for a code that one of these kinds must know; `unknown` is told otherwise.
ListingCriterion known(ListingCriterion made, const QList<const CodeKind*>& kinds, const char* unknown);

/// What is typed into a box, a short code or number made whole.
QString completed(Database molven, const ListingCriterion& criterion, const QString& typed);

/// Everything asked, joined by "and". Throws Refusal for an unknown code or a faulty date.
Criterion criterion(Database molven, const ListingCriteria& criteria, const ListingSelection& selection);
/// The criteria in words, joined by "et"; "Sélection : " left out.
QString words(const ListingCriteria& criteria, const ListingSelection& selection);

} // namespace listing
} // namespace molven

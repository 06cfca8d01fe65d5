#include "stock/listing_criteria.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/codes.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::listing {

namespace {

using Match = ListingCriterion::Match;

QString valueOf(const ListingCriterion& criterion, const ListingSelection& selection) {
    const QString typed = selection.values.value(criterion.control).trimmed();
    if (isEmptyDate(typed)) return {};
    return padded(typed, criterion.digits);
}

bool isKnown(Database molven, const ListingCriterion& criterion, const QString& value) {
    if (criterion.kinds.isEmpty() || value == ReturnedDepot) return true;
    return std::any_of(criterion.kinds.begin(), criterion.kinds.end(),
                       [&](const CodeKind* kind) { return codes::isKnown(molven, *kind, value); });
}

void requireKnown(Database molven, const ListingCriterion& criterion, const QString& value) {
    if (!isKnown(molven, criterion, value))
        throw Refusal(criterion.unknown.section(u'|', 0, 0) + value + u' ' + criterion.unknown.section(u'|', 1),
                      criterion.control);
}

Criterion matched(const ListingCriterion& criterion, const QString& value) {
    switch (criterion.match) {
    case Match::AtLeast:
        return criterion.field >= value;
    case Match::AtMost:
        return criterion.field <= value;
    case Match::Beginning:
        return startsWith(criterion.field, value);
    case Match::Year:
        return startsWith(criterion.field, value.left(4));
    case Match::ExpiresBy:
        if (!isMonthYear(value)) throw Refusal(QStringLiteral("date péremption incorrecte"), criterion.control);
        return criterion.field != QString() && monthKey(criterion.field) <= value.right(4) + value.left(2);
    case Match::Date:
        if (!dateFromText(value).isValid()) throw Refusal(QStringLiteral("date invalide"), criterion.control);
        return criterion.field == (criterion.field.size == 8 ? sortKey(value) : value);
    case Match::Equal:
        break;
    }
    return criterion.field == value;
}

} // namespace

ListingCriterion box(const char* control, const char* caption, const Field& field, Match match, const char* words,
                     int digits) {
    return {QString::fromLatin1(control), QString::fromUtf8(caption), field, match, QString::fromUtf8(words), digits};
}

ListingCriterion known(ListingCriterion made, const QList<const CodeKind*>& kinds, const char* unknown) {
    made.kinds = kinds;
    made.unknown = QString::fromUtf8(unknown);
    return made;
}

QString completed(Database molven, const ListingCriterion& criterion, const QString& typed) {
    for (const CodeKind* kind : criterion.kinds)
        if (codes::find(molven, *kind, typed)) return codes::completed(molven, *kind, typed);
    return padded(typed, criterion.digits);
}

Criterion criterion(Database molven, const ListingCriteria& criteria, const ListingSelection& selection) {
    Criterion all;
    for (const ListingCriterion& one : criteria.boxes) {
        const QString value = completed(molven, one, valueOf(one, selection));
        if (value.isEmpty()) continue;
        requireKnown(molven, one, value);
        all = all && matched(one, value);
    }
    for (const ListingChoice& choice : criteria.choices)
        all = all && choice.options.value(selection.choices.value(choice.control)).criterion;
    return all;
}

QString words(const ListingCriteria& criteria, const ListingSelection& selection) {
    QStringList parts;
    for (const ListingCriterion& one : criteria.boxes) {
        const QString value = valueOf(one, selection);
        if (value.isEmpty()) continue;
        const QString chosen = one.choiceWords.value(selection.choices.value(one.choice));
        parts.append((chosen.isEmpty() ? one.words : chosen) + value + u'\'');
    }
    for (const ListingChoice& choice : criteria.choices)
        if (const QString text = choice.options.value(selection.choices.value(choice.control)).words; !text.isEmpty())
            parts.append(text);
    return parts.join(QStringLiteral(" et "));
}

} // namespace molven::listing

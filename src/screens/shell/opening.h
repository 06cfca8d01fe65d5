#pragma once

#include "sales/find_anything.h"

#include <QHash>

#include <functional>

namespace molven {

class Form;

/// A menu entry, and how the screen that it opens is filled in. Who may not choose the entry may not open it so.
struct Opening {
    QString entry;
    std::function<void(Form&)> fill = [](Form&) {};
    QString screen = {}; ///< another one than the entry's own
};

namespace openings {

/// The entry that shows findings of a kind; documents have one by their own kind.
QString entryOf(Finding::Kind kind);
QString entryOf(const DocumentKind& kind);

/// The screen of a finding, on its record.
Opening of(const Finding& finding);
/// The entry screen of a kind with the documents that meet a condition listed.
Opening listing(const DocumentKind& kind, const QString& title, const Criterion& criterion);
/// The list of units, asked for these criteria.
Opening units(const QHash<QString, QString>& criteria);

} // namespace openings
} // namespace molven

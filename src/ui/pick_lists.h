#pragma once

#include "data/code_kind.h"
#include "ui/notices.h"
#include "ui/pick_panel.h"

namespace molven::pick_lists {

using Chosen = std::function<void(const Record&)>;

// The lists behind the code fields of the screens. Each reads the database it is given, which must outlive the list.

/// By name unless another order is given.
PickList clients(Database molven, const Chosen& chosen, const Order& order = {});
PickList suppliers(Database molven, const Chosen& chosen);
PickList articles(Database molven, const Chosen& chosen, const Criterion& criterion = {});
/// One list of the parameter table, by its letter.
PickList parameters(Database molven, const QString& letter, const QString& title, const Chosen& chosen);
PickList subFamilies(Database molven, const QString& family, const Chosen& chosen);
PickList paymentModes(Database molven, const Chosen& chosen);
PickList vatCodes(Database molven, const Chosen& chosen, const Criterion& criterion = {});
PickList currencies(Database molven, const Chosen& chosen);
PickList lppCodes(Database molven, const Chosen& chosen);
PickList discounts(Database molven, const Chosen& chosen);
PickList tipsCodes(Database molven, const Chosen& chosen);
/// Accounts that begin with these digits.
PickList accounts(Database compta, const QString& start, const Chosen& chosen);
/// The letters of a kind without table, with what each means.
PickList letters(const CodeKind& kind, const std::function<void(const QString&)>& chosen);
/// The list behind a box of this kind; `file` holds the kind's table.
PickList codes(Database file, const CodeKind& kind, const Chosen& chosen);
/// Units that meet a condition, by immatriculation.
PickList units(Database molven, const QString& title, const Criterion& criterion, const Chosen& chosen);

/// What the session was told, newest first; to look at only.
PickList notices(const QList<Notice>& told);

/// Columns of a grid of units, as every list of units shows them.
QList<GridColumn> unitColumns();

} // namespace molven::pick_lists

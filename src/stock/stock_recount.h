#pragma once

#include "data/database.h"
#include "shell/company_rules.h"

#include <functional>

/// Rebuilds what the articles followed by unit keep of their stock, from the units themselves.
namespace molven::stock_recount {

/// Told how many articles were looked at; false stops, and nothing is written.
using Progress = std::function<bool(int done, int total)>;

struct Result {
    qint64 articles = 0; ///< followed by unit
    qint64 changed = 0;  ///< that held something else
};

/// Gives every article followed by unit the number of its units that are not invoiced. One transaction; nothing when it
/// was stopped.
std::optional<Result> count(Database molven, const Progress& progress);
/// The same, and the average purchase price of those units; an article without such a unit keeps its average.
std::optional<Result> countAndAverage(Database molven, const CompanyRules& rules, const Progress& progress);

} // namespace molven::stock_recount

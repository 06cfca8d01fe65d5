#pragma once

#include "shell/session.h"

#include <QStringList>

#include <functional>
#include <optional>

/// Rebuilds the stock of the articles that are not followed by unit.
namespace molven::stock_rebuild {

/// What the journal calls it.
inline const QString Deed = QStringLiteral("Recalcul du stock par mouvements");

struct Result {
    qint64 articles = 0;       ///< kept by quantity
    qint64 changed = 0;        ///< articles that held something else
    qint64 lines = 0;          ///< lines of documents that were counted
    QStringList absentFolders; ///< of the companies whose sales are counted as well: "CL\" and its kin
};

/// What the work is at, and how far; false stops it.
using Progress = std::function<bool(int done, int total)>;

/// Gives every article kept by quantity the stock that its movements from one day to another ("dd/mm/yyyy", both
/// included) and the sales of those days leave: inventory + entries - exits, less what is invoiced or delivered and not
/// yet invoiced, in the dossier's files, current and archived, and in the company folders below the data folder; every
/// other article that is not followed gets none. What was sold stands in the work table `strtristk` afterwards. One
/// transaction; nothing when it was stopped. `step` is told each text of the work as it is reached. Throws Refusal
/// "saisir une date", "date début non valide", "date fin non valide", "date fin < date début".
std::optional<Result> run(const Session& session, const QString& from, const QString& to,
                          const std::function<void(const QString& text)>& step, const Progress& progress);

} // namespace molven::stock_rebuild

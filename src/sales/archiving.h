#pragma once

#include "data/archive.h"
#include "shell/session.h"

#include <QDate>

/// The history file of a dossier whole.
namespace molven::archiving {

struct Moved {
    QString family; ///< "bons de livraison"
    archive::Outcome outcome;
};

/// Moves the documents of every family dated before a day, and the units whose last sale was before it, under the
/// conditions of the screens. Throws DataError; what was moved until then stays moved.
QList<Moved> moveBefore(const Session& session, archive::Direction direction, const QDate& day,
                        const Progress& progress);

} // namespace molven::archiving

#pragma once

#include "data/database.h"

/// Moves of closed records between a working file and the history file, both opened in one workspace.
namespace molven::archive {

enum class Direction { ToHistory, FromHistory };

/// Records told apart by two fields: documents by year and number, units by century and immatriculation.
struct Keyed {
    const Table& table;
    const Text& group;
    const Text& key;
};

/// What is moved: a record alone, or a header with its lines.
struct Subject {
    Keyed head;
    std::optional<Keyed> lines = {};
};

struct Outcome {
    qint64 moved = 0;    ///< heads
    QStringList doubles; ///< group and key, one behind the other, of those that stand in both files and stayed
    bool isStopped = false;
};

/// Moves the heads that meet a condition, each with its lines, some hundreds a transaction. A head whose key the target
/// holds already stays where it is. Stopped between two transactions, what was moved stays moved.
Outcome move(Database from, Database to, const Subject& subject, const Criterion& which, const QString& deed,
             const Progress& progress);

} // namespace molven::archive

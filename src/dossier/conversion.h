#pragma once

#include "data/progress.h"
#include "shell/session.h"

#include <QList>
#include <QStringList>

/// Dossiers kept in Jet files until now.
namespace molven::conversion {

/// What became of a table.
struct Converted {
    QString file, table;
    qint64 announced = 0, read = 0, stored = 0; ///< records the file says it has, that could be read, that are here now
    QStringList differing;                      ///< numbers whose sums are not the same on both sides, in words

    bool isWhole() const { return announced == read && read == stored && differing.isEmpty(); }
    /// "molven.mdb strclient : 40 annoncés, 40 lus, 40 repris", then a line for each sum that differs.
    QStringList words() const;
};

struct Outcome {
    Session session; ///< of the dossier made
    QList<Converted> tables;
    QStringList notices; ///< what was not taken, or not as it was, one French line each

    /// What differs from the source, one French line each: tables that are not whole, then the notices.
    QStringList differences() const;
};

/// The company that a dossier is of.
struct Company {
    QString code, name;
};

/// Makes a dossier of a folder of Jet files, in a new installation or, with `addToSocieties`, as one more of an
/// installation. Every table and field that the catalogue knows is taken; what it does not know is told, and a damaged
/// file does not keep the others back. The source is only read. `asked`, where it is filled, counts more than what the
/// source says of its company. Whole or not at all. Throws Refusal where there is no
/// dossier to convert or the target holds one already, DataError.
Outcome convert(const QString& source, const QString& target, bool addToSocieties, const Progress& progress,
                const Company& asked = {});

} // namespace molven::conversion

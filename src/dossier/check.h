#pragma once

#include "shell/session.h"

#include <QList>

/// Whether what a dossier's files say agrees with itself and with what the program writes.
namespace molven::check {

/// A kind of broken invariant.
struct Kind {
    QString name;          ///< "totaux"
    QString remedy;        ///< what to do about it, a French sentence
    bool isMended = false; ///< it has one right answer, which repair() writes
};

/// One broken invariant of a dossier.
struct Fault {
    QString file;    ///< database file name
    QString subject; ///< what is concerned: immatriculation, document, article
    QString text;    ///< what is wrong, in French
    const Kind* kind;
};

/// Reads a dossier whole, as it is at one moment, and reports every broken invariant; empty for a sound one. Other
/// workstations may go on writing. Changes nothing. Throws DataError when the files cannot be copied aside.
QList<Fault> run(const Session& session);

/// Mends what has one right answer: quantities in stock, totals of documents, indexes. Answers what was written, one
/// French line each. Throws DataError; each file's indexes, and all counts and totals, are written whole or not at all.
QStringList repair(const Session& session);

} // namespace molven::check

#pragma once

#include "shell/session.h"

#include <QList>

namespace molven {
class Table;
}

/// Whether what a dossier's files say agrees with itself and with what the program writes.
namespace molven::check {

/// A kind of broken invariant.
struct Kind {
    QString name;          ///< "totaux"
    QString remedy;        ///< what to do about it, a French sentence
    bool isMended = false; ///< it has one right answer, which repair() writes
};

/// The record that a fault lies in: of a document its header, whatever of it is wrong.
struct Place {
    QString path; ///< of the file
    const Table* table = nullptr;
    QString key; ///< as the journal names it: "2026/000001"

    bool operator==(const Place&) const = default;
};

/// One broken invariant of a dossier.
struct Fault {
    QString file;    ///< database file name
    QString subject; ///< what is concerned: immatriculation, document, article
    QString text;    ///< what is wrong, in French
    const Kind* kind;
    Place place = {}; ///< without table where no single record can be named
};

/// Reads a dossier whole, as it is at one moment, and reports every broken invariant; empty for a sound one. Other
/// workstations may go on writing. Changes nothing. Throws DataError when the files cannot be copied aside.
QList<Fault> run(const Session& session);

/// Mends what run() finds to have one right answer: indexes, totals of documents of which nothing else is wrong,
/// quantities in stock when no unit was altered. Answers what was written, one French line each. Throws DataError; each
/// file's indexes, the counts, and each file's totals are written whole or not at all.
QStringList repair(const Session& session);

} // namespace molven::check

#pragma once

#include "data/catalogue.h"
#include "data/schema.h"

#include <QStringList>

namespace molven {

/// What the values of a field may be: the keys of a table, or of one list of it, or a few letters. A field states its
/// kind in the struct of its table; entry boxes, rules, deletions and the check of a dossier read it there.
struct CodeKind {
    /// The kind of the code where another field of its record has this value.
    struct Case {
        const Text& field;
        QString value;
        const CodeKind& kind;
    };

    // The records that the codes name; no table for letters, and for a kind that the record decides
    const Table* table = nullptr;
    const Text* key = nullptr;
    const Label* words = nullptr; ///< shown beside a code
    const Text* list = nullptr;   ///< tells the lists of the table apart
    QString letter = {};          ///< of the list
    DataFile file = DataFile::Molven;

    QString subject = {};      ///< "Ce client": begins what is said of a record
    QString title = {};        ///< of the list behind a box
    QString hint = {};         ///< shown beside an unknown code; what is said of it when empty
    QStringList besides = {};  ///< values that name no record and are right all the same
    QStringList reserved = {}; ///< codes that the program itself lives by: never deleted
    int digits = 0;            ///< of a numeric code padded with zeros, whether its table has it or not
    bool acceptsUnknown = false;

    QString letters = {};                ///< the letters, for a kind without table
    QStringList meanings = {};           ///< what each of them means, in their order
    QList<Case> cases = {};              ///< for a kind that the record decides ...
    const CodeKind* otherwise = nullptr; ///< ... and where no case applies; null for no code there
};

} // namespace molven

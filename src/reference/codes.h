#pragma once

#include "data/code_kind.h"
#include "data/database.h"

#include <functional>

namespace molven::codes {

/// The kind of the code that a field holds in this record; null where it holds none.
const CodeKind* kindOf(const Field& field, const Record& record);
/// The same where another field of the record has the value that `valueOf` answers.
const CodeKind* kindOf(const Field& field, const std::function<QString(const Text&)>& valueOf);

/// The condition on the records of a kind's table that are of its list.
Criterion ofKind(const CodeKind& kind);
/// The forms under which a typed code may stand in its table: as typed, then padded, then without padding.
QStringList formsOf(const CodeKind& kind, const QString& typed);
/// The record that a code names, typed short or whole; `file` is the one that holds the kind's table.
std::optional<Record> find(Database file, const CodeKind& kind, const QString& typed);
/// The code in the form that a field of this kind keeps: as the table has it, padded where its format is fixed;
/// "2" becomes "000002". Letters are put in upper case. What cannot be completed comes back trimmed.
QString completed(Database file, const CodeKind& kind, const QString& typed);
/// True for what may stand in a field of this kind, the empty code included.
bool isKnown(Database file, const CodeKind& kind, const QString& code);
/// What is shown beside a code: the words of its record, or that it is unknown.
QString words(Database file, const Field& field, const CodeKind& kind, const QString& code);

/// A code that a half-typed one may mean.
struct Offer {
    QString code, words;
};

/// At most so many codes that begin as typed or whose number it is, in their order; then those whose words hold it.
QList<Offer> offers(Database file, const CodeKind& kind, const QString& typed, int most);

/// Throws Refusal, with the field, for a code that the field may not hold.
void require(Database file, const Field& field, const CodeKind& kind, const QString& code);
/// Completes every code of a record whose table lies in one of these files, in the order of the fields, and throws
/// Refusal for the first that its field may not hold. A code that stood already in `before` passes: old records keep
/// codes that were deleted long ago.
void check(const QHash<DataFile, Database>& files, Record& record, const Record* before = nullptr);

} // namespace molven::codes

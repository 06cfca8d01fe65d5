#pragma once

#include "data/database.h"
#include "sales/document_tables.h"

namespace molven::numbering {

/// Number of the next document of a series, "000001" in an empty one; the year does not restart it. `files` hold the
/// current and the archived documents, which keep their numbers. Drawn inside the caller's write transaction. Throws
/// Refusal after "999999".
QString next(const QList<Database>& files, const DocumentHeaders& headers);
/// It will be drawn, in the transaction that is open.
void foresee(const QList<Database>& files, const DocumentHeaders& headers);

/// Highest line number a document takes.
constexpr int LastLine = 996;
/// Number of the hidden record.
inline const QString HiddenLine = QStringLiteral("000");
/// Condition on the shown lines of a document, without its hidden record.
Criterion linesOf(const DocumentLines& lines, const QString& year, const QString& number);
/// Number of the next line; beyond LastLine in a full document.
int nextLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number);
/// Lines will be added to a document, in the transaction that is open.
void foreseeLines(Database vente, const DocumentLines& lines, const QString& year, const QString& number);
/// "000" form of a line number.
QString lineKey(int line);
/// A typed line number. Throws Refusal when it is empty, not a number or below 1.
int typedLine(const QString& text);
/// Throws Refusal "Document plein - ligne non crée" for a number beyond LastLine.
void requireRoom(int line);
/// Writes the hidden record "000" of a document that has none. `deliveryNote` marks the one of an integration.
void addHiddenLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number,
                   const QString& deliveryNote = {});

} // namespace molven::numbering

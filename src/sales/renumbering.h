#pragma once

#include "sales/document_tables.h"
#include "shell/session.h"

#include <QStringList>

namespace molven {

/// A family whose documents may be given another number from the tool box.
struct Renumbering {
    QString menu; ///< menu entry
    DataFile file;
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    QString question;
    QStringList unitStates; ///< states of units whose last document is of this family; none for proformas
};

namespace renumbering {

const QList<Renumbering>& families();
const Renumbering* ofMenu(const QString& menu);

/// Throws Refusal "Numérotation impossible" unless the new number is six digits, not zero and free in the table and its
/// archive.
void check(const Session& session, const Renumbering& family, const QString& oldNumber, const QString& newNumber);

/// Gives a document its new number everywhere it is written: header, lines, units, and the delivery notes,
/// invoice lines or counts that name it, archived ones too. One transaction.
void renumber(const Session& session, const Renumbering& family, const QString& oldNumber, const QString& newNumber);

} // namespace renumbering
} // namespace molven

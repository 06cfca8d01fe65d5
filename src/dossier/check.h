#pragma once

#include "shell/session.h"

#include <QList>

namespace molven::check {

/// One broken invariant of a dossier.
struct Fault {
    QString file;    ///< database file name
    QString subject; ///< what is concerned: immatriculation, document, article
    QString text;    ///< what is wrong, in French
};

/// Reads a dossier whole and reports every broken invariant; empty for a sound one. Changes nothing.
QList<Fault> run(const Session& session);

} // namespace molven::check

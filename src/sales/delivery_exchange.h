#pragma once

#include "data/database.h"
#include "shell/session.h"
#include "stock/immatriculation.h"

/// Delivered units chosen for an exchange file, note by note, in the work file tripro.mdb.
namespace molven::delivery_exchange {

/// The files of a choice, in one workspace.
struct Files {
    explicit Files(const Session& session);
    Workspace workspace;
    Database molven, vente;
    UnitFiles units;
    Database tripro;
};

/// Begins an empty choice.
void clear(Files& files);
/// Adds the units of a delivery note with what its lines asked for them; once, however often it is asked. Throws
/// Refusal "Bon Livraison inconnu", "Aucune ligne sur ce Bon Livraison".
void add(Files& files, const QString& note);
/// The units chosen, in the order in which they are written. Throws Refusal when there is none.
QList<Record> chosen(Files& files);
/// The client of a delivery note.
QString clientOf(Files& files, const QString& note);

} // namespace molven::delivery_exchange

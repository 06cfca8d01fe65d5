#pragma once

#include "data/database.h"
#include "shell/company_rules.h"
#include "stock/stock_tables.h"

/// Physical ancillary sets: units in stock put together at the main depot, to be sent to a client as a whole.
namespace molven::ancillary_sets {

/// What the rules write: units and sets together, in one workspace.
struct Files {
    Database molven, ancillaire;
    CompanyRules rules;
};

/// Creates an empty physical set of a type at the main depot; answers its serial, 8 digits. Throws Refusal when
/// the type has no component.
QString create(Database ancillaire, const QString& type);

/// The line "000" of a set, which says where it lies. Throws Refusal when there is no such set.
Record header(Database ancillaire, const QString& serial);
/// Throws Refusal "Impossible, cet ancillaire n'est plus au dépôt principal" for a set that is out.
void requireAtHome(const Record& header);
/// Throws Refusal "Impossible, ce produit n'est pas stocké au dépôt initial" for the units of a set that is out.
void requireUnitAtHome(const Record& line);
/// The lines of a set's units, in order.
Recordset lines(Database ancillaire, const QString& serial);
/// Their immatriculations.
QStringList unitsOf(Database ancillaire, const QString& serial);
/// What a rule about a set with these units has for itself.
Locks locksOf(const QString& serial, const QStringList& units);

/// A component of a set: how many units it wants, and how many it has.
struct Component {
    QString reference, label;
    qint64 wanted = 0, placed = 0;
    qint64 lacking() const { return wanted > placed ? wanted - placed : 0; }
};
/// The components of a set's type, in the order of its composition.
QList<Component> components(Database ancillaire, const Record& header);
/// Whether the set has as many units as its type wants.
bool isComplete(Database ancillaire, const Record& header);

/// The units of an article that a set may take, earliest expiry first, those without one last. Throws Refusal
/// "Aucun produit en stock pour la référence ".
QList<Record> offered(Database molven, const QString& reference);
/// Of those, as many as the component still lacks.
QStringList earliest(Database molven, const Component& component);

/// Places a unit in stock at the main depot into a set that lies there too, whatever the set is to hold. Throws Refusal
/// when the unit is not free or the set is out.
void place(const Files& files, const QString& serial, const QString& immatriculation);
/// Places units that the set's components lack, in one transaction. Throws Refusal with the first that it does not.
void fill(const Files& files, const QString& serial, const QStringList& units);
/// Takes a unit out of a set at the main depot: it is in stock there again. Throws Refusal when the set does not hold
/// it, or is out.
void takeOut(const Files& files, const QString& serial, const QString& immatriculation);
/// Deletes a set at the main depot; its units are in stock again. Throws Refusal when it is out.
void remove(const Files& files, const QString& serial);

/// What a unit holds that lies in no set, in stock at the main depot and on no document.
QList<Assignment> freed(const Files& files);
/// What a unit holds that lies in a set at the main depot.
QList<Assignment> atHome(const Files& files);

} // namespace molven::ancillary_sets

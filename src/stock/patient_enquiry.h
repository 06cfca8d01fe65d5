#pragma once

#include "data/database.h"
#include "shell/session.h"
#include "stock/unit_tables.h"

namespace molven {

/// Which implanted units are asked for. Every part may be empty; dates are "dd/mm/yyyy", of the last document.
struct PatientEnquiry {
    enum class Sort { Reference, Immatriculation, Patient };

    QString firstUnit, lastUnit;
    QString reference;                     ///< one reference, or
    QString firstReference, lastReference; ///< a range
    QString client;
    QString patient; ///< beginning of the name
    QString firstDate, lastDate;
    Sort sort = Sort::Reference;
};

namespace patient_enquiry {

/// Where units lie: the current ones, and with them the archived ones, but of the virtual stock. One workspace.
struct Files {
    Database units;
    QList<Database> archives = {};
};

/// The files of the real stock: archives of other folders are opened where they hold a unit.
Files open(Workspace& workspace, const Session& session);
/// The implanted units that meet every part given. Throws Refusal "date fin < date début", or "Aucun produit
/// correspondant à ce critère" when there is none.
Recordset select(const Files& files, const PatientEnquiry& enquiry);
/// The same units as a grid asks for them: narrowed by its filter, sorted its way when it has one; none is no fault.
Recordset rows(const Files& files, const PatientEnquiry& enquiry, const Criterion& filter, const Order& order);
/// The parts in words.
QString words(const PatientEnquiry& enquiry);

} // namespace patient_enquiry

/// The working copy of a selection of units.
namespace working_copy {

/// Replaces it by these units; answers how many.
qint64 keep(Database tri, const Recordset& units);

} // namespace working_copy
} // namespace molven

#pragma once

#include "data/database.h"
#include "shell/company_rules.h"

namespace molven {

/// A move of units between two depots, without sale, as entered.
struct TransferNote {
    QString client;
    QString from; ///< depot of departure
    QString to;   ///< depot of arrival
    QString date; ///< "dd/mm/yyyy"
    QString patient, voucher, dispatch;
    QStringList units; ///< immatriculations
};

namespace transfer_notes {

/// Writes the note, its lines and the units' depots in one transaction; answers its number. Throws Refusal with
/// the first fault of the header, or the unit that may not leave.
QString write(Database molven, Database vente, Database historic, const CompanyRules& rules, const TransferNote& note);

} // namespace transfer_notes
} // namespace molven

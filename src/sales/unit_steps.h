#pragma once

#include "data/record.h"
#include "data/schema.h"

#include <QList>

namespace molven {

class Database;
struct UnitTrail;

/// The road of a unit, one row a step. Never in a file: a list made for each enquiry.
struct UnitSteps : Table {
    using Table::Table;
    Text sui_dat{this, "sui_dat", 10};  ///< day "dd/mm/yyyy"
    Label sui_lib{this, "sui_lib"};     ///< what happened: "Réception", "Facture"
    Text sui_no{this, "sui_no", 20};    ///< number of the paper
    Label sui_qui{this, "sui_qui", 80}; ///< from whom, at whom, in whom
    Label sui_arc{this, "sui_arc", 20}; ///< whose file tells it: "archive", "autre dossier", empty for one's own
    Text sui_mode{this, "sui_mode", 3}; ///< mode word of the document, empty where no screen shows it
};
inline const UnitSteps strsuivi{"strsuivi"};

namespace unit_steps {

/// What the unit itself tells: how it came, where it lies or lies for good.
Record arrival(const Record& unit);
QList<Record> stay(const Record& unit);
/// Its documents in one file, which holds their headers.
QList<Record> documents(const UnitTrail& lines, Database file);
/// In time; what has no date stands last.
QList<Record> sorted(QList<Record> steps);

} // namespace unit_steps
} // namespace molven

#pragma once

#include "stock/set_overview.h"
#include "ui/record_model.h"

/// The columns of the grids that show ancillary sets.
namespace molven::set_columns {

/// Sets under their type, and with it.
QList<GridColumn> ofOneType();
QList<GridColumn> ofAllTypes();

/// The units of a set.
QList<GridColumn> contents();
/// The same with what has come back of a set.
QList<GridColumn> returning();
inline const QString CameBack = QStringLiteral("Au retour"), Used = QStringLiteral("Utilisée");

} // namespace molven::set_columns

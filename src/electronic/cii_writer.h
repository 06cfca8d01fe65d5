#pragma once

#include "electronic/invoice.h"

#include <QByteArray>

namespace molven::electronic {

/// The name under which a Factur-X file carries its invoice.
inline const QString XmlName = QStringLiteral("factur-x.xml");

/// An invoice in the UN/CEFACT syntax (Cross Industry Invoice D16B) of the profile EN 16931.
QByteArray ciiOf(const Invoice& invoice);

} // namespace molven::electronic

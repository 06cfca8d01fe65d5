#pragma once

#include "shell/session.h"

#include <QStringList>

namespace molven::exposure {

/// The database files of a dossier, and its recall letters, that any user of the machine can read: they hold patients.
QStringList readableByAll(const Session& session);

} // namespace molven::exposure

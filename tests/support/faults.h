#pragma once

#include "data/database.h"
#include "dossier/check.h"

namespace molven::test {

/// What `check` tells of a dossier, one line a fault.
inline QStringList faultsOf(const Session& session) {
    QStringList lines;
    for (const check::Fault& fault : check::run(session)) lines.append(fault.subject + " : " + fault.text);
    return lines;
}

/// A fault in the data, and what is told of it.
struct Planted {
    const char* name;
    DataFile file;
    const char* sql; ///< as a hand outside the program would write it
    const char* told;
};

inline void plant(const Session& session, DataFile file, const char* sql) {
    Workspace workspace;
    workspace.open(session.path(file)).firstValue(QString::fromUtf8(sql));
}

} // namespace molven::test

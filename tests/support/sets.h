#pragma once

#include "support/dossier.h"
#include "support/faults.h"

#include "sales/set_journeys.h"
#include "stock/set_types.h"

namespace molven::test {

/// A dossier's files as the screen of the ancillary sets opens them.
class Sets {
public:
    explicit Sets(const Session& session)
        : notes(session, documentKind(QStringLiteral("BTR"))),
          compta(notes.workspace.open(session.path(DataFile::Compta))),
          ancillaire(notes.workspace.open(session.path(DataFile::Ancillaire))),
          files{notes, ancillaire} {}

    /// A type of so many units of each article.
    void addType(const QString& code, const QList<std::pair<QString, int>>& components) {
        Record type(strancillaire);
        type[strancillaire.anc_code] = code;
        type[strancillaire.anc_lib] = QStringLiteral("ANCILLAIRE ") + code;
        set_types::save(typeFiles(), type, std::nullopt);
        for (const auto& [article, quantity] : components)
            set_types::saveComponent(typeFiles(), code, article, QString::number(quantity), std::nullopt);
    }
    /// A set of that type with these units; answers its serial.
    QString filled(const QString& type, const QStringList& units) {
        const QString serial = ancillary_sets::create(ancillaire, type);
        ancillary_sets::fill(files.sets(), serial, units);
        return serial;
    }
    Record header(const QString& serial) { return ancillary_sets::header(ancillaire, serial); }
    set_types::Files typeFiles() { return {notes.molven, compta, ancillaire}; }
    /// Takes a set back as it stands, with these units.
    set_journeys::Returned takeBack(const QString& serial, const QStringList& back) {
        return set_journeys::takeBack(files, {header(serial), back, QStringLiteral("D'ALMEIDA Hélène"), {}});
    }

    SalesBook notes;
    Database compta, ancillaire;
    set_journeys::Files files;
};

} // namespace molven::test

#pragma once

#include "data/schema.h"
#include "shell/session.h"

#include <QList>

namespace molven {

class Record;

/// Changes of records as people read them, oldest first, one row a field. Never in a file: a list made for each
/// enquiry.
struct TrailRows : Table {
    using Table::Table;
    Text his_dat{this, "his_dat", 10}; ///< day "dd/mm/yyyy"
    Text his_heu{this, "his_heu", 8};  ///< local time "hh:mm:ss"
    Label his_uti{this, "his_uti"};    ///< system user, and the operator's code where one is kept
    Label his_pos{this, "his_pos"};    ///< workstation
    Label his_act{this, "his_act"};    ///< what was being done
    Label his_obj{this, "his_obj"};    ///< the record in words: "Article HIP"
    Label his_txt{this, "his_txt"};    ///< "Prix de vente HT : 1427,00 -> 1350,00", "Création" or "Suppression"
};
inline const TrailRows strhisto{"strhisto"};

/// Whose changes are asked.
struct TrailSubject {
    enum class Kind { Everything, Unit, Article, Client, Supplier, Document };

    Kind kind = Kind::Everything;
    /// Immatriculation, reference or code; a document's "number" or "year/number", of every family, or
    /// "table of its headers/year/number" of the sales, current and archived; of another file "file name/table/...".
    QString key;
};

namespace record_trail {

/// Changes of the subject in every file of the dossier between two days "dd/mm/yyyy", each may be empty. Throws Refusal
/// for a day that is none.
QList<Record> find(const Session& session, const TrailSubject& subject, const QString& firstDay = {},
                   const QString& lastDay = {});

/// The subject in French: "Bon de livraison 2030/000093", "HIP".
QString subjectTitle(const TrailSubject& subject);
/// A table in French: "Article".
QString tableTitle(const QString& table);
/// A field of a table in French, its name when it has no other: "Prix de vente HT".
QString fieldTitle(const QString& table, const QString& field);

} // namespace record_trail
} // namespace molven

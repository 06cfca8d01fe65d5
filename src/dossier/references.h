#pragma once

#include "data/catalogue.h"
#include "data/database.h"
#include "reference/articles.h"
#include "shell/session.h"
#include "stock/immatriculation.h"

#include <functional>
#include <memory>
#include <vector>

/// Codes and what uses them, over all files of a dossier: current, archived, proformas, sets.
namespace molven::references {

/// The files that hold codes, opened in one workspace so that a deletion is checked and written in one transaction.
class Files {
public:
    /// Throws DataError when a file cannot be opened.
    explicit Files(const Session& session);

    /// The files of the workspace; throws std::out_of_range for one that holds no code.
    Database operator[](DataFile file) const { return files_.at(file); }

    /// One of the files that are searched for uses.
    struct Searched {
        DataFile file;
        Database database;
        QString place;         ///< behind the name of what was found there: " (archives)"; empty for the current files
        bool isOthers = false; ///< of another user's folder or the second site
    };
    const std::vector<Searched>& searched() const { return searched_; }

    Workspace workspace;

private:
    /// Documents of other users' folders and of the second site: to be read only, each by a connection of its own.
    void openOtherFolders(const Session& session);

    std::map<DataFile, Database> files_;
    std::vector<Searched> searched_;
    std::vector<std::unique_ptr<Workspace>> others_;
};

/// Deletes a record that its code's users no longer name: `erase` deletes it by the rules of its subsystem, whose
/// refusals come first; then what still names its code is looked for, and refuses the deletion: "Ce client a 3 bons
/// de livraison, 12 produits : suppression impossible". One transaction.
void remove(const Session& session, const Record& record, const std::function<void(Files&)>& erase);

/// Writes an article by articles::save(), and answers what it has to tell. Throws Refusal also when its follow-up
/// changes while units, movements or a stock depend on it.
QString saveArticle(const Session& session, const articles::Entry& entry, const std::optional<Record>& before);
/// The same rule for an article just saved inside the caller's transaction.
void requireFollowUpKept(const UnitFiles& units, Database stocks, const QString& reference,
                         const std::optional<Record>& before);

/// What a field may name, and of which records of its table that holds.
struct Reference {
    const CodeKind& kind;
    Criterion where;
};
std::vector<Reference> referencesOf(const Field& field);

/// A code that names no record.
struct Orphan {
    QString file; ///< file name of the database
    QString code;
    QString text; ///< "Ce client n'existe pas : 3 bons de livraison"
};
QList<Orphan> orphans(Files& files);

} // namespace molven::references

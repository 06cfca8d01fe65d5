#pragma once

#include "data/database.h"
#include "sales/document_kind.h"
#include "shell/other_folders.h"

#include <QSet>

namespace molven {

/// What a word typed anywhere may mean: a record of the dossier, under the code by which its screen shows it.
struct Finding {
    enum class Kind { Unit, Document, Client, Patient, Article, Lot, Set, SetType, Supplier };

    Kind kind;
    QString code;  ///< immatriculation, number, code, name of the patient, lot, serial of the set
    QString words; ///< what is told beside it
    const DocumentKind* document = nullptr; ///< of a document
};

/// The search for everything: units by immatriculation, supplier's serial and GS1 code, lots, current documents of all
/// kinds by number, clients, patients, articles, sets and suppliers. Reads the beginnings of indexes alone, so that it
/// answers while one types; archived units are found, archived documents are not, since no screen shows them.
class FindAnything {
public:
    static constexpr int MostOfAKind = 5;

    /// Throws DataError when a file cannot be opened; one that the dossier lacks holds nothing.
    explicit FindAnything(const Session& session);

    /// What the text may mean, of these kinds only, by kind; a kind that has a record of just that code comes first.
    QList<Finding> answers(const QString& typed, const QSet<Finding::Kind>& wanted);

private:
    using Findings = QList<Finding>;
    QList<Database> unitFiles() const;
    Findings units(const QString& text);
    Findings scanned(const QString& text);
    Findings distinct(Finding::Kind kind, const Field& field, const Criterion& begins, const QString& noun);
    Findings documents(const QString& text);
    Findings documentsOf(Database file, const DocumentHeaders& table, const QString& text);
    Findings clients(const QString& text);
    Findings suppliers(const QString& text);
    Findings articles(const QString& text);
    Findings sets(const QString& text);
    Findings setTypes(const QString& text);
    Finding unit(const Record& record) const;

    const Session session_;
    const OtherFolders others_;
    Workspace workspace_;
    Database molven_, vente_;
    std::optional<Database> historic_, proforma_, ostrane_, ancillaire_;
};

} // namespace molven

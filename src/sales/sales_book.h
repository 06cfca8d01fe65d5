#pragma once

#include "data/database.h"
#include "sales/document_kind.h"
#include "shell/session.h"

#include <memory>

namespace molven {

/// The files of one family of sales documents, opened in one workspace so that a document and its units are
/// written together, and what the rules of the documents need to know of the dossier.
class SalesBook {
public:
    /// Throws DataError when a file cannot be opened.
    SalesBook(const Session& session, const DocumentKind& kind);
    /// Another family in the same workspace: what is written through both is one transaction. Lives no longer than
    /// `other`.
    SalesBook(SalesBook& other, const DocumentKind& kind);

    const DocumentKind& kind() const { return kind_; }
    const CompanyRules& rules() const { return rules_; }
    const Session& session() const { return session_; }
    /// The files in which the kind's documents are numbered, the archive first; only the sales have one.
    QList<Database> series() const;
    /// Delivery notes may take units from the client's own depot.
    bool deliversFromClientDepot() const { return deliversFromClientDepot_; }
    /// Key of the company's currency as its own record names it; may be unknown.
    const QString& companyCurrency() const { return companyCurrency_; }

private:
    SalesBook(const Session& session, const DocumentKind& kind, std::unique_ptr<Workspace> own);

    std::unique_ptr<Workspace> own_; ///< none where another book's is shared
    const DocumentKind& kind_;
    const Session session_;
    CompanyRules rules_;
    bool deliversFromClientDepot_;
    QString companyCurrency_;

public:
    Workspace& workspace;
    Database molven;
    Database vente; ///< the file of the kind: vente.mdb, proforma.mdb or ostrane.mdb
    Database blent;
    Database historic; ///< archived documents and units
};

} // namespace molven

#include "sales/sales_book.h"

namespace molven {

namespace {

/// The sales come before the other files, whichever holds the documents. What is written with delivery notes are the
/// proformas that they were made of, in folders that have some.
Database openDocuments(Workspace& workspace, const Session& session, const DocumentKind& kind) {
    workspace.open(session.vente());
    const QString proformas = session.path(DataFile::Proforma);
    if (kind.isDelivery() && workspace.has(proformas)) workspace.open(proformas);
    return workspace.open(session.path(kind.file));
}

} // namespace

SalesBook::SalesBook(const Session& session, const DocumentKind& kind)
    : SalesBook(session, kind, std::make_unique<Workspace>()) {}

SalesBook::SalesBook(SalesBook& other, const DocumentKind& kind)
    : kind_(kind),
      session_(other.session_),
      rules_(other.rules_),
      deliversFromClientDepot_(other.deliversFromClientDepot_),
      companyCurrency_(other.companyCurrency_),
      workspace(other.workspace),
      molven(other.molven),
      vente(workspace.open(session_.path(kind.file))),
      blent(other.blent),
      historic(other.historic) {}

SalesBook::SalesBook(const Session& session, const DocumentKind& kind, std::unique_ptr<Workspace> own)
    : own_(std::move(own)),
      kind_(kind),
      session_(session),
      rules_(session.rules()),
      deliversFromClientDepot_(session.spe_btl == u"O"),
      companyCurrency_(session.spe_mon),
      workspace(*own_),
      molven(workspace.open(session.molven())),
      vente(openDocuments(workspace, session, kind)),
      blent(workspace.open(session.path(DataFile::Blent))),
      historic(workspace.open(session.historic())) {}

QList<Database> SalesBook::series() const {
    return kind_.file == DataFile::Vente ? QList<Database>{historic, vente} : QList<Database>{vente};
}

} // namespace molven

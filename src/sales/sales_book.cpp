#include "sales/sales_book.h"

namespace molven {

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
      vente(other.vente),
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
      vente(workspace.open(session.vente())),
      blent(workspace.open(session.path(DataFile::Blent))),
      historic(workspace.open(session.historic())) {}

} // namespace molven

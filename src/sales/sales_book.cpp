#include "sales/sales_book.h"

namespace molven {

SalesBook::SalesBook(const Session& session, const DocumentKind& kind)
    : kind_(kind),
      session_(session),
      rules_(session.rules()),
      deliversFromClientDepot_(session.spe_btl == u"O"),
      companyCurrency_(session.spe_mon),
      molven(workspace.open(session.molven())),
      vente(workspace.open(session.vente())),
      blent(workspace.open(session.path(DataFile::Blent))),
      historic(workspace.open(session.historic())) {}

} // namespace molven

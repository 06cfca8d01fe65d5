#include "accounting/client_accounts.h"

#include "accounting/document_entries.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"

namespace molven::client_accounts {

qint64 open(Database molven, Database compta) {
    Transaction transaction(compta.workspace(), QStringLiteral("Comptes clients"));
    QSet<QString> known;
    for (const QStringList& row : compta.values(strplan, {&strplan.cpt_aff})) known.insert(row.first());
    qint64 added = 0;
    for (const QStringList& client :
         molven.values(strclient, {&strclient.clt_cpt, &strclient.clt_nom}, strclient.clt_cpt != QString())) {
        const QString account = ClientAccountStart + client[0];
        if (known.contains(account)) continue;
        Record entry(strplan);
        entry[strplan.cpt_aff] = account;
        entry[strplan.cpt_lib] = client[1].left(strplan.cpt_lib.size);
        compta.insert(entry);
        known.insert(account);
        ++added;
    }
    transaction.commit();
    return added;
}

} // namespace molven::client_accounts

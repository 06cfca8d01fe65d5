#include "stock/mail_addresses.h"

#include "data/require.h"
#include "stock/exchange_tables.h"

#include <QRegularExpression>

namespace molven::mail_addresses {

QString find(Database mail, const QString& client) {
    const auto kept = mail.find(strmail, strmail.mai_clt == client);
    return kept ? kept->value(strmail.mai_adr) : QString();
}

void keep(Database mail, const QString& client, const QString& address) {
    static const QRegularExpression form(QStringLiteral("^[^\\s@-][^\\s@]*@[^\\s@]+\\.[^\\s@.]+$"));
    require(form.match(address).hasMatch(), QStringLiteral("Adresse de courriel incorrecte"),
            QStringLiteral("txtmail"));
    Transaction transaction(mail.workspace());
    mail.remove(strmail, strmail.mai_clt == client);
    Record kept(strmail);
    kept[strmail.mai_clt] = client;
    kept[strmail.mai_adr] = address;
    mail.insert(kept);
    transaction.commit();
}

} // namespace molven::mail_addresses

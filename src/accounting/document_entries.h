#pragma once

#include "accounting/tables.h"
#include "data/database.h"

#include <QHash>
#include <QSet>

namespace molven {

/// What one invoice or credit note becomes in the sales journal: the client owes its total, the sales accounts of its
/// lines, the carriage and the VAT accounts of its rates have their parts.
class DocumentEntries {
public:
    /// Reads clients, VAT accounts and the chart. `carriage` is the account of carriage, `currency` the company's.
    DocumentEntries(Database molven, Database compta, const QString& carriage, const QString& currency);

    /// What the lines of a document come to by sales account and VAT code, as statdt has them.
    struct Part {
        QString account, vatCode;
        Decimal net; ///< after the document's discounts
        Decimal vat; ///< before them
    };

    /// The entry's lines, without their number, debits equal to credits to the cent; none for a document of nothing but
    /// zeros. Throws Refusal with what keeps the document out: an account that the chart lacks, another currency,
    /// totals that are not those of its lines.
    QList<Record> of(const Record& header, const QList<Part>& parts) const;

private:
    struct Amount;
    QList<Amount> amounts(const Record& header, const QList<Part>& parts) const;
    QString clientAccount(const QString& client) const;
    QString vatAccount(const QString& code) const;
    const QString& known(const QString& account) const;

    QHash<QString, QString> clients_; ///< their accounts, by code
    QHash<QString, QString> vats_;    ///< accounts by VAT code
    QSet<QString> chart_;
    QString carriage_, currency_;
};

/// The account that all clients without one of their own share, and what begins a client's own.
inline const QString ClientsAccount = QStringLiteral("411000000"), ClientAccountStart = QStringLiteral("411");
inline const QString SalesJournal = QStringLiteral("VE");

} // namespace molven

#pragma once

#include "data/record.h"
#include "electronic/invoice.h"

namespace molven::electronic {

/// The two parties of an invoice, and how goods are taxed between them.
class Parties {
public:
    Parties(const Record& identity, const Record& client);

    /// Throws Refusal for what either lacks: SIRET, VAT number, address.
    void check() const;

    Party seller() const;
    /// Named and addressed as on the page: the name first, the country last for a foreign one.
    Party buyer(const QStringList& address) const;
    /// Where the goods go; an address without a name of its own bears the buyer's.
    Party delivery(const QStringList& address, const QString& buyer) const;

    /// Without VAT at home goods are exempt; beyond the border they are delivered within the Union or exported.
    Taxation taxation(const Decimal& rate) const;
    /// Throws Refusal when goods are exempt and no reason is known.
    void checkReason(const Taxation& tax) const;

private:
    bool isForeign() const;
    Party addressed(QStringList lines) const;

    const Record& identity_;
    const Record& client_;
    const QString country_; ///< of the client
};

} // namespace molven::electronic

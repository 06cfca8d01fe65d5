#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// Where the exchange files of a client are sent, in mail.mdb.
struct MailAddresses : Table {
    using Table::Table;
    Text mai_clt{this, "mai_clt", 6, codes::Client}; ///< client code
    Label mai_adr{this, "mai_adr", 120};             ///< address
    Index by_client{this, {mai_clt}, Uniqueness::Unique};
};
inline const MailAddresses strmail{"strmail"};

} // namespace molven

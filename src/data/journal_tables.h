#pragma once

#include "data/schema.h"

namespace molven {

/// What was done to the records of a file, one record a change; see Trail. It only grows. What one statement did to
/// many records alike is one record that names them all, and neighbours that were created together share one;
/// Journal::read() tells all the same way.
struct JournalEntries : Table {
    using Table::Table;
    Text jou_dat{this, "jou_dat", 8};   ///< day "yyyymmdd"
    Text jou_heu{this, "jou_heu", 18};  ///< local time and its offset "hh:mm:ss.zzz+01:00", one for a whole transaction
    Label jou_pos{this, "jou_pos", 64}; ///< workstation
    Label jou_uti{this, "jou_uti", 64}; ///< system user
    Text jou_ope{this, "jou_ope", 20};  ///< operator's code, where one is kept
    Text jou_ver{this, "jou_ver", 20};  ///< version of the program
    Label jou_act{this, "jou_act", 60}; ///< what was being done: "Réception"
    Text jou_tab{this, "jou_tab", 32};  ///< table
    Text jou_cle{this, "jou_cle", 80};  ///< the record: fields of the table's Trail joined by "/"; what the keys of
                                        ///< neighbours begin with; empty for very many changed alike
    Text jou_gen{this, "jou_gen", 1};   ///< C created, M changed, S deleted, R there when the journal took it over
    Label jou_val{this, "jou_val"};     ///< JSON: {"field":[before,after]} of a change, {"field":value} of a deletion;
                                        ///< the digest of a record created or taken over, of neighbours each one's
                                        ///< with a line feed behind
    Label jou_cles{this, "jou_cles"};   ///< of several records: a line feed, and each one's key with a line feed behind
    Index by_record{this, {jou_cle}};
};
inline const JournalEntries strjournal{"strjournal"};

/// Seals over the journal's days, each over the records since the seal before.
struct JournalSeals : Table {
    using Table::Table;
    Text sce_dat{this, "sce_dat", 8};               ///< day of the last record under it
    Number sce_der{this, "sce_der", Number::Whole}; ///< that record's place in the journal
    Number sce_nbr{this, "sce_nbr", Number::Whole}; ///< number of records under it
    Text sce_som{this, "sce_som", 64};              ///< SHA-256 over the seal before and these records
};
inline const JournalSeals strsceau{"strsceau"};

} // namespace molven

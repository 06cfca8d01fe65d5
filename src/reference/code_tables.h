#pragma once

#include "data/catalogue.h"
#include "data/database.h"

#include <functional>

namespace molven {

/// What a small code table asks of its records.
struct CodeTable {
    /// A field that may not be empty, and what is said when it is.
    struct Required {
        const Field& field;
        QString message;
    };

    const Table& table;
    QList<const Text*> key;   ///< fields that tell a record apart
    QList<Required> required; ///< in the order of the screen
    QString exists;           ///< said of a new record whose key is taken
    QString missing;          ///< said of a change or a deletion without its record
    /// Further checks and computed fields; throws Refusal.
    std::function<void(Database, Record&)> complete = [](Database, Record&) {};
    /// "1" and "001" cannot stand side by side: who types a code short means either.
    bool zerosAside = false;
    DataFile file = DataFile::Molven; ///< that holds the table

    /// The condition that finds the record with the same key, its codes typed short or whole.
    Criterion sameKey(const Record& record) const;
    bool isSameKey(const Record& a, const Record& b) const;
    /// The condition that finds whatever makes a new record of that key one too many.
    Criterion takenBy(const Record& record) const;
};

namespace code_tables {

const CodeTable& parameters();
const CodeTable& panPrices();
const CodeTable& paymentModes();
const CodeTable& vatCodes();
const CodeTable& invoiceTexts();
const CodeTable& currencies();
const CodeTable& accounts();
const CodeTable& lppCodes();
const CodeTable& tipsCodes();
const CodeTable& clientTariffs();
const CodeTable& discounts();
const CodeTable& commissionRates();

/// Completes the codes of a record and throws Refusal with its first fault; codes that it had before pass.
void check(Database database, const CodeTable& kind, Record& record, const Record* before = nullptr);
/// Throws Refusal when add(), or change() of the record read as `before`, would refuse the record: for a screen that
/// has something to ask before it writes.
void requireWritable(Database database, const CodeTable& kind, Record record, const std::optional<Record>& before);
/// Writes a new record; throws Refusal when it is not complete or its key is taken.
void add(Database database, const CodeTable& kind, Record record);
/// Rewrites a record; `before` is the record as the user read it. Throws Refusal when it does not exist, DataError
/// RecordChanged when another workstation wrote it meanwhile.
void change(Database database, const CodeTable& kind, Record record, const Record& before);
/// Deletes the record of that key; throws Refusal when it does not exist.
void remove(Database database, const CodeTable& kind, const Record& record);

} // namespace code_tables
} // namespace molven

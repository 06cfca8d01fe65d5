#pragma once

#include "stock/depot_tables.h"
#include "stock/unit_tables.h"

#include "data/database.h"

#include <QHash>

#include <functional>
#include <optional>

namespace molven {

struct SupplierCode;

/// What a count says of a unit, `lig_con`.
namespace verdict {
inline const QString Found = QStringLiteral("P");      ///< read, and of the depot
inline const QString Missing = QStringLiteral("M");    ///< of the depot, not read
inline const QString Unexpected = QStringLiteral("I"); ///< read, of another depot or not in stock
inline const QString Moved = QStringLiteral("D");      ///< read, and moved by a document since
} // namespace verdict

/// State of a count, `inv_eta`.
namespace count_state {
inline const QString Open = QStringLiteral("N");
inline const QString Closed = QStringLiteral("C");
} // namespace count_state

struct CountTally {
    qint64 expected = 0, found = 0, missing = 0, unexpected = 0, moved = 0;
    qint64 twice = 0;             ///< units read more than once
    qint64 expired = 0, soon = 0; ///< among the units read
    bool operator==(const CountTally&) const = default;
};

enum class Freshness { Good, Soon, Expired };

/// A count against its depot. Expected are the units in stock in the depot: neither sold, delivered, returned, nor in a
/// set, which lies under its client. Read once, it is then kept up with each reading; what other workstations read or
/// move is seen at the next one.
class DepotCount {
public:
    /// `count` may be new, without number: the first reading begins it, or joins the one that another workstation
    /// began meanwhile.
    DepotCount(Database molven, const Record& count);

    const Record& header() const { return header_; }
    bool isBegun() const { return !header_[strinvdep.inv_no].isEmpty(); }
    bool isClosed() const { return header_[strinvdep.inv_eta] == count_state::Closed; }
    CountTally tally() const;
    /// The rows (`strconstat`) of one verdict, by reference; those read, the latest first.
    QList<Record> rows(const QString& verdict) const;
    QList<Record> readings() const;
    Freshness freshnessOf(const Record& row) const;
    /// Verdict by immatriculation, of every unit that was read or is expected.
    QHash<QString, QString> verdicts() const;

    struct Reading {
        Record row;
        bool isAgain = false;
        qint64 alike = 0, alikeRead = 0; ///< units that the code fits, and how many of them are read; one by its number
    };
    /// Counts the unit of a scanned text: our immatriculation, a supplier's serial, or a supplier's code with its lot
    /// or serial. Of several units that one fits, those expected here and not yet read come first. Throws Refusal.
    Reading read(const QString& scanned);
    /// Takes a unit out of what was read. Throws Refusal when the count is closed.
    void takeBack(const QString& unit);
    /// Client, who counts, months. Throws Refusal for a client that is none.
    void describe(const QString& client, const QString& counter, int months);
    /// Reads everything again.
    void refresh();

private:
    struct Named {
        QString unit;
        qint64 alike = 1, alikeRead = 0;
    };
    void readExpected();
    void readReadings();
    void readClosed();
    void judge(Record& row, const std::optional<Record>& unit) const;
    void judge(const QString& unit, Record& row) const;
    void tell(const Record& row, int sign);
    void tellAll();
    bool isExpected(const QString& state, const QString& depot) const;
    Named named(const QString& scanned) const;
    Named best(const SupplierCode& code) const;
    QString bestElsewhere(const SupplierCode& code, const QString& again) const;
    void begin();
    Locks locks() const;
    /// Writes what a scanned text counts.
    Reading written(const QString& scanned);
    void followOthers();
    bool takeReadingsOfOthers();
    Criterion isThere() const;

    mutable Database molven_;
    Record header_;
    QHash<QString, Record> expected_; ///< rows by immatriculation
    QHash<QString, Record> read_;
    QStringList order_; ///< of the readings, the latest first
    QList<Record> closed_;
    CountTally tally_; ///< without what is missing
    qint64 version_ = 0;
};

namespace depot_counts {

/// A new count of a depot for the client whose depot it is. Throws Refusal for an unknown depot, and for that of the
/// sets.
Record blank(Database molven, const QString& depot);
/// The open count of a depot.
std::optional<Record> openOf(Database molven, const QString& depot);
/// The client whose depot this is, the first of several; nothing for one of our own.
std::optional<Record> clientOf(Database molven, const QString& depot);
/// Throws Refusal when the depot is a client's and this one's is another.
void requireClientOf(Database molven, const QString& depot, const QString& client);
/// Throws Refusal unless the count is open as it is stored now; answers it.
Record requireOpen(Database molven, const Record& count);

/// Told how many units are done; false abandons the closing, which then writes nothing.
using Progress = std::function<bool(int done, int total)>;
/// Closes a count in one transaction: the verdict of every unit read, and the missing ones. Throws Refusal when it is
/// no longer as its user saw it, or without any reading. Answers it closed.
Record close(Database molven, const DepotCount& seen, const Progress& progress = {});
/// Deletes an open count.
void drop(Database molven, const Record& count);

/// The document of a mode no longer moves a unit: a count that it settled holds it unsettled again.
void release(Database molven, const QString& mode, const QString& document, const QString& unit);

/// "dépôt 001", "livrée, document 000012": where a unit is by the books.
QString situation(const QString& state, const QString& depot, const QString& document);

} // namespace depot_counts
} // namespace molven

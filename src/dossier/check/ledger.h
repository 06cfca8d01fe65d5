#pragma once

#include "data/digest.h"

#include <QMap>

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <vector>

/// The journal of a file followed from its beginning, to know what the records of a table should hold.
namespace molven::check {

/// A record's key in the journal, as a number: a million of them fit in memory.
using RecordKey = quint64;
RecordKey recordKey(QStringView key);
/// The key of a record, as the journal writes it.
QString keyOf(const Record& record);

/// An entry of the journal, read.
struct Entry {
    Entry(const Table& table, const Record& entry);

    struct Change {
        const Field* field;
        QString before, after;
    };
    QString key, keyAfter; ///< a change of a key field leaves the record under another key
    QString how;           ///< C, M, S or R
    QString digest;        ///< of C and R
    QList<Change> changes; ///< of M
};

/// What is known of a record: the sum of its values, or the mark of each.
using Sum = quint64;
using Marks = QMap<const Field*, digest::Mark>;

/// What is known of the records of a table, by key; of several that share one, first in, first out.
template <class Known>
class Records {
public:
    bool holds(RecordKey key) const { return first_.contains(key); }
    void put(RecordKey key, Known known) {
        if (const auto [first, isNew] = first_.try_emplace(key, known); !isNew) others_[key].push_back(known);
    }
    /// The first of a key that is held.
    Known take(RecordKey key) {
        const auto first = first_.find(key);
        Known taken = first->second;
        if (const auto others = others_.find(key); others == others_.end()) {
            first_.erase(first);
        } else {
            first->second = others->second.front();
            others->second.pop_front();
            if (others->second.empty()) others_.erase(others);
        }
        return taken;
    }
    /// Takes one that is exactly so; false when there is none.
    bool takeEqual(RecordKey key, const Known& known) {
        if (!holds(key)) return false;
        const auto others = others_.find(key);
        const std::size_t count = others == others_.end() ? 1 : 1 + others->second.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Known one = take(key);
            if (one == known) return true;
            put(key, one);
        }
        return false;
    }
    void clear() {
        first_.clear();
        others_.clear();
    }
    template <class Visit>
    void forEach(const Visit& visit) const {
        for (const auto& [key, known] : first_) visit(key, known);
        for (const auto& [key, more] : others_)
            for (const Known& known : more) visit(key, known);
    }

private:
    std::unordered_map<RecordKey, Known> first_;
    std::unordered_map<RecordKey, std::deque<Known>> others_;
};

/// Follows the entries of a table in their order.
template <class Known>
class Ledger {
public:
    explicit Ledger(const Table& table) : table_(table) {}

    void add(const Entry& entry);

    Records<Known> records;
    std::unordered_multimap<RecordKey, RecordKey> origins; ///< keys that records came to, and from which

private:
    const Table& table_;
    bool isTakingOver_ = false; ///< the last entry took a record over
};

} // namespace molven::check

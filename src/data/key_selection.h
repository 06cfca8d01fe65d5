#pragma once

#include "data/criteria.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace molven {

class Engine;
class Statement;

/// The records of a table, or of several of one layout, that meet a criterion, in order.
struct KeySelection {
    /// A record's key; of several tables, those of all of them take turns.
    using Key = qint64;
    /// A part of the order: so many records at most, behind so many from one end.
    struct Stretch {
        qint64 most;
        qint64 behind = 0;
        bool fromEnd = false;
    };

    Engine* engine;
    QStringList tables; ///< qualified
    const Table* table;
    Criterion criterion;
    Order order;
    std::optional<QList<Key>> named = {}; ///< these alone of them

    /// The table that a record of this key lies in, and its key there.
    const QString& tableOf(Key key) const { return tables[key % tables.size()]; }
    Key keyInTable(Key key) const { return key / tables.size(); }
    Key keyOf(qsizetype place, Key inTable) const { return inTable * tables.size() + place; }

    KeySelection meeting(const Criterion& further) const {
        return {engine, tables, table, criterion && further, order, named};
    }
    /// Those of them that have one of these keys.
    KeySelection among(const std::vector<Key>& keys) const;
    /// What selects them in one of the tables.
    Criterion criterionIn(qsizetype place) const;
    /// Runs the statement that answers the keys in order, those of a stretch from its end of the order on.
    Statement& keys(const std::optional<Stretch>& stretch = {}) const;
    qint64 count() const;
    /// How many records come before this one; nothing when it is none of the selection.
    std::optional<qint64> placeOf(Key key) const;
    /// The greatest key that a record has in one of the tables, selected or not.
    Key lastKeyIn(qsizetype place) const;

private:
    QString source(Sql& sql) const;
    QString keyName() const;
};

} // namespace molven

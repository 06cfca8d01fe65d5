#include "data/archive.h"

#include "data/criteria.h"

#include <algorithm>

namespace molven::archive {

namespace {

/// Heads of one transaction: its commit costs as much as some hundred of them.
constexpr qsizetype AtOnce = 500;

Criterion ofKeys(const Keyed& records, const QString& group, const QStringList& keys) {
    return records.group == group && isOneOf(records.key, keys);
}

QStringList keysOf(Database file, const Keyed& records, const Criterion& which) {
    QStringList keys;
    for (const QStringList& row : file.values(records.table, {&records.key}, which)) keys.append(row.first());
    return keys;
}

/// What a condition selects, by group.
QMap<QString, QStringList> selected(Database file, const Keyed& heads, const Criterion& which) {
    QMap<QString, QStringList> groups;
    for (const QStringList& row : file.values(heads.table, {&heads.group, &heads.key}, which))
        groups[row[0]].append(row[1]);
    for (QStringList& keys : groups) std::sort(keys.begin(), keys.end());
    return groups;
}

class Move {
public:
    Move(Database from, Database to, const Subject& subject, const Criterion& which, const QString& deed)
        : from_(from), to_(to), subject_(subject), which_(which), deed_(deed) {}

    void run(const QString& group, const QStringList& asked) {
        Transaction transaction(from_.workspace(), deed_);
        const Keyed& heads = subject_.head;
        // Another workstation may have moved or reopened some meanwhile.
        QStringList keys = keysOf(from_, heads, which_ && ofKeys(heads, group, asked));
        const QStringList held = keysOf(to_, heads, ofKeys(heads, group, keys));
        for (const QString& key : held) keys.removeAll(key);
        outcome.moved += from_.moveTo(to_, heads.table, which_ && ofKeys(heads, group, keys));
        if (subject_.lines) from_.moveTo(to_, subject_.lines->table, ofKeys(*subject_.lines, group, keys));
        transaction.commit();
        for (const QString& key : held) outcome.doubles.append(group + key);
    }

    Outcome outcome;

private:
    Database from_, to_;
    const Subject& subject_;
    const Criterion& which_;
    const QString& deed_;
};

} // namespace

Outcome move(Database from, Database to, const Subject& subject, const Criterion& which, const QString& deed,
             const Progress& progress) {
    Move move(from, to, subject, which, deed);
    const QMap<QString, QStringList> groups = selected(from, subject.head, which);
    qsizetype total = 0, done = 0;
    for (const QStringList& keys : groups) total += keys.size();
    for (auto group = groups.begin(); group != groups.end(); ++group)
        for (qsizetype first = 0; first < group->size(); first += AtOnce) {
            if (progress && !progress(static_cast<int>(done), static_cast<int>(total))) {
                move.outcome.isStopped = true;
                return move.outcome;
            }
            const QStringList keys = group->mid(first, AtOnce);
            move.run(group.key(), keys);
            done += keys.size();
        }
    return move.outcome;
}

} // namespace molven::archive

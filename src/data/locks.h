#pragma once

#include <QStringList>

namespace molven {

/// What a transaction has for itself until it ends. In a folder it has everything, since a file has one writer. On a
/// server others write beside it as long as they name nothing of the same; who names nothing waits for all and keeps
/// all waiting.
///
/// A rule names what it reads to decide and then writes: a unit with its state, an article with its stock, a series
/// with its last number. What must find nobody that names a thing, or must see many things stand still, takes
/// everything.
///
/// The order that keeps two from waiting for each other: whether alone or beside others comes first, then the names,
/// in one order for everybody. What a transaction inside another names besides is not waited for: when another has it,
/// DataError::Disturbed is thrown, and the outer one is done again (Transaction::run).
class Locks {
public:
    /// Everything.
    static Locks all() { return Locks(); }
    static Locks of(const QStringList& names) {
        Locks locks;
        locks.names_ = names;
        locks.isAll_ = false;
        return locks;
    }

    /// Nothing: only files of this workstation are written, such as its lists.
    static Locks none() { return of({}); }
    /// These besides.
    Locks with(const QStringList& names) const { return of(names_ + names); }

    bool isAll() const { return isAll_; }
    bool isNone() const { return !isAll_ && names_.isEmpty(); }
    /// "unit 26030001", "number strlive": whoever does the same says the same.
    const QStringList& names() const { return names_; }

private:
    QStringList names_;
    bool isAll_ = true;
};

} // namespace molven

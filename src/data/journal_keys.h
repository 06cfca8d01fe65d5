#pragma once

#include "data/criteria.h"

namespace molven {

/// Whose entries of a journal are sought, by the key of their record; by default everybody's. An entry may name many
/// records: the engine finds it by one of them, fits() tells which.
class JournalKeys {
public:
    JournalKeys() = default;
    static JournalKeys of(const QString& key);
    static JournalKeys beginningWith(const QString& text);
    /// Whatever its case and accents.
    static JournalKeys containing(const QString& text);
    /// What the keys of a record's neighbours begin with, all but their last two digits; empty for a key that does not
    /// end so. Neighbours may share an entry, under this.
    static QString family(const QString& key);

    const Criterion& criterion() const { return criterion_; }
    bool fits(const QString& key) const { return !fits_ || fits_(key); }

    friend JournalKeys operator||(const JournalKeys& a, const JournalKeys& b);

private:
    using Fits = std::function<bool(const QString& key)>;
    JournalKeys(const Criterion& single, const QStringList& shared, const QString& among, Fits fits);

    Criterion criterion_;
    Fits fits_;
};

} // namespace molven

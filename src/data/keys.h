#pragma once

#include "data/key_selection.h"

#include <QHash>

#include <vector>

namespace molven {

/// The keys of a selection by their places in its order. They are read at once from a file; those of a large selection
/// on a server would have to travel, and are read by windows around the places that are asked for. What others add or
/// remove between two windows moves the places of the one read later, never those of one that was read.
class Keys {
public:
    using Key = KeySelection::Key;
    static constexpr Key None = 0;

    explicit Keys(const KeySelection& selection);

    bool areWhole() const { return isWhole_; }
    qint64 count() const { return count_; }
    /// None for a record that others removed before its window was read.
    Key operator[](qint64 place) const;
    /// Nothing for a key that is none of the selection.
    std::optional<qint64> placeOf(Key key) const;

    /// Reads them all, as they are now, unless they are whole already; answers whether it had to.
    bool readWhole();
    // Of whole ones only:
    void append(Key key);
    void remove(qint64 place);
    void keep(const std::vector<Key>& kept);

    /// How many keys a window has. Tests have it small.
    static inline qint64 windowSize = 4096;

private:
    using Window = std::vector<Key>;
    const Window& window(qint64 number) const;
    qint64 sizeOf(qint64 number) const { return std::min(windowSize, count_ - number * windowSize); }

    KeySelection selection_;
    bool isWhole_ = true;
    qint64 count_ = 0;
    Window whole_;
    mutable QHash<qint64, Window> windows_;
};

} // namespace molven

#pragma once

#include "data/sqlite/held_file.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace molven {

/// Tells other programs that this one works in some data folders, or keeps them out while it rewrites whole files. It
/// ends with the program, however that ends.
class Presence {
public:
    enum class Kind { Working, Alone };

    /// Throws Refusal when one of the folders is being rewritten by another program, or when others work in it while
    /// this one must be alone, DataError when that cannot be told. A folder that takes no mark (read only) is worked in
    /// without one.
    Presence(const QStringList& folders, Kind kind);

private:
    std::vector<std::unique_ptr<HeldFile>> marks_;
};

} // namespace molven

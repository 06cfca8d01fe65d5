#pragma once

#include "data/database.h"

#include <QHash>

namespace molven {

class Grid;
struct CodeKind;

/// The words behind the codes that a grid shows, read when first asked for.
class CodeNames {
public:
    explicit CodeNames(Grid& grid) : grid_(grid) {}

    /// Empty for a field that holds no code, a code without words, and while the codes cannot be read.
    QString of(const Field& field, const Record& row);
    /// The words may have changed.
    void forget() { known_.clear(); }

private:
    Grid& grid_;
    Workspace workspace_;
    QHash<std::pair<const CodeKind*, QString>, QString> known_;
};

} // namespace molven

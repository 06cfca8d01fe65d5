#pragma once

class QString;

namespace molven {

/// A screen that several entries of the menu open under one mode word: it is told which one.
class OpenedByMenu {
public:
    virtual ~OpenedByMenu() = default;
    virtual void openedBy(const QString& entry) = 0;
};

} // namespace molven

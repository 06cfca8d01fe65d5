#pragma once

class QString;

namespace molven {

/// A screen that can be opened on a record.
class OpenedOn {
public:
    virtual ~OpenedOn() = default;
    /// Shows the record of that code, unless the user keeps what is typed on another one. Throws Refusal when there is
    /// none, or none any more.
    virtual void bringUp(const QString& code) = 0;
};

} // namespace molven

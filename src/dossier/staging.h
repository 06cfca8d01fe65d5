#pragma once

#include "data/sqlite/held_file.h"

#include <memory>

namespace molven {

/// A hidden folder in which something is made whole before it takes its place. It goes with this object; one that a
/// killed program left behind goes when the next is begun beside it.
class Staging {
public:
    /// In a folder that there is, by a name such as ".creation". Throws Refusal where it cannot be written.
    Staging(const QString& parent, const QString& name);
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    const QString& path() const { return path_; }
    /// Gives it its name at once; an empty folder of that name is taken away before. Throws Refusal.
    void moveTo(const QString& target);

private:
    QString path_;
    std::unique_ptr<HeldFile> lock_; ///< tells a folder that is worked in from one left behind
};

} // namespace molven

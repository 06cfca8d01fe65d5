#pragma once

#include "data/sqlite/held_file.h"

#include <memory>

namespace molven {

/// A hidden folder in which something is made whole before it takes its place. It goes with this object; one that a
/// killed program left behind is settled when the next is begun beside it.
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
    /// Gives its parts to the folder that it lies in, one by one, folders before the files that name them: whole, even
    /// when the program is killed meanwhile, since settle() goes on with it. Throws Refusal.
    void pourOut();
    /// What killed programs left behind by this name: one that was being poured out is poured out to its end, unless
    /// something stands in its place by now; one that was not whole yet is removed.
    static void settle(const QString& parent, const QString& name);

private:
    QString path_;
    std::unique_ptr<HeldFile> lock_; ///< tells a folder that is worked in from one left behind
};

} // namespace molven

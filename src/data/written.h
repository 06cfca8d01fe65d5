#pragma once

#include <QtGlobal>

#include <functional>

namespace molven {

/// What a statement did to the records. A server is told of it together with what follows: whoever asks makes it do so
/// now. Throws DataError then, as the next statement or the commit would.
class Written {
public:
    struct Count {
        qint64 changed = 0; ///< records
        qint64 key = 0;     ///< of the record that was added
    };

    explicit Written(std::function<Count()> ask) : ask_(std::move(ask)) {}
    explicit Written(const Count& known) : ask_([known] { return known; }) {}

    qint64 changed() const { return ask_().changed; }
    qint64 key() const { return ask_().key; }
    operator qint64() const { return changed(); }

private:
    std::function<Count()> ask_;
};

} // namespace molven

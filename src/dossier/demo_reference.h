#pragma once

#include "data/database.h"
#include "shell/session.h"

#include <random>

namespace molven::demo {

/// Random choices that are the same on every machine for one seed.
class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    /// 0 to count - 1.
    int below(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
    int between(int first, int last) { return first + below(last - first + 1); }
    bool chance(int percent) { return below(100) < percent; }
    template <class List>
    const auto& oneOf(const List& list) {
        return list[below(static_cast<int>(list.size()))];
    }

private:
    std::mt19937 engine_;
};

/// Parameter lists, suppliers, hospitals with their depots, reimbursement lists, articles, tariffs.
void fillReference(const Session& session, Dice& dice);

/// "DURAND MARIE", now and then with an apostrophe or an accent.
QString patientName(Dice& dice);

} // namespace molven::demo

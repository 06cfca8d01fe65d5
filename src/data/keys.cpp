#include "data/keys.h"

#include "data/engine.h"

#include <algorithm>

namespace molven {

namespace {

std::vector<Keys::Key> readFrom(Statement& rows) {
    std::vector<Keys::Key> keys;
    while (rows.next()) keys.push_back(rows.integer(0));
    return keys;
}

} // namespace

Keys::Keys(const KeySelection& selection) : selection_(selection) {
    const bool travel = selection.engine->isFar();
    Window first = readFrom(selection.keys(travel ? std::optional(KeySelection::Stretch{windowSize}) : std::nullopt));
    count_ = static_cast<qint64>(first.size());
    isWhole_ = !travel || count_ < windowSize;
    if (isWhole_) {
        whole_ = std::move(first);
        return;
    }
    count_ = std::max(count_, selection.count());
    windows_.insert(0, std::move(first));
}

Keys::Key Keys::operator[](qint64 place) const {
    if (isWhole_) return whole_[static_cast<std::size_t>(place)];
    return window(place / windowSize)[static_cast<std::size_t>(place % windowSize)];
}

/// Counted from the nearer end, since the server walks to where a window begins.
const Keys::Window& Keys::window(qint64 number) const {
    const auto known = windows_.constFind(number);
    if (known != windows_.constEnd()) return *known;
    const qint64 size = sizeOf(number), before = number * windowSize, behind = count_ - before - size;
    const bool fromEnd = behind < before;
    Window read = readFrom(selection_.keys(KeySelection::Stretch{size, fromEnd ? behind : before, fromEnd}));
    if (fromEnd) std::reverse(read.begin(), read.end());
    read.resize(static_cast<std::size_t>(size), None);
    return *windows_.insert(number, std::move(read));
}

std::optional<qint64> Keys::placeOf(Key key) const {
    const auto in = [key](const Window& keys, qint64 from) -> std::optional<qint64> {
        const auto found = std::find(keys.begin(), keys.end(), key);
        return found == keys.end() ? std::nullopt : std::optional(from + (found - keys.begin()));
    };
    if (isWhole_) return in(whole_, 0);
    for (auto known = windows_.constBegin(); known != windows_.constEnd(); ++known)
        if (const auto place = in(*known, known.key() * windowSize)) return place;
    const auto place = selection_.placeOf(key);
    if (!place || *place >= count_) return std::nullopt;
    const qint64 number = *place / windowSize;
    return in(window(number), number * windowSize);
}

bool Keys::readWhole() {
    if (isWhole_) return false;
    whole_ = readFrom(selection_.keys());
    count_ = static_cast<qint64>(whole_.size());
    windows_.clear();
    return isWhole_ = true;
}

void Keys::append(Key key) {
    whole_.push_back(key);
    ++count_;
}

void Keys::remove(qint64 place) {
    whole_.erase(whole_.begin() + place);
    --count_;
}

void Keys::keep(const std::vector<Key>& kept) {
    Key greatest = 0;
    for (const Key key : whole_) greatest = std::max(greatest, key);
    std::vector<bool> isKept(static_cast<std::size_t>(greatest) + 1);
    for (const Key key : kept)
        if (key <= greatest) isKept[static_cast<std::size_t>(key)] = true;
    std::erase_if(whole_, [&](Key key) { return !isKept[static_cast<std::size_t>(key)]; });
    count_ = static_cast<qint64>(whole_.size());
}

} // namespace molven

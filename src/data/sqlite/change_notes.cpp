#include "data/sqlite/change_notes.h"

#include <algorithm>

#include <sqlite3.h>

namespace molven::sqlite {

namespace {

ChangeNotes& notes(sqlite3_context* context) { return *static_cast<ChangeNotes*>(sqlite3_user_data(context)); }

QByteArrayView text(sqlite3_value* value) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value)); // before its length
    return {bytes, bytes ? sqlite3_value_bytes(value) : 0};
}

/// Numbers by what they are, since a text may stand for several.
bool same(sqlite3_value* one, sqlite3_value* other) {
    const int type = sqlite3_value_type(one);
    if (type != sqlite3_value_type(other)) return false;
    switch (type) {
    case SQLITE_NULL:
        return true;
    case SQLITE_INTEGER:
        return sqlite3_value_int64(one) == sqlite3_value_int64(other);
    case SQLITE_FLOAT:
        return sqlite3_value_double(one) == sqlite3_value_double(other);
    default:
        return text(one) == text(other);
    }
}

void alike(sqlite3_context* context, int count, sqlite3_value** values) {
    sqlite3_result_int(context, notes(context).follow(count, values));
}

void noted(sqlite3_context* context, int count, sqlite3_value** arguments) {
    if (count == 2)
        notes(context).add(text(arguments[0]));
    else
        notes(context).add(text(arguments[0]), text(arguments[2]).toByteArray());
    sqlite3_result_value(context, arguments[1]);
}

} // namespace

void ChangeNotes::addTo(sqlite3* connection) {
    sqlite3_create_function(connection, "alike", -1, SQLITE_UTF8, this, alike, nullptr, nullptr);
    for (const int count : {2, 3})
        sqlite3_create_function(connection, "noted", count, SQLITE_UTF8, this, noted, nullptr, nullptr);
}

void ChangeNotes::clear() {
    taken_.clear();
    places_.clear();
    current_ = -1;
    former_.clear();
}

bool ChangeNotes::follow(int count, sqlite3_value** values) {
    const auto isSame = [](const auto& one, sqlite3_value* other) { return same(one.get(), other); };
    if (std::equal(former_.begin(), former_.end(), values, values + count, isSame)) return true;
    former_.clear();
    for (int i = 0; i < count; ++i) former_.emplace_back(sqlite3_value_dup(values[i]), sqlite3_value_free);
    return false;
}

void ChangeNotes::add(QByteArrayView key) {
    molven::Engine::Noted& noted = taken_[current_];
    ++noted.count;
    if (key.contains('\n'))
        noted.manyLined.append(QString::fromUtf8(key));
    else
        noted.keys.append(key).append('\n');
}

void ChangeNotes::add(QByteArrayView key, const QByteArray& change) {
    const auto known = places_.constFind(change);
    current_ = known == places_.constEnd() ? taken_.size() : *known;
    if (current_ == taken_.size()) {
        places_.insert(change, current_);
        taken_.append({QString::fromUtf8(change), 0, {}, {}});
    }
    add(key);
}

} // namespace molven::sqlite

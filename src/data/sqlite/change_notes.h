#pragma once

#include "data/engine.h"

#include <QByteArray>
#include <QHash>

#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_value;

namespace molven::sqlite {

/// What an update notes of the records that it changes, by the functions of Engine::noted().
class ChangeNotes {
public:
    /// Gives the functions to a connection, which must not outlive this.
    void addTo(sqlite3* connection);
    void clear();
    const QList<molven::Engine::Noted>& taken() const { return taken_; }

    /// Whether these values are those of the record before.
    bool follow(int count, sqlite3_value** values);
    void add(QByteArrayView key);
    void add(QByteArrayView key, const QByteArray& change);

private:
    QList<molven::Engine::Noted> taken_;
    QHash<QByteArray, qsizetype> places_; ///< of the changes in them
    qsizetype current_ = -1;
    std::vector<std::unique_ptr<sqlite3_value, void (*)(sqlite3_value*)>> former_; ///< values of the record before
};

} // namespace molven::sqlite

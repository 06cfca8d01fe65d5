#pragma once

#include <QString>

struct sqlite3;

namespace molven {

/// A database file that stays as it is while this lives: whoever wants to commit to it waits.
class HeldFile {
public:
    enum class Hold {
        Shared,   ///< any number of programs hold it so
        Reserved, ///< one program holds it, others may read
        Alone     ///< nobody else holds or reads it
    };
    /// Throws DataError, of number DataError::Busy when others do not let go of it in that time.
    explicit HeldFile(const QString& path, Hold hold = Hold::Shared, int waitMs = 10'000);
    ~HeldFile();
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    sqlite3* connection() const { return connection_; }
    const QString& path() const { return path_; }

private:
    const QString path_;
    sqlite3* connection_;
};

} // namespace molven

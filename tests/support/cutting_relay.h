#pragma once

#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

namespace molven::test {

/// Stands between a workstation and a server: kills the workstation in the midst of the n-th message that it sends,
/// of which the server gets the first half.
class CuttingRelay {
public:
    /// `address` is the server's own, by the folder of its socket.
    explicit CuttingRelay(const QString& address);
    ~CuttingRelay();
    CuttingRelay(const CuttingRelay&) = delete;
    CuttingRelay& operator=(const CuttingRelay&) = delete;

    /// What the workstation says in place of `folder`, which begins with the server's address.
    QString through(const QString& folder) const;
    /// Passes the messages of one process on until it has ended; whether it was killed by this.
    bool serve(pid_t station, int killedAt);

private:
    const QString serversFolder_;
    QTemporaryDir own_;
    int listener_;
};

} // namespace molven::test

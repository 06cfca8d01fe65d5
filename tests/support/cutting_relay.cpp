#include "support/cutting_relay.h"

#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <map>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace molven::test {

namespace {

int socketAt(const QString& folder, int (*use)(int, const sockaddr*, socklen_t)) {
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    std::strncpy(place.sun_path, qPrintable(folder + QStringLiteral("/.s.PGSQL.5432")), sizeof place.sun_path - 1);
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    if (use(made, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0)
        throw std::runtime_error(std::strerror(errno));
    return made;
}

/// Hands on what came; false at the end.
bool handOn(int from, int to, double share = 1) {
    char bytes[65536];
    const ssize_t size = read(from, bytes, sizeof bytes);
    if (size <= 0) return false;
    for (ssize_t done = 0, all = static_cast<ssize_t>(static_cast<double>(size) * share); done < all;) {
        const ssize_t written = send(to, bytes + done, static_cast<std::size_t>(all - done), MSG_NOSIGNAL);
        if (written <= 0) return false;
        done += written;
    }
    return true;
}

} // namespace

CuttingRelay::CuttingRelay(const QString& address)
    : serversFolder_(QUrlQuery(QUrl(address)).queryItemValue(QStringLiteral("host"))),
      listener_(socketAt(own_.path(), ::bind)) {
    listen(listener_, 8);
}

CuttingRelay::~CuttingRelay() { close(listener_); }

QString CuttingRelay::through(const QString& folder) const {
    return QString(folder).replace(serversFolder_, own_.path());
}

bool CuttingRelay::serve(pid_t station, int killedAt) {
    std::map<int, int> others; // either end -> the other
    std::vector<int> stations; // ends towards the workstation
    int messages = 0, status = 0;
    while (waitpid(station, &status, WNOHANG) == 0) {
        std::vector<pollfd> sockets{{listener_, POLLIN, 0}};
        for (const auto& [end, other] : others) sockets.push_back({end, POLLIN, 0});
        poll(sockets.data(), sockets.size(), 5);
        if (sockets[0].revents) {
            const int near = ::accept(listener_, nullptr, nullptr), far = socketAt(serversFolder_, ::connect);
            others[near] = far;
            others[far] = near;
            stations.push_back(near);
        }
        for (std::size_t i = 1; i < sockets.size(); ++i) {
            const int end = sockets[i].fd;
            if (!sockets[i].revents || !others.contains(end)) continue;
            const bool isSent = std::find(stations.begin(), stations.end(), end) != stations.end();
            const bool isLast = isSent && ++messages == killedAt;
            if (isLast) kill(station, SIGKILL);
            if (handOn(end, others[end], isLast ? 0.5 : 1) && !isLast) continue;
            const int other = others[end];
            others.erase(end);
            others.erase(other);
            close(end);
            close(other);
        }
    }
    for (const auto& [end, other] : others) close(end);
    return WIFSIGNALED(status);
}

} // namespace molven::test

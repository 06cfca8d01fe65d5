#include "data/server_login.h"

#include <QHash>
#include <QMutex>
#include <QThread>

namespace molven::server_login {

namespace {

struct Login {
    QMutex mutex; ///< windows and what counts behind them use the same
    QHash<QString, QString> passwords;
    Asker asker;
    QThread* thread = nullptr;
};

Login& login() {
    static Login* const kept = new Login; // connections are made until the very end of the process
    return *kept;
}

} // namespace

void setAsker(Asker asker) {
    login().asker = std::move(asker);
    login().thread = QThread::currentThread();
}

QString known(const QString& address) {
    const QMutexLocker lock(&login().mutex);
    return login().passwords.value(address);
}

bool ask(const QString& address, const QString& place, bool wasWrong) {
    if (!login().asker || QThread::currentThread() != login().thread) return false;
    const std::optional<QString> given = login().asker(place, wasWrong);
    if (!given || given->isEmpty()) return false;
    const QMutexLocker lock(&login().mutex);
    login().passwords.insert(address, *given);
    return true;
}

void forget(const QString& address) {
    const QMutexLocker lock(&login().mutex);
    login().passwords.remove(address);
}

} // namespace molven::server_login

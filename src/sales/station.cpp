#include "sales/station.h"

#include "data/journal.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>

namespace molven::station {

namespace {

constexpr int Longest = 60; // leaves room for the process in a field of 80

QString place() { return (author::workstation() + u'/' + author::systemUser()).left(Longest) + u'/'; }

bool isRunning(qint64 process) { return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM; }

} // namespace

QString current() { return place() + QString::number(QCoreApplication::applicationPid()); }

bool isGone(const QString& program) {
    if (!program.startsWith(place())) return false;
    const qint64 process = program.mid(place().size()).toLongLong();
    return process > 0 && !isRunning(process);
}

} // namespace molven::station

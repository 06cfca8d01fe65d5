#include "support/processes.h"

#include <QFile>
#include <QTemporaryDir>

#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>

#include <cerrno>

/// Stands in the place of the C library's own, for the toolkit as well.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    if (!molven::test::Killer::mayRename()) return errno = EACCES, -1;
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

namespace molven::test {

namespace {

void mountAt(const QString& place, const QString& source, const char* type, unsigned long flags,
             const QString& options) {
    if (mount(source.toUtf8().constData(), place.toUtf8().constData(), type, flags, options.toUtf8().constData()) != 0)
        throw std::runtime_error("this test must be allowed to mount file systems: run it as root");
}

/// Runs work in a process with mounts of its own.
int withMounts(const std::function<void(const QString& place)>& work) {
    const QTemporaryDir place;
    return ended(station([&] {
        if (unshare(CLONE_NEWNS) == 0) mountAt(QStringLiteral("/"), {}, nullptr, MS_REC | MS_PRIVATE, {});
        work(place.path());
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }));
}

} // namespace

int atOtherMount(const QString& folder, const std::function<void(const QString&)>& work) {
    return withMounts([&](const QString& place) {
        mountAt(place, folder, nullptr, MS_BIND, {});
        mountAt(folder, QStringLiteral("tmpfs"), "tmpfs", 0, {}); // the first place shows nothing any more
        work(place);
    });
}

int onSmallDisk(int kilobytes, const std::function<void(const QString&)>& work) {
    return withMounts([&](const QString& place) {
        mountAt(place, QStringLiteral("tmpfs"), "tmpfs", 0, QStringLiteral("size=%1k").arg(kilobytes));
        work(place);
    });
}

void fillDisk(const QString& folder) {
    QFile ballast(folder + QStringLiteral("/lest"));
    ASSERT_TRUE(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (ballast.write(QByteArray(4096, 'x')) > 0) {
    }
}

} // namespace molven::test

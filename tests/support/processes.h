#pragma once

#include <QString>

#include <gtest/gtest.h>

#include <csignal>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace molven::test {

/// Runs a workstation in a process of its own; answers how it ended.
template <class Work>
pid_t station(const Work& work) {
    const pid_t child = fork();
    if (child != 0) return child;
    try {
        work();
        _exit(0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        _exit(1);
    }
}

inline int ended(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

/// Kills this process at the n-th time that the data engine touches the disk, in the midst of a write included.
class Killer {
public:
    static void arm(int n) {
        left_ = n;
        sqlite3_vfs* disk = sqlite3_vfs_find(nullptr);
        for (const char* call : {"pwrite", "pwrite64"}) {
            const auto original = disk->xGetSystemCall(disk, call);
            if (!original) continue;
            (call[6] ? write64_ : write_) = reinterpret_cast<Write>(original);
            disk->xSetSystemCall(disk, call,
                                 reinterpret_cast<sqlite3_syscall_ptr>(call[6] ? &killingWrite64 : &killingWrite));
        }
        unlink_ = reinterpret_cast<Unlink>(disk->xGetSystemCall(disk, "unlink"));
        disk->xSetSystemCall(disk, "unlink", reinterpret_cast<sqlite3_syscall_ptr>(&killingUnlink));
    }

    /// Kills it right before the n-th time that it renames a file or a folder, whoever asks for it.
    static void armAtRenames(int n) { renames_ = n; }
    /// Has that one refused instead.
    static void refuseRename(int n) { refused_ = n; }
    static bool mayRename() {
        if (--renames_ == 0) kill(getpid(), SIGKILL);
        return --refused_ != 0;
    }

private:
    using Write = ssize_t (*)(int, const void*, size_t, off_t);
    using Unlink = int (*)(const char*);

    static bool isLast() { return --left_ == 0; }
    static ssize_t through(Write write, int file, const void* bytes, size_t size, off_t at) {
        if (!isLast()) return write(file, bytes, size, at);
        write(file, bytes, size / 2, at); // torn
        kill(getpid(), SIGKILL);
        return -1;
    }
    static ssize_t killingWrite(int file, const void* bytes, size_t size, off_t at) {
        return through(write_, file, bytes, size, at);
    }
    static ssize_t killingWrite64(int file, const void* bytes, size_t size, off_t at) {
        return through(write64_, file, bytes, size, at);
    }
    static int killingUnlink(const char* path) {
        if (isLast()) kill(getpid(), SIGKILL);
        return unlink_(path);
    }

    static inline int left_ = 0, renames_ = 0, refused_ = 0;
    static inline Write write_ = nullptr, write64_ = nullptr;
    static inline Unlink unlink_ = nullptr;
};

/// Runs work in a process that sees `folder` at another place instead, as another drive letter shows a share; the
/// place is gone with the process. Answers how it ended; a failed expectation ends it with 1. Needs the right to mount.
int atOtherMount(const QString& folder, const std::function<void(const QString& place)>& work);

/// Runs work in a process that has a disk of so many kilobytes; the disk is gone with the process.
int onSmallDisk(int kilobytes, const std::function<void(const QString& place)>& work);

/// Leaves no room on the disk of that folder.
void fillDisk(const QString& folder);

} // namespace molven::test

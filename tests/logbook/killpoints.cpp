// SPDX-License-Identifier: MIT
// Ends the program it is linked into with SIGKILL at the point VARDA_TEST_KILL, counted from 1: each
// message to or from the Bluetooth service (so each request and each notification) and each step of
// SQLite on the disk. With VARDA_TEST_FULL there is no room any more from that write on. The libraries find these functions before the C library's; the work is done by
// system calls, since the C library's functions of these names are hidden by these.
#include "killpoints.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace {

std::atomic_int reached = 0;
std::atomic_int syncs = 0;
std::atomic_int writes = 0;

int numberIn(const char *name)
{
    const char *text = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return text ? std::atoi(text) : 0;    // NOLINT(cert-err34-c)
}

/** Whether the program ends here. */
bool isDeadly()
{
    static const int kPoint = numberIn("VARDA_TEST_KILL");
    return ++reached == kPoint;
}

/** Whether there is no room for this write. */
bool isFull()
{
    static const int kPoint = numberIn("VARDA_TEST_FULL");
    return ++writes >= kPoint && kPoint > 0;
}

void end()
{
    ::kill(::getpid(), SIGKILL);
}

} // namespace

int KillPoints::count()
{
    return reached;
}

int KillPoints::syncCount()
{
    return syncs;
}

int KillPoints::writeCount()
{
    return writes;
}

extern "C" {

// The C library's headers name the parameters with underscores.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

ssize_t sendmsg(int fd, const msghdr *message, int flags)
{
    if (isDeadly())
        end();
    return ::syscall(SYS_sendmsg, fd, message, flags);
}

ssize_t recvmsg(int fd, msghdr *message, int flags)
{
    const ssize_t received = ::syscall(SYS_recvmsg, fd, message, flags);
    if (received > 0 && isDeadly())
        end();
    return received;
}

ssize_t pwrite64(int fd, const void *bytes, size_t size, off64_t place)
{
    if (isDeadly()) { // in the middle of it
        ::syscall(SYS_pwrite64, fd, bytes, size / 2, place);
        end();
    }
    if (isFull()) {
        errno = ENOSPC;
        return -1;
    }
    return ::syscall(SYS_pwrite64, fd, bytes, size, place);
}

int fdatasync(int fd)
{
    ++syncs;
    if (isDeadly())
        end();
    return int(::syscall(SYS_fdatasync, fd));
}

int fsync(int fd)
{
    ++syncs;
    if (isDeadly())
        end();
    return int(::syscall(SYS_fsync, fd));
}

int ftruncate64(int fd, off64_t size) noexcept
{
    if (isDeadly())
        end();
    return int(::syscall(SYS_ftruncate, fd, size));
}

int unlink(const char *name) noexcept
{
    if (isDeadly())
        end();
    return int(::syscall(SYS_unlink, name));
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

} // extern "C"

// SPDX-License-Identifier: MIT
// A clock that runs VARDA_TEST_SPEED times as fast, for the program it is linked into: the
// libraries that Qt's timers rest on (Qt, GLib, libdbus) find these functions before the C
// library's. Monotonic time is multiplied and waiting divided, so time-outs keep their proportions
// and two programs with the same factor agree. The time of day stays what it is. The real work is
// done by system calls, since the C library's functions of these names are hidden by these.
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

namespace {

using Nanoseconds = __int128;

constexpr long kSecond = 1'000'000'000;
constexpr size_t kSignalSetSize = _NSIG / 8;

long speed()
{
    static const long kFactor = [] {
        const char *text = std::getenv("VARDA_TEST_SPEED"); // NOLINT(concurrency-mt-unsafe)
        const long value = text ? std::atol(text) : 1;
        return value > 0 ? value : 1;
    }();
    return kFactor;
}

bool isScaled(clockid_t clock)
{
    return clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_RAW
           || clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_BOOTTIME;
}

Nanoseconds nanoseconds(const timespec &time)
{
    return Nanoseconds(time.tv_sec) * kSecond + time.tv_nsec;
}

timespec asTimespec(Nanoseconds time)
{
    return {time_t(time / kSecond), long(time % kSecond)};
}

timespec faster(const timespec &time)
{
    return asTimespec(nanoseconds(time) * speed());
}

// Rounded up: nobody wakes before time.
timespec shorter(const timespec &time)
{
    return asTimespec((nanoseconds(time) + speed() - 1) / speed());
}

int sleepFor(const timespec *time, timespec *left)
{
    const timespec real = shorter(*time);
    timespec realLeft{};
    const long result = ::syscall(SYS_nanosleep, &real, &realLeft);
    if (result != 0 && left)
        *left = faster(realLeft);
    return int(result);
}

} // namespace

extern "C" {

// The C library's headers name the parameters with underscores.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const long result = ::syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && isScaled(clock))
        *time = faster(*time);
    return int(result);
}

int ppoll(pollfd *fds, nfds_t count, const timespec *timeout, const sigset_t *mask)
{
    timespec real{};
    if (timeout)
        real = shorter(*timeout);
    return int(::syscall(SYS_ppoll, fds, count, timeout ? &real : nullptr, mask, kSignalSetSize));
}

int poll(pollfd *fds, nfds_t count, int timeout)
{
    const timespec time = asTimespec(Nanoseconds(timeout) * 1'000'000);
    return ppoll(fds, count, timeout < 0 ? nullptr : &time, nullptr);
}

int nanosleep(const timespec *time, timespec *left)
{
    return sleepFor(time, left);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec *time, timespec *left)
{
    if (!isScaled(clock))
        return ::syscall(SYS_clock_nanosleep, clock, flags, time, left) == 0 ? 0 : errno;
    if (!(flags & TIMER_ABSTIME))
        return sleepFor(time, left) == 0 ? 0 : errno;
    const timespec real = shorter(*time);
    return ::syscall(SYS_clock_nanosleep, clock, flags, &real, nullptr) == 0 ? 0 : errno;
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

} // extern "C"

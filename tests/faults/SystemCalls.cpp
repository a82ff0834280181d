// These definitions stand in front of the C library's. A sleep takes no time here and moves the clock a
// second on, so that all waiting is over at once.
#include "SystemCalls.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace faults {
namespace {

bool active = false;
Plan plan;
Outcome outcome;
std::atomic<long> sleeps{0};

bool IsTheOne() noexcept {
    return active && ++outcome.calls == plan.n;
}

/// Whether this call has to fail.
bool Strikes(bool isRemoval) noexcept {
    const bool now = IsTheOne();
    outcome.struck = outcome.struck || now;
    if (now && plan.kind == Kind::Kill)
        ::raise(SIGKILL);
    const bool fails =
        (now && plan.kind == Kind::Fail) || (active && outcome.struck && plan.kind == Kind::FailOn);
    outcome.cleanUpFailed = outcome.cleanUpFailed || (fails && isRemoval);
    if (fails)
        errno = plan.error;
    return fails;
}

} // namespace

void Begin(const Plan& next) noexcept {
    plan = next;
    outcome = Outcome();
    active = true;
}

Outcome End() noexcept {
    active = false;
    return outcome;
}

} // namespace faults

// The C library's own function of that name.
#define ORIGINAL(name) reinterpret_cast<decltype(&::name)>(::dlsym(RTLD_NEXT, #name))

#define COUNTED(Result, name, parameters, arguments)                                                         \
    extern "C" Result name parameters noexcept(noexcept(::name arguments)) {                                 \
        static const auto original = ORIGINAL(name);                                                         \
        return faults::Strikes(#name[0] == 'u' && #name[1] == 'n') ? -1 : original arguments;                \
    }

// open, openat and fcntl have one more argument for some calls; it may always be passed on.
#define COUNTED_WITH_REST(name, parameters, last, Rest, ...)                                                 \
    extern "C" int name parameters {                                                                         \
        static const auto original = ORIGINAL(name);                                                         \
        std::va_list list;                                                                                   \
        va_start(list, last);                                                                                \
        const auto rest = va_arg(list, Rest);                                                                \
        va_end(list);                                                                                        \
        return faults::Strikes(false) ? -1 : original(__VA_ARGS__, rest);                                    \
    }

COUNTED_WITH_REST(open, (const char* path, int flags, ...), flags, mode_t, path, flags)
COUNTED_WITH_REST(openat, (int folder, const char* path, int flags, ...), flags, mode_t, folder, path, flags)
COUNTED_WITH_REST(fcntl, (int file, int command, ...), command, void*, file, command)
COUNTED(int, chmod, (const char* path, mode_t mode), (path, mode))
COUNTED(int, faccessat, (int at, const char* path, int mode, int flags), (at, path, mode, flags))
COUNTED(int, fallocate, (int file, int mode, off_t at, off_t size), (file, mode, at, size))
COUNTED(int, fchmod, (int file, mode_t mode), (file, mode))
COUNTED(int, fchown, (int file, uid_t user, gid_t group), (file, user, group))
COUNTED(int, flock, (int file, int operation), (file, operation))
COUNTED(int, fstat, (int file, struct stat* status), (file, status))
COUNTED(int, fstatat, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags))
COUNTED(int, ftruncate, (int file, off_t size), (file, size))
COUNTED(int, futimens, (int file, const timespec* times), (file, times))
COUNTED(int, linkat, (int from, const char* a, int to, const char* b, int flags), (from, a, to, b, flags))
COUNTED(int, mkdir, (const char* path, mode_t mode), (path, mode))
COUNTED(int, mkdirat, (int at, const char* path, mode_t mode), (at, path, mode))
COUNTED(int, renameat, (int from, const char* a, int to, const char* b), (from, a, to, b))
COUNTED(int, renameat2, (int from, const char* a, int to, const char* b, unsigned how), (from, a, to, b, how))
COUNTED(int, stat, (const char* path, struct stat* status), (path, status))
COUNTED(int, unlinkat, (int at, const char* path, int flags), (at, path, flags))
COUNTED(int, utimensat, (int at, const char* path, const timespec* times, int how), (at, path, times, how))
COUNTED(ssize_t, fgetxattr, (int file, const char* name, void* to, std::size_t size), (file, name, to, size))
COUNTED(ssize_t, flistxattr, (int file, char* list, std::size_t size), (file, list, size))
COUNTED(ssize_t, pread, (int file, void* bytes, std::size_t size, off_t at), (file, bytes, size, at))
COUNTED(ssize_t, readlinkat, (int at, const char* path, char* to, std::size_t size), (at, path, to, size))

// Asked before a file is made without a name.
extern "C" int access(const char* path, int mode) noexcept {
    static const auto original = ORIGINAL(access);
    return faults::Strikes(false) || (faults::active && faults::plan.needsNames) ? -1 : original(path, mode);
}

extern "C" ssize_t pwritev(int file, const iovec* parts, int count, off_t at) {
    static const auto original = ORIGINAL(pwritev);
    const long before = faults::outcome.calls;
    if (faults::Strikes(false))
        return -1;
    if (faults::plan.kind != faults::Kind::Short || before + 1 != faults::plan.n)
        return original(file, parts, count, at);
    const iovec half{parts->iov_base, (parts->iov_len + 1) / 2};
    return original(file, &half, 1, at);
}

extern "C" ssize_t getrandom(void* bytes, std::size_t size,
                             unsigned flags) noexcept(noexcept(::getrandom(bytes, size, flags))) {
    static const auto original = ORIGINAL(getrandom);
    if (faults::Strikes(false))
        return -1;
    if (!faults::active || !std::exchange(faults::plan.firstNameIsKnown, false))
        return original(bytes, size, flags);
    std::memset(bytes, 0, size);
    return static_cast<ssize_t>(size);
}

// What goes through is not carried out: it takes long, and nothing here would show it.
extern "C" int fsync(int file) {
    static const auto original = ORIGINAL(fstat);
    struct stat status {};
    const bool isFile = original(file, &status) == 0 && S_ISREG(status.st_mode);
    const bool fails = faults::Strikes(false);
    faults::outcome.flushFailed = isFile ? fails : faults::outcome.flushFailed;
    return fails ? -1 : 0;
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static const auto original = ORIGINAL(clock_gettime);
    const int result = original(clock, time);
    time->tv_sec += clock == CLOCK_MONOTONIC ? faults::sleeps.load() : 0;
    return result;
}

extern "C" int nanosleep(const timespec*, timespec*) {
    ++faults::sleeps;
    return 0;
}

extern "C" int clock_nanosleep(clockid_t clock, int, const timespec* until, timespec*) {
    timespec now{};
    ::clock_gettime(clock, &now);
    faults::outcome.secondsSlept += std::lround(std::difftime(until->tv_sec, now.tv_sec) +
                                                static_cast<double>(until->tv_nsec - now.tv_nsec) / 1e9);
    ++faults::sleeps;
    return 0;
}

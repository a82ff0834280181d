// These definitions stand in front of the C library's. A sleep takes no time here and moves the clock on by
// as much as was asked for.
#include "SystemCalls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace faults {
namespace {

bool active = false;
Plan plan;
Outcome outcome;
constexpr std::int64_t second = 1'000'000'000; // in nanoseconds
std::atomic<std::int64_t> slept{0};            // nanoseconds
off_t reserved = 0;
std::map<ino_t, bool> unflushed; // what was changed since it was flushed last, and whether in place

/// Whether the call of that name has to fail.
bool Strikes(std::string_view name) noexcept {
    if (!active)
        return false;
    const bool now = ++outcome.calls == plan.n;
    if (now) {
        outcome.name = name;
        outcome.struck = true;
    }
    if (now && plan.kind == Kind::Kill)
        ::raise(SIGKILL);
    if (plan.kind == Kind::Meddle && (now || outcome.calls == plan.n + 1)) {
        active = false;
        plan.meddle();
        active = true;
    }
    const bool goesOn = outcome.struck &&
                        (plan.kind == Kind::FailOn || (plan.kind == Kind::FailAlike && name == outcome.name));
    const bool isForAName = plan.needsNames && name == "access"; // asked before a file is made without one
    const bool fails = goesOn || isForAName || (now && plan.kind == Kind::Fail);
    outcome.cleanUpFailed = outcome.cleanUpFailed || (fails && name == "unlinkat");
    if (fails)
        errno = plan.error;
    return fails;
}

// The C library's own function of that name. Where long offsets and times were asked for, a 32-bit one has it
// under another name, and the headers have given that name to the definition that stands in front of it.
void* Original(const char* name) noexcept {
    for (const auto& [before, after] :
         {std::pair("__", "64_time64"), {"__", "_time64"}, {"__", "64"}, {"", "64"}}) {
        char other[40];
        std::snprintf(other, sizeof other, "%s%s%s", before, name, after);
        if (void* const found = ::dlsym(RTLD_NEXT, other))
            return found;
    }
    return ::dlsym(RTLD_NEXT, name);
}

} // namespace

Outcome During(const Plan& next, const std::function<void()>& work) {
    plan = next;
    outcome = Outcome();
    reserved = 0;
    unflushed.clear();
    active = true;
    work();
    active = false;
    plan = Plan();
    // A failed flush of a folder is not reported; the substitute for renameat2 has to flush it, too.
    const bool isExcused = outcome.struck && outcome.name != "renameat2";
    for (const auto& [inode, isInPlace] : unflushed)
        outcome.isUnflushed = outcome.isUnflushed || isInPlace || !isExcused;
    return outcome;
}

} // namespace faults

#define ORIGINAL(name) reinterpret_cast<decltype(&::name)>(faults::Original(#name))

namespace faults {
namespace {

/// Of the folder or file itself if the path is empty.
struct stat StatusOf(int at, std::string_view path) {
    static const auto original = ORIGINAL(fstatat);
    struct stat status {};
    original(at, std::string(path).c_str(), &status, AT_EMPTY_PATH);
    return status;
}

/// What takes the place of its old content, as the hard link shows, may not meet a full disk.
void Write(int file, off_t end) {
    if (!active)
        return;
    const struct stat status = StatusOf(file, "");
    const bool isInPlace = status.st_nlink > 1;
    unflushed[status.st_ino] = isInPlace;
    const bool isFirst = !outcome.struck || (plan.error == EINTR && outcome.name == "fallocate");
    outcome.isUnreserved =
        outcome.isUnreserved || (isInPlace && isFirst && end > std::max(status.st_size, reserved));
}

/// A name was given: what it stands for has to be on disk, and the folder has to follow.
void Enter(int at, std::string_view path) {
    if (!active)
        return;
    const struct stat entry = StatusOf(at, path);
    outcome.isUnflushed =
        outcome.isUnflushed || (S_ISREG(entry.st_mode) && unflushed.count(entry.st_ino) > 0);
    unflushed[StatusOf(at, path.substr(0, path.rfind('/') + 1)).st_ino] = false;
}

} // namespace
} // namespace faults

#define COUNTED_OR(Result, failure, name, parameters, arguments, ...)                                        \
    extern "C" Result name parameters noexcept(noexcept(::name arguments)) {                                 \
        static const auto original = ORIGINAL(name);                                                         \
        const auto result = faults::Strikes(#name) ? (failure) : original arguments;                         \
        if (!result)                                                                                         \
            __VA_ARGS__;                                                                                     \
        return result;                                                                                       \
    }
#define COUNTED_THEN(Result, name, parameters, arguments, then)                                              \
    COUNTED_OR(Result, -1, name, parameters, arguments, then)
#define COUNTED(Result, name, parameters, arguments)                                                         \
    COUNTED_THEN(Result, name, parameters, arguments, static_cast<void>(0))

// open, openat and fcntl have one more argument for some calls; it may always be passed on.
#define COUNTED_WITH_REST(name, parameters, last, Rest, ...)                                                 \
    extern "C" int name parameters {                                                                         \
        static const auto original = ORIGINAL(name);                                                         \
        std::va_list list;                                                                                   \
        va_start(list, last);                                                                                \
        const auto rest = va_arg(list, Rest);                                                                \
        va_end(list);                                                                                        \
        return faults::Strikes(#name) ? -1 : original(__VA_ARGS__, rest);                                    \
    }

COUNTED_WITH_REST(open, (const char* path, int flags, ...), flags, mode_t, path, flags)
COUNTED_WITH_REST(openat, (int folder, const char* path, int flags, ...), flags, mode_t, folder, path, flags)
COUNTED_WITH_REST(fcntl, (int file, int command, ...), command, void*, file, command)
COUNTED(int, access, (const char* path, int mode), (path, mode))
COUNTED(int, chmod, (const char* path, mode_t mode), (path, mode))
COUNTED(int, faccessat, (int at, const char* path, int mode, int flags), (at, path, mode, flags))
COUNTED_THEN(int, fallocate, (int file, int mode, off_t at, off_t size), (file, mode, at, size),
             faults::reserved = at + size)
COUNTED(int, fchmod, (int file, mode_t mode), (file, mode))
COUNTED(int, fchown, (int file, uid_t user, gid_t group), (file, user, group))
COUNTED(int, flock, (int file, int operation), (file, operation))
COUNTED_THEN(int, fstat, (int file, struct stat* status), (file, status),
             if (faults::plan.size != 0) status->st_size = faults::plan.size)
COUNTED(int, fstatat, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags))
COUNTED(int, ftruncate, (int file, off_t size), (file, size))
COUNTED(int, futimens, (int file, const timespec* times), (file, times))
COUNTED_THEN(int, linkat, (int from, const char* a, int to, const char* b, int flags),
             (from, a, to, b, flags), faults::Enter(to, b))
COUNTED_THEN(int, mkdir, (const char* path, mode_t mode), (path, mode), faults::Enter(AT_FDCWD, path))
COUNTED_THEN(int, mkdirat, (int at, const char* path, mode_t mode), (at, path, mode), faults::Enter(at, path))
COUNTED_THEN(int, renameat, (int from, const char* a, int to, const char* b), (from, a, to, b),
             faults::Enter(to, b))
COUNTED_THEN(int, renameat2, (int from, const char* a, int to, const char* b, unsigned how),
             (from, a, to, b, how), faults::Enter(to, b))
COUNTED(int, stat, (const char* path, struct stat* status), (path, status))
COUNTED_THEN(int, statfs, (const char* path, struct statfs* system), (path, system),
             if (faults::plan.fileSystem != 0)
                 system->f_type = static_cast<decltype(system->f_type)>(faults::plan.fileSystem))
COUNTED(int, unlinkat, (int at, const char* path, int flags), (at, path, flags))
COUNTED(int, utimensat, (int at, const char* path, const timespec* times, int how), (at, path, times, how))
COUNTED(int, fremovexattr, (int file, const char* name), (file, name))
COUNTED(int, fsetxattr, (int file, const char* name, const void* value, std::size_t size, int how),
        (file, name, value, size, how))
COUNTED(ssize_t, fgetxattr, (int file, const char* name, void* to, std::size_t size), (file, name, to, size))
COUNTED(ssize_t, flistxattr, (int file, char* list, std::size_t size), (file, list, size))
COUNTED(ssize_t, pread, (int file, void* bytes, std::size_t size, off_t at), (file, bytes, size, at))
COUNTED(ssize_t, readlinkat, (int at, const char* path, char* to, std::size_t size), (at, path, to, size))
COUNTED_OR(DIR*, nullptr, fdopendir, (int folder), (folder), static_cast<void>(0))
COUNTED_OR(dirent*, nullptr, readdir, (DIR * folder), (folder), static_cast<void>(0))

extern "C" ssize_t pwritev(int file, const iovec* parts, int count, off_t at) {
    static const auto original = ORIGINAL(pwritev);
    const long before = faults::outcome.calls;
    if (faults::Strikes("pwritev"))
        return -1;
    off_t end = at;
    for (int i = 0; i < count; ++i)
        end += static_cast<off_t>(parts[i].iov_len);
    faults::Write(file, end);
    if (faults::plan.kind != faults::Kind::Short || before + 1 != faults::plan.n)
        return original(file, parts, count, at);
    const iovec half{parts->iov_base, (parts->iov_len + 1) / 2};
    return original(file, &half, 1, at);
}

extern "C" ssize_t getrandom(void* bytes, std::size_t size,
                             unsigned flags) noexcept(noexcept(::getrandom(bytes, size, flags))) {
    static const auto original = ORIGINAL(getrandom);
    if (faults::Strikes("getrandom"))
        return -1;
    if (!faults::active || !std::exchange(faults::plan.firstNameIsKnown, false))
        return original(bytes, size, flags);
    std::memset(bytes, 0, size);
    return static_cast<ssize_t>(size);
}

// What goes through is not carried out: it takes long, and nothing here would show it.
extern "C" int fsync(int file) {
    if (faults::Strikes("fsync"))
        return -1;
    faults::unflushed.erase(faults::StatusOf(file, "").st_ino);
    ++faults::outcome.flushes;
    return 0;
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static const auto original = ORIGINAL(clock_gettime);
    if (clock != CLOCK_MONOTONIC)
        return original(clock, time);
    const std::int64_t now = faults::slept;
    time->tv_sec = static_cast<std::time_t>(1 + now / faults::second);
    time->tv_nsec = static_cast<long>(now % faults::second);
    return 0;
}

// Within the C++ library, clock_gettime may be another function than here.
std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return time_point(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

extern "C" int nanosleep(const timespec* time, timespec*) {
    const std::int64_t nanoseconds = time->tv_sec * faults::second + time->tv_nsec;
    faults::slept += nanoseconds;
    faults::outcome.waited += std::chrono::nanoseconds(nanoseconds);
    return 0;
}

extern "C" int clock_nanosleep(clockid_t clock, int, const timespec* until, timespec*) {
    static bool isInterrupted = false;
    if ((isInterrupted = !isInterrupted)) // every other time
        return EINTR;
    timespec now{};
    ::clock_gettime(clock, &now);
    const std::int64_t nanoseconds =
        (until->tv_sec - now.tv_sec) * faults::second + until->tv_nsec - now.tv_nsec;
    faults::slept += nanoseconds;
    faults::outcome.secondsSlept += static_cast<long>((nanoseconds + faults::second / 2) / faults::second);
    return 0;
}

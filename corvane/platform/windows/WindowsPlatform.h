// The platform's operations on Windows. What is not a `using` declaration is a thin wrapper around the real
// operation of that name. Not a public header: it includes <windows.h>.
#pragma once

#include <corvane/detail/FileState.h>
#include <corvane/platform/ProfileChange.h>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <cstdarg>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/utime.h>
#include <type_traits>
#include <vector>
#include <wchar.h>
#include <windows.h>

namespace corvane::platform {

using ::GetLastError;
using ::SetLastError;
using ::Sleep;

using ::_wcsicmp;
using ::_wcsnicmp;
using ::_wstat64;
using ::_wutime64;
using _stat64 = struct ::_stat64;

using ::CopyFileW;
using ::GetPrivateProfileSectionA;
using ::GetPrivateProfileStringA;
using ::MultiByteToWideChar;

using ::FARPROC;
using ::GetModuleHandleW;
using ::GetProcAddress;
using ::HKEY;
using ::HMODULE;
using ::LSTATUS;
using ::RegCloseKey;
using ::RegCreateKeyExW;
using ::RegDeleteKeyExW; // only for its type: it is looked up at the first call
using ::RegDeleteKeyW;
using ::RegEnumKeyExW;
using ::RegEnumValueW;
using ::RegOpenKeyExW;
using ::RegQueryInfoKeyW;
using ::RegSetValueExW;

template <class T>
T* ReadPointerAcquire(T* const volatile* pointer) noexcept {
#ifdef __GNUC__ // its headers lack the operation
    return __atomic_load_n(pointer, __ATOMIC_ACQUIRE);
#else
    return static_cast<T*>(::ReadPointerAcquire(reinterpret_cast<void* const volatile*>(pointer)));
#endif
}

template <class T>
T* InterlockedExchangePointer(T* volatile* pointer, std::common_type_t<T*> value) noexcept {
    return static_cast<T*>(::InterlockedExchangePointer(reinterpret_cast<void* volatile*>(pointer), value));
}

/// The lower-case form of a code unit outside ASCII, independent of the locale.
wchar LowerInvariant(wchar unit) noexcept;

/// The library's own formatter: log lines read the same on every platform.
int _vsnwprintf(wchar* buffer, std::size_t count, const wchar* format, std::va_list arguments) noexcept;

/// The real operation; a file that a killed process left under another name is put back first.
int _waccess(const wchar* path, int mode);

/// The state of the file at `path`; `error` is of the platform's numbers.
FileState ExamineFile(const wchar* path) noexcept;

/// Whether the times of the file at `path` may come from another machine's clock. True also when it cannot
/// be known.
bool HasRemoteClock(const wchar* path) noexcept;

/// The longest section, tag or value that can be written, in bytes. The narrow operations convert their texts
/// to counted wide ones, whose byte count, terminator included, has 16 bits. Beyond that limit they truncate
/// a value or remove its tag, and report success.
inline constexpr std::size_t longestProfileText = 32'766;

/// The real operation after a check: throws std::invalid_argument, with nothing written, for what could not
/// be read back, also for its length.
int WritePrivateProfileStringA(const char* section, const char* tag, const char* value, const char* file);

/// The real operation, once nobody is replacing the file. Only used for deletions, which need no checks.
int WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value, const wchar* file);

/// Makes all changes in order, or none: readers, even after a crash, find the file before or after all of
/// them. The real operation makes them in a copy, which then replaces the file. Throws like the write of one
/// value; 0, with the error in GetLastError and the file unchanged, on failure.
int WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file);

/// Shortens waits for locks on Linux. The real operations never wait.
class BriefWaits {
public:
    explicit BriefWaits(bool) noexcept {}
};

/// A load's consistent view of its file on Linux. The real operations read the file again for each value.
class LoadScope {
public:
    LoadScope() noexcept {} // NOLINT: not trivial, so that the scope counts as used
};

/// A consistent view of a key's values on Linux. The real operation reads the key again for each value.
class ValueWalk {
public:
    explicit ValueWalk(HKEY) noexcept {}
};

} // namespace corvane::platform

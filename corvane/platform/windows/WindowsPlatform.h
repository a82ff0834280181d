// The platform's own operations. What is declared here and not brought in by `using` is a thin wrapper around
// the real operation of that name. Not a public header: it includes <windows.h>.
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

using ::_waccess;
using ::_wcsicmp;
using ::_wcsnicmp;
using ::_wstat64;
using ::_wutime64;
using _stat64 = struct ::_stat64;

using ::CopyFileW;
using ::GetPrivateProfileSectionA;
using ::GetPrivateProfileStringA;
using ::MultiByteToWideChar;
using ::WritePrivateProfileStringW; // the library only deletes with it, which needs no refusal

using ::FARPROC;
using ::GetModuleHandleW;
using ::GetProcAddress;
using ::HKEY;
using ::HMODULE;
using ::LSTATUS;
using ::RegCloseKey;
using ::RegCreateKeyExW;
using ::RegDeleteKeyExW; // for its type alone: it is looked up when first called
using ::RegDeleteKeyW;
using ::RegEnumKeyExW;
using ::RegEnumValueW;
using ::RegOpenKeyExW;
using ::RegQueryInfoKeyW;
using ::RegSetValueExW;

template <class T>
T* ReadPointerAcquire(T* const volatile* pointer) noexcept {
#ifdef __GNUC__ // whose headers lack the operation
    return __atomic_load_n(pointer, __ATOMIC_ACQUIRE);
#else
    return static_cast<T*>(::ReadPointerAcquire(reinterpret_cast<void* const volatile*>(pointer)));
#endif
}

template <class T>
T* InterlockedExchangePointer(T* volatile* pointer, std::common_type_t<T*> value) noexcept {
    return static_cast<T*>(::InterlockedExchangePointer(reinterpret_cast<void* volatile*>(pointer), value));
}

/// The lower-case form of a code unit outside ASCII, whatever the process's locale is.
wchar LowerInvariant(wchar unit) noexcept;

/// The library's own formatter, so that a log line reads the same on every platform.
int _vsnwprintf(wchar* buffer, std::size_t count, const wchar* format, std::va_list arguments) noexcept;

/// The state of the file at `path`; `error` is of the platform's numbers.
FileState ExamineFile(const wchar* path) noexcept;

/// The longest section, tag or value that can be written, in bytes. The narrow operations hand their texts on
/// as counted wide ones, of which the count of bytes has 16 bits, the terminator included. Beyond that limit
/// a value is cut or its tag removed, and success is reported.
inline constexpr std::size_t longestProfileText = 32'766;

/// The real operation behind a quick refusal: throws std::invalid_argument, with nothing written, for what
/// the file could never give back, the length of a text included.
int WritePrivateProfileStringA(const char* section, const char* tag, const char* value, const char* file);

/// Makes all changes, one after the other, or none: readers, even after a crash, find the file
/// before them or after them. They are made to a copy by the real operation; the copy then takes the file's
/// place. Refusals are those of the write of one value; 0, with the error in GetLastError and the file as it
/// was, also if the copy cannot take its place.
int WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file);

/// Where further attempts at a write wait less for another program's lock. The real operations never wait.
class BriefWaits {
public:
    explicit BriefWaits(bool) noexcept {}
};

/// A load's consistent view of its file on Linux. The real operations read the file anew for each value.
class LoadScope {
public:
    LoadScope() noexcept {} // NOLINT: not trivial, so that the scope counts as used
};

/// A consistent view of a key's values on Linux. The real operation reads the key anew for each
/// value.
class ValueWalk {
public:
    explicit ValueWalk(HKEY) noexcept {}
};

} // namespace corvane::platform

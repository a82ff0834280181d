// The registry as the POSIX layer keeps it: a tree of folders, one text file of values in each. The same
// arguments and statuses as the real operations. All of them may be called from any thread, and no one of
// them throws.
#pragma once

#include <corvane/foundations/Export.h>
#include <corvane/foundations/WideString.h>
#include <corvane/platform/posix/Errors.h>

#include <cstdint>
#include <utility>

namespace corvane::platform {

using HKEY = struct RegistryKeyHandle*;
using HMODULE = struct ModuleHandle*;
using FARPROC = std::intptr_t (*)();
using LSTATUS = std::int32_t;
struct FILETIME;

// The predefined keys have fixed handles that are always open.
// NOLINTBEGIN(performance-no-int-to-ptr, misc-misplaced-const)
inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(0x80000000);
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(0x80000001);
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(0x80000002);
inline const HKEY HKEY_USERS = reinterpret_cast<HKEY>(0x80000003);
inline const HKEY HKEY_PERFORMANCE_DATA = reinterpret_cast<HKEY>(0x80000004);
inline const HKEY HKEY_CURRENT_CONFIG = reinterpret_cast<HKEY>(0x80000005);
inline const HKEY HKEY_DYN_DATA = reinterpret_cast<HKEY>(0x80000006);
// NOLINTEND(performance-no-int-to-ptr, misc-misplaced-const)

inline constexpr ulong REG_SZ = 1;
inline constexpr ulong REG_EXPAND_SZ = 2;
inline constexpr ulong REG_BINARY = 3;
inline constexpr ulong REG_DWORD = 4;
inline constexpr ulong REG_DWORD_BIG_ENDIAN = 5;

inline constexpr ulong KEY_QUERY_VALUE = 0x1;
inline constexpr ulong KEY_SET_VALUE = 0x2;
inline constexpr ulong KEY_CREATE_SUB_KEY = 0x4;
inline constexpr ulong KEY_ENUMERATE_SUB_KEYS = 0x8;
inline constexpr ulong KEY_READ = 0x20019;
inline constexpr ulong KEY_ALL_ACCESS = 0xF003F;

inline constexpr ulong REG_OPTION_NON_VOLATILE = 0;
inline constexpr ulong REG_CREATED_NEW_KEY = 1;
inline constexpr ulong REG_OPENED_EXISTING_KEY = 2;

/// Opens an existing key; a null or empty `subKey` opens `key` anew. The handle is closed with RegCloseKey.
/// The access bits are checked against the file permissions of the key's folder. A root under which nothing
/// was ever written isn't there yet (2).
CORVANE_API LSTATUS RegOpenKeyExW(HKEY key, const wchar* subKey, ulong options, ulong access,
                                  HKEY* opened) noexcept;

/// Opens a key, and makes it and the missing levels above it. Class and security have no meaning here;
/// volatile keys are not supported (87).
CORVANE_API LSTATUS RegCreateKeyExW(HKEY key, const wchar* subKey, ulong reserved, wchar* className,
                                    ulong options, ulong access, const void* security, HKEY* opened,
                                    ulong* disposition) noexcept;

CORVANE_API LSTATUS RegCloseKey(HKEY key) noexcept;

/// Deletes a key with its values; one that has subkeys is refused (5).
LSTATUS RegDeleteKeyW(HKEY key, const wchar* subKey) noexcept;
LSTATUS RegDeleteKeyExW(HKEY key, const wchar* subKey, ulong access, ulong reserved) noexcept;

/// Counts and longest names in characters without terminator, the largest value in bytes. Null arguments are
/// not asked for. Class, security and time are not kept: their results are 0 and must not be asked for.
LSTATUS RegQueryInfoKeyW(HKEY key, wchar* className, ulong* classLength, ulong* reserved, ulong* subKeys,
                         ulong* longestSubKey, ulong* longestClass, ulong* values, ulong* longestValueName,
                         ulong* largestValue, ulong* security, FILETIME* lastWrite) noexcept;

/// The name, type and data of the value at `index`, in the order in which they were first written.
LSTATUS RegEnumValueW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved, ulong* type,
                      unsigned char* data, ulong* size) noexcept;

/// While it lives, RegEnumValueW gives this thread the values of `key` as the last look at them found them,
/// by RegQueryInfoKeyW say: a walk costs one look at the file and has one picture of it. Without it, each
/// call looks whether the values have changed. Scopes may nest; the innermost holds its key.
class ValueWalk {
public:
    explicit ValueWalk(HKEY key) noexcept : m_outer(std::exchange(s_key, key)) {}
    ValueWalk(const ValueWalk&) = delete;
    ValueWalk& operator=(const ValueWalk&) = delete;
    ~ValueWalk() { s_key = m_outer; }

    static bool Holds(HKEY key) noexcept { return key == s_key; }

private:
    static inline thread_local HKEY s_key = nullptr;
    HKEY m_outer;
};

/// The name of the subkey at `index`, in the order of their lower-cased code units.
LSTATUS RegEnumKeyExW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved,
                      wchar* className, ulong* classLength, FILETIME* lastWrite) noexcept;

/// Stores a value, on disk when the call returns. A null name is the key's default value.
LSTATUS RegSetValueExW(HKEY key, const wchar* name, ulong reserved, ulong type, const unsigned char* data,
                       ulong size) noexcept;

/// Knows the one module "Advapi32.dll", and in it RegDeleteKeyExW. Null, with the reason in GetLastError, for
/// anything else.
HMODULE GetModuleHandleW(const wchar* name) noexcept;
FARPROC GetProcAddress(HMODULE module, const char* name) noexcept;

} // namespace corvane::platform

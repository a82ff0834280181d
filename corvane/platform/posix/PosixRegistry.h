// The registry as the POSIX layer keeps it: a tree of folders, one text file of values in each. The same
// arguments and statuses as the real operations. All of them may be called from any thread, and no one of
// them throws. What programs may use of it, to open keys, is in RegistryKeys.h.
#pragma once

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/RegistryKeys.h>

#include <cstdint>
#include <memory>

namespace corvane::posix {
struct OpenKey;
}

namespace corvane::platform {

using HMODULE = struct ModuleHandle*;
using FARPROC = std::intptr_t (*)();
struct FILETIME;

inline constexpr ulong REG_SZ = 1;
inline constexpr ulong REG_EXPAND_SZ = 2;
inline constexpr ulong REG_BINARY = 3;
inline constexpr ulong REG_DWORD = 4;
inline constexpr ulong REG_DWORD_BIG_ENDIAN = 5;

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
    explicit ValueWalk(HKEY key) noexcept;
    ValueWalk(const ValueWalk&) = delete;
    ValueWalk& operator=(const ValueWalk&) = delete;
    ~ValueWalk();

    /// The key behind the handle, if the innermost walk of this thread holds it; otherwise null.
    static posix::OpenKey* Held(HKEY key) noexcept;

private:
    static thread_local const ValueWalk* s_innermost;

    const ValueWalk* m_outer;
    HKEY m_handle;
    std::shared_ptr<posix::OpenKey> m_key; // null if it can't be read
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

// The registry of the Linux layer: a tree of folders with one text file of values in each. Arguments and
// statuses are those of the real operations. Thread-safe; nothing throws. The operations that programs may
// use to open keys are in RegistryKeys.h.
#pragma once

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/RegistryKeys.h>

#include <cstdint>
#include <memory>

namespace corvane::os {
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

/// Deletes a key with its values; one that has subkeys is refused (5). An empty `subKey` means `key` itself,
/// unless that is a root (87).
LSTATUS RegDeleteKeyW(HKEY key, const wchar* subKey) noexcept;
LSTATUS RegDeleteKeyExW(HKEY key, const wchar* subKey, ulong access, ulong reserved) noexcept;

/// Counts, the longest names in characters without terminator, and the largest value in bytes. Null arguments
/// are skipped. Class, security and time are not stored; their arguments must be null.
LSTATUS RegQueryInfoKeyW(HKEY key, wchar* className, ulong* classLength, ulong* reserved, ulong* subKeys,
                         ulong* longestSubKey, ulong* longestClass, ulong* values, ulong* longestValueName,
                         ulong* largestValue, ulong* security, FILETIME* lastWrite) noexcept;

/// The name, type and data of the value at `index`, in the order in which they were first written.
LSTATUS RegEnumValueW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved, ulong* type,
                      unsigned char* data, ulong* size) noexcept;

/// A consistent view of a key's values: during its lifetime, RegEnumValueW on this thread returns the values
/// of `key` as they were last read, for example by RegQueryInfoKeyW, and the file is examined once. Without
/// it, each call checks the file for changes. Scopes may nest; the innermost one counts.
class ValueWalk {
public:
    explicit ValueWalk(HKEY key) noexcept;
    ValueWalk(const ValueWalk&) = delete;
    ValueWalk& operator=(const ValueWalk&) = delete;
    ~ValueWalk();

    /// The key of the handle if the innermost walk of this thread is on it; otherwise null.
    static os::OpenKey* Held(HKEY key) noexcept;

private:
    static thread_local const ValueWalk* s_innermost;

    const ValueWalk* m_outer;
    HKEY m_handle;
    std::shared_ptr<os::OpenKey> m_key; // null if it cannot be read
};

/// The name of the subkey at `index`, in the order of their lower-cased code units.
LSTATUS RegEnumKeyExW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved,
                      wchar* className, ulong* classLength, FILETIME* lastWrite) noexcept;

/// Stores a value durably. A null name is the key's default value.
LSTATUS RegSetValueExW(HKEY key, const wchar* name, ulong reserved, ulong type, const unsigned char* data,
                       ulong size) noexcept;

/// Supports the module "Advapi32.dll" and in it RegDeleteKeyExW. Null, with the error in GetLastError, for
/// anything else.
HMODULE GetModuleHandleW(const wchar* name) noexcept;
FARPROC GetProcAddress(HMODULE module, const char* name) noexcept;

} // namespace corvane::platform

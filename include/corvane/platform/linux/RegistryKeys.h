// Opens keys of the Linux layer's registry, for programs that pass them to the registry_... functions.
// Arguments and statuses are those of the real operations. Thread-safe; nothing throws.
#pragma once

#include <corvane/detail/Export.h>
#include <corvane/foundations/WideString.h>

#include <cstdint>

namespace corvane::platform {

using HKEY = struct RegistryKeyHandle*; ///< an open key, or a root
using LSTATUS = std::int32_t;           ///< 0, or the platform's error number

/// Roots, whose handles are always open.
/// @{
// NOLINTBEGIN(performance-no-int-to-ptr, misc-misplaced-const)
inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(0x80000000);
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(0x80000001);
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(0x80000002);
inline const HKEY HKEY_USERS = reinterpret_cast<HKEY>(0x80000003);
inline const HKEY HKEY_PERFORMANCE_DATA = reinterpret_cast<HKEY>(0x80000004);
inline const HKEY HKEY_CURRENT_CONFIG = reinterpret_cast<HKEY>(0x80000005);
inline const HKEY HKEY_DYN_DATA = reinterpret_cast<HKEY>(0x80000006);
// NOLINTEND(performance-no-int-to-ptr, misc-misplaced-const)
/// @}

/// Access bits.
/// @{
inline constexpr ulong KEY_QUERY_VALUE = 0x1;
inline constexpr ulong KEY_SET_VALUE = 0x2;
inline constexpr ulong KEY_CREATE_SUB_KEY = 0x4;
inline constexpr ulong KEY_ENUMERATE_SUB_KEYS = 0x8;
inline constexpr ulong KEY_READ = 0x20019;
inline constexpr ulong KEY_ALL_ACCESS = 0xF003F;
/// @}

inline constexpr ulong REG_OPTION_NON_VOLATILE = 0; ///< the only supported option
inline constexpr ulong REG_CREATED_NEW_KEY = 1;     ///< a disposition
inline constexpr ulong REG_OPENED_EXISTING_KEY = 2; ///< a disposition

/// Opens an existing key; a null or empty `subKey` reopens `key`. Close the handle with RegCloseKey. The
/// access bits are checked against the file permissions of the key's folder. A root under which nothing was
/// ever written does not exist yet (2).
CORVANE_API LSTATUS RegOpenKeyExW(HKEY key, const wchar* subKey, ulong options, ulong access,
                                  HKEY* opened) noexcept;

/// Opens a key, creating it and its missing parents. Class and security are ignored; volatile keys are not
/// supported (87). `disposition`, if not null, receives whether the key was created.
CORVANE_API LSTATUS RegCreateKeyExW(HKEY key, const wchar* subKey, ulong reserved, wchar* className,
                                    ulong options, ulong access, const void* security, HKEY* opened,
                                    ulong* disposition) noexcept;

/// Closes a handle from one of the two; 6 for a handle that is not open. A root stays open.
CORVANE_API LSTATUS RegCloseKey(HKEY key) noexcept;

} // namespace corvane::platform

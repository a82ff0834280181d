// Single values and keys of the registry, for programs that load the library.
//
// A key is addressed by two arguments. With `key`, an open key handle of the platform's or one of its
// predefined roots, `subKey` is a path below it, and null or empty means `key` itself. With a null `key`,
// `subKey` is a full path: a root name ("HKEY_LOCAL_MACHINE", letter case ignored, may be shortened), a
// backslash, and the path below the root. A path that opens with a backslash lies under HKEY_CURRENT_USER.
//
// None of these functions reports, logs or takes a lock; any thread may call them at any time. `flags` are
// access bits, added to the platform's KEY_READ when the key is opened.
#pragma once

#include <corvane/detail/Export.h>
#include <corvane/foundations/WideString.h>

/// Reads a text (REG_SZ or REG_EXPAND_SZ, not expanded) into `buffer` of `bufferSize` characters, terminator
/// included; a longer text is truncated. Without a readable text, uses `defaultValue`, which may be null.
/// Returns the full length of the text or default in characters, 0 if there is neither; a null `buffer` or
/// size 0 queries the length alone. Never throws.
CORVANE_API corvane::ulong registry_readString(void* key, const corvane::wchar* subKey,
                                               const corvane::wchar* valueName,
                                               const corvane::wchar* defaultValue, corvane::wchar* buffer,
                                               corvane::ulong bufferSize, corvane::ulong flags = 0) noexcept;

/// Reads a 32-bit number (REG_DWORD or REG_DWORD_BIG_ENDIAN); returns `defaultValue` if it cannot be read.
/// `found`, if not null, receives 1 for a number from the registry and 0 for the default. Never throws.
CORVANE_API corvane::ulong registry_readNumber(void* key, const corvane::wchar* subKey,
                                               const corvane::wchar* valueName, corvane::ulong defaultValue,
                                               int* found, corvane::ulong flags = 0) noexcept;

/// Reads a number at `path`, which is relative to a root, under HKEY_LOCAL_MACHINE and, if it is missing
/// there, under HKEY_CURRENT_USER: the machine's number wins. `flags` apply to the first read only. True if
/// there was a number; otherwise `value` is unchanged. Throws std::bad_alloc if out of memory.
CORVANE_API bool registry_readUserNumericValue(const corvane::wchar* path, const corvane::wchar* valueName,
                                               corvane::ulong* value, corvane::ulong flags = 0);

/// Stores a text as REG_SZ with its terminator, creating the key and its parents. Returns 0, -1 if the path
/// has no known root, or the platform's status. A key that was created remains if the value is then refused.
/// Never throws.
CORVANE_API int registry_writeString(void* key, const corvane::wchar* subKey, const corvane::wchar* name,
                                     const corvane::wchar* data) noexcept;

/// Stores a number as REG_DWORD; otherwise as registry_writeString.
CORVANE_API int registry_writeNumber(void* key, const corvane::wchar* subKey, const corvane::wchar* name,
                                     corvane::ulong number) noexcept;

/// Deletes one key that has no subkeys; an empty `subKey` means `key` itself. Returns 0, 32768 if there is
/// nothing to delete (no path, no known root, a root alone), or the platform's status. A `key` of the
/// caller's is closed once the delete was tried, whether it succeeded or not. Never throws.
CORVANE_API int registry_deleteKey(void* key, const corvane::wchar* subKey) noexcept;

/// The names of a key's direct subkeys in the platform's order, separated by `delimiter` (which may be NUL)
/// and terminated by two NULs; null if there are none or they cannot be read. The caller frees the block with
/// `free`. Never throws.
CORVANE_API corvane::wchar* registry_loadSubSectionNames(void* key, const corvane::wchar* subKey,
                                                         corvane::wchar delimiter,
                                                         corvane::ulong flags = 0) noexcept;

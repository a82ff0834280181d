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

#include <corvane/foundations/Export.h>
#include <corvane/foundations/WideString.h>

/// Reads a text (REG_SZ or REG_EXPAND_SZ, not expanded) into `buffer`, which has room for `bufferSize`
/// characters with the terminator; a text that doesn't fit is cut. What can't be read is `defaultValue`,
/// which may be null. Returns the length of the whole text or default in characters, 0 if there is neither: a
/// null `buffer` or size 0 asks for the length alone. Never throws.
CORVANE_API corvane::ulong registry_readString(void* key, const corvane::wchar* subKey,
                                               const corvane::wchar* valueName,
                                               const corvane::wchar* defaultValue, corvane::wchar* buffer,
                                               corvane::ulong bufferSize, corvane::ulong flags = 0) noexcept;

/// Reads a 32-bit number (REG_DWORD or REG_DWORD_BIG_ENDIAN); `defaultValue` if it can't be read. `found`, if
/// not null, receives 1 for a number from the registry and 0 for the default. Never throws.
CORVANE_API corvane::ulong registry_readNumber(void* key, const corvane::wchar* subKey,
                                               const corvane::wchar* valueName, corvane::ulong defaultValue,
                                               int* found, corvane::ulong flags = 0) noexcept;

/// Reads a number at `path`, which names no root, under HKEY_LOCAL_MACHINE and, if it isn't there, under
/// HKEY_CURRENT_USER: the machine's number wins. `flags` are for the first place only. True if there was a
/// number; otherwise `value` is untouched. Throws std::bad_alloc for lack of memory.
CORVANE_API bool registry_readUserNumericValue(const corvane::wchar* path, const corvane::wchar* valueName,
                                               corvane::ulong* value, corvane::ulong flags = 0);

/// Stores a text as REG_SZ with its terminator, creating the key and the levels above it. Returns 0, -1 if
/// the path has no known root, or the platform's status. A key that was created stays if the value is
/// refused. Never throws.
CORVANE_API int registry_writeString(void* key, const corvane::wchar* subKey, const corvane::wchar* name,
                                     const corvane::wchar* data) noexcept;

/// Stores a number as REG_DWORD; otherwise as registry_writeString.
CORVANE_API int registry_writeNumber(void* key, const corvane::wchar* subKey, const corvane::wchar* name,
                                     corvane::ulong number) noexcept;

/// Deletes one key that has no subkeys. Returns 0, 32768 if there is nothing to delete (no path, no known
/// root, a root alone), or the platform's status. A `key` of the caller's is closed once the delete was
/// tried, whether it succeeded or not. Never throws.
CORVANE_API int registry_deleteKey(void* key, const corvane::wchar* subKey) noexcept;

/// The names of a key's direct subkeys in the platform's order, `delimiter` (which may be NUL) between two of
/// them and two NULs at the end; null if there are none or they can't be read. The caller frees the block
/// with `free`. Never throws.
CORVANE_API corvane::wchar* registry_loadSubSectionNames(void* key, const corvane::wchar* subKey,
                                                         corvane::wchar delimiter,
                                                         corvane::ulong flags = 0) noexcept;

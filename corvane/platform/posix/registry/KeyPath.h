// Paths of several key names.
#pragma once

#include <corvane/platform/posix/registry/KeyFolder.h>

namespace corvane::posix {

/// Moves `key` down to the key at `path`: names parted by single or several backslashes; an empty path is the
/// key itself. ERROR_BAD_PATHNAME for a backslash at the front, ERROR_INVALID_PARAMETER for a name that is
/// too long, ERROR_FILE_NOT_FOUND for a missing key.
ulong FindPath(KeyFolder& key, wstring_view path);

/// The same, and makes what is missing; `created` tells whether the last key was.
ulong CreatePath(KeyFolder& key, wstring_view path, bool& created);

/// Cuts the last name off `path`; empty if there is none.
wstring_view TakeLastName(wstring_view& path) noexcept;

} // namespace corvane::posix

// Paths of keys.
#pragma once

#include <corvane/platform/linux/registry/KeyFolder.h>

namespace corvane::os {

/// Moves `key` down to the key at `path`: names separated by one or more backslashes; an empty path is the
/// key itself. ERROR_BAD_PATHNAME for a leading backslash, ERROR_INVALID_PARAMETER for a name that is too
/// long, ERROR_FILE_NOT_FOUND for a missing key.
ulong FindPath(KeyFolder& key, wstring_view path);

/// The same, and creates missing keys; `created` is set if the last one was created.
ulong CreatePath(KeyFolder& key, wstring_view path, bool& created);

} // namespace corvane::os

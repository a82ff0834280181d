// The predefined keys and the trees that they lie in.
#pragma once

#include <corvane/platform/posix/PosixRegistry.h>
#include <corvane/platform/posix/registry/KeyFolder.h>

namespace corvane::posix {

/// Opens a predefined key, or with `create` makes it. ERROR_INVALID_HANDLE for any other handle;
/// ERROR_FILE_NOT_FOUND for a root under which nothing was ever written.
ulong OpenRoot(platform::HKEY key, bool create, KeyFolder& root);

bool IsRoot(platform::HKEY key) noexcept;

} // namespace corvane::posix

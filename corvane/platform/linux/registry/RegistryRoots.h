// The predefined keys and the folder trees that hold them.
#pragma once

#include <corvane/platform/linux/LinuxRegistry.h>
#include <corvane/platform/linux/registry/KeyFolder.h>

namespace corvane::os {

/// Opens a predefined key; with `create`, creates it if it is missing. ERROR_INVALID_HANDLE for any other
/// handle; ERROR_FILE_NOT_FOUND for a root under which nothing was ever written.
ulong OpenRoot(platform::HKEY key, bool create, KeyFolder& root);

bool IsRoot(platform::HKEY key) noexcept;

} // namespace corvane::os

// The open key handles of the process.
#pragma once

#include <corvane/platform/Mutex.h>
#include <corvane/platform/linux/LinuxRegistry.h>
#include <corvane/platform/linux/registry/ValuesFile.h>

namespace corvane::os {

/// The key of a handle, with what was read from it.
struct OpenKey {
    KeyFolder folder;
    ulong access = 0;

    platform::Mutex mutex;
    ValuesFile values CORVANE_GUARDED_BY(mutex);
    std::vector<wstring> subkeys CORVANE_GUARDED_BY(mutex);
};

/// Creates a new handle. Handle numbers are never reused.
platform::HKEY AddOpenKey(const std::shared_ptr<OpenKey>& key);

/// False if the handle was not open.
bool CloseOpenKey(platform::HKEY handle);

/// Finds the key of a handle or predefined key that was opened with the rights `needed`; otherwise returns
/// ERROR_INVALID_HANDLE or ERROR_ACCESS_DENIED. With `create`, a missing predefined key is created. The key
/// stays usable when another thread closes the handle.
ulong UseKey(platform::HKEY handle, ulong needed, bool create, std::shared_ptr<OpenKey>& key);

} // namespace corvane::os

// The open key handles of the process.
#pragma once

#include <corvane/platform/posix/PosixRegistry.h>
#include <corvane/platform/posix/registry/ValuesFile.h>

#include <mutex>

namespace corvane::posix {

/// What stands behind a handle. The caches are used under `mutex`.
struct OpenKey {
    KeyFolder place;
    ulong access = 0;

    std::mutex mutex;
    ValuesFile values;
    std::vector<wstring> subkeys;
};

/// Gives out a new handle. A number is never used for a second key.
platform::HKEY AddOpenKey(std::shared_ptr<OpenKey> key);

/// The key behind a handle that AddOpenKey gave and that isn't closed; null for any other. It stays usable
/// for whoever has it when another thread closes the handle.
std::shared_ptr<OpenKey> FindOpenKey(platform::HKEY handle);

/// False if the handle wasn't open.
bool CloseOpenKey(platform::HKEY handle);

/// The key behind a handle or predefined key, if it was opened with the rights `needed`: otherwise
/// ERROR_INVALID_HANDLE or ERROR_ACCESS_DENIED. With `create`, a predefined key is made if it is missing.
ulong UseKey(platform::HKEY handle, ulong needed, bool create, std::shared_ptr<OpenKey>& key);

} // namespace corvane::posix

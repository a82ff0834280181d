// Where the registry lies on Linux.
#pragma once

#include <corvane/detail/Export.h>

#include <string>

namespace corvane {

/// Sets the folders of the user's and the machine's tree, for tests and sandboxes; the first write creates
/// them. An empty path restores the default: `.local/share/corvane/registry` in the user's home folder,
/// `/var/lib/corvane/registry` for the machine. False, with nothing changed, for a path that is not absolute,
/// and always on Windows, whose registry lies where it lies. Thread-safe; open keys are not affected.
#ifdef _WIN32
inline bool SetRegistryFolders(const std::string&, const std::string&) {
    return false;
}
#else
CORVANE_API bool SetRegistryFolders(const std::string& user, const std::string& machine);
#endif

} // namespace corvane

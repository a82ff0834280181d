// Where the registry of the POSIX layer lies.
#pragma once

#include <corvane/foundations/Export.h>

#include <string>

namespace corvane {

/// Puts the user's and the machine's tree into other folders, for tests and sandboxes; they are made at the
/// first write. An empty path restores the default: `.local/share/corvane/registry` in the user's home
/// folder,
/// `/var/lib/corvane/registry` for the machine. False, with nothing changed, for a path that isn't absolute.
/// Any thread may call it; keys that are open stay where they are.
CORVANE_API bool SetRegistryFolders(const std::string& user, const std::string& machine);

} // namespace corvane

// The folders of the Linux layer's registry.
#pragma once

#include <corvane/foundations/Export.h>

#include <string>

namespace corvane {

/// Sets the folders of the user's and the machine's tree, for tests and sandboxes; the first write creates
/// them. An empty path restores the default: `.local/share/corvane/registry` in the user's home folder,
/// `/var/lib/corvane/registry` for the machine. False, with nothing changed, for a path that is not absolute.
/// Thread-safe; open keys are not affected.
CORVANE_API bool SetRegistryFolders(const std::string& user, const std::string& machine);

} // namespace corvane

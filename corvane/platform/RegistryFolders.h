// SetRegistryFolders on every port: the place of the registry can be chosen only where it is our own.
#pragma once

#ifdef _WIN32
#include <string>

namespace corvane {

/// Always false: the platform keeps its own registry.
inline bool SetRegistryFolders(const std::string&, const std::string&) {
    return false;
}

} // namespace corvane
#else
#include <corvane/platform/linux/RegistryFolders.h>
#endif

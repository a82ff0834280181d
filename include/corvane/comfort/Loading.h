// Loading a configuration, with an explanation of failures.
#pragma once

#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// The result of a load; true if it succeeded.
struct [[nodiscard]] LoadResult {
    int code = 0;       ///< 0, or the result of ConfigManager::Update
    std::string reason; ///< one sentence in UTF-8 that explains the failure, or empty

    /// Whether the load succeeded.
    explicit operator bool() const noexcept { return code == 0; }
};

/// Loads the settings file at `path`, which this process must be allowed to read and write. A file that is
/// already loaded is loaded again only if its modification time is later, in whole seconds, than at the load
/// or at this manager's last write; to be sure to see changes by others, use Reload or FileWatch. After a
/// failure the manager keeps what it had, and the file is examined again to explain it.
CORVANE_API LoadResult Load(ConfigManager& config, std::string_view path);

/// Loads the manager's file again, even if it was not modified. FileWatch tells when to call it.
CORVANE_API LoadResult Reload(ConfigManager& config);

} // namespace corvane

// Loading a configuration, and why it failed.
#pragma once

#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// What came of a load; true if it succeeded.
struct [[nodiscard]] LoadResult {
    int code = 0;       ///< 0, or what ConfigManager::Update gave
    std::string reason; ///< one sentence in UTF-8 that says why it failed, or empty

    explicit operator bool() const noexcept { return code == 0; }
};

/// Loads the settings file at `path`, which this process has to be allowed to read and to write, unless that
/// very file is loaded already and was not modified, in whole seconds. After a failure the manager goes on
/// answering from what it had. The reason is determined by examining the file after the failure.
CORVANE_API LoadResult Load(ConfigManager& config, std::string_view path);

/// Loads the manager's file again, whether or not it was modified. See FileWatch for when to call it.
CORVANE_API LoadResult Reload(ConfigManager& config);

} // namespace corvane

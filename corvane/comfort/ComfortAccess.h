// What the comfort layer needs of a manager beyond its public operations.
#pragma once

#include <corvane/comfort/FileEntry.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// Works under the manager's lock.
class ComfortAccess {
public:
    /// Writes an entry that was not refused through to the file, and its value into the cache. Refused, with
    /// nothing written, if the manager keeps the section in the cache alone. The result is SetValue's.
    static int Write(ConfigManager& config, const FileEntry& entry);
};

} // namespace corvane

// What the comfort layer needs of a manager beyond its public operations.
#pragma once

#include <corvane/comfort/FileEntry.h>
#include <corvane/detail/FileState.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// All operations take the managers' lock.
class ComfortAccess {
public:
    /// Calls `operation` with the lock held, so that its reads are consistent with each other.
    template <class Operation>
    static void Locked(Operation operation) {
        const ThreadLockGuard guard(ConfigManager::m_lock);
        operation();
    }

    /// Copies the value of `key` to `value`. Returns the result of GetValue.
    static int Read(const ConfigManager& config, const wstring& key, wstring& value);

    /// SetValue for an entry that was not refused, with `fileText` as the text for the file.
    static int Write(ConfigManager& config, const FileEntry& entry);

    /// ApplyChanges, with `forFile` as the texts for the file, which has the same keys.
    static int Write(ConfigManager& config, const std::vector<ConfigChange>& changes,
                     const std::vector<ConfigChange>& forFile);

    /// The name of the loaded configuration, or an empty one.
    static wstring ConfigName(const ConfigManager& config);

    /// Reloads the loaded configuration and stores its name in `name`, empty if there is none. Returns the
    /// result of Update.
    static int Reload(ConfigManager& config, wstring& name);

    /// Stores the path of the loaded file and its state before it was read; changes nothing if there is no
    /// file.
    static void StateAtLoad(const ConfigManager& config, wstring& path, FileState& state);
};

} // namespace corvane

// What the comfort layer needs of a manager beyond its public operations.
#pragma once

#include <corvane/comfort/FileEntry.h>
#include <corvane/detail/FileState.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// Works under the managers' lock.
class ComfortAccess {
public:
    /// Calls `operation` with the managers' lock held, so that all that it reads belongs together.
    template <class Operation>
    static void Locked(Operation operation) {
        const ThreadLockGuard guard(ConfigManager::m_lock);
        operation();
    }

    /// Copies the value of `key` to `value`. The result is GetValue's.
    static int Read(const ConfigManager& config, const wstring& key, wstring& value);

    /// SetValue of an entry that was not refused, with `fileText` as the text that the file gets.
    static int Write(ConfigManager& config, const FileEntry& entry);

    /// ApplyChanges, with `forFile` as what the file gets for the same keys.
    static int Write(ConfigManager& config, const std::vector<ConfigChange>& changes,
                     const std::vector<ConfigChange>& forFile);

    /// The name of what is loaded, or an empty one.
    static wstring ConfigName(const ConfigManager& config);

    /// Loads again what is loaded, and gives its name, which is empty if that is nothing. The result is
    /// Update's.
    static int Reload(ConfigManager& config, wstring& name);

    /// Gives the path of the loaded file and its state before it was read; nothing is changed without one.
    static void StateAtLoad(const ConfigManager& config, wstring& path, FileState& state);
};

} // namespace corvane

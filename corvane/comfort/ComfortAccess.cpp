#include <corvane/comfort/ComfortAccess.h>
#include <corvane/sources/ConfigFile.h>

namespace corvane {

// Reading changes nothing; GetValue is not const because its signature is fixed.
int ComfortAccess::Read(const ConfigManager& config, const wstring& key, wstring& value) {
    return const_cast<ConfigManager&>(config).GetValue(
        key, value); // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

int ComfortAccess::Write(ConfigManager& config, const FileEntry& entry) {
    return config._SetValue(entry.key, entry.value, entry.fileText, false);
}

int ComfortAccess::Write(ConfigManager& config, const std::vector<ConfigChange>& changes,
                         const std::vector<ConfigChange>& forFile) {
    return config.ApplyChangesAs(changes, forFile);
}

wstring ComfortAccess::ConfigName(const ConfigManager& config) {
    const ThreadLockGuard guard(ConfigManager::m_lock);
    return config.m_source ? config.m_source->GetConfigName() : wstring();
}

int ComfortAccess::Reload(ConfigManager& config, wstring& name) {
    constexpr int always = -1;
    const ThreadLockGuard guard(ConfigManager::m_lock);
    name = ConfigName(config);
    return config.Update(name.c_str(), always);
}

void ComfortAccess::StateAtLoad(const ConfigManager& config, wstring& path, FileState& state) {
    const ThreadLockGuard guard(ConfigManager::m_lock);
    if (const auto* const file = dynamic_cast<const ConfigFile*>(config.m_source.get())) {
        path = config.m_source->GetConfigName();
        state = file->StateAtLoad();
    }
}

} // namespace corvane

// The configuration manager shared by the whole process.
#pragma once

#include <corvane/foundations/Singleton.h>
#include <corvane/manager/ConfigManager.h>

class ApplicationConfigManager;

/// @cond
template <>
CORVANE_API ThreadLock Singleton<ApplicationConfigManager>::s_lock;
template <>
CORVANE_API ApplicationConfigManager* volatile Singleton<ApplicationConfigManager>::s_instance;
template <>
CORVANE_API ApplicationConfigManager* Singleton<ApplicationConfigManager>::Instance();
template <>
CORVANE_API void Singleton<ApplicationConfigManager>::Delete();
/// @endcond

/// The process-wide ConfigManager: created by `ApplicationConfigManager::Instance()`, destroyed by
/// `Delete()`.
class CORVANE_API ApplicationConfigManager : public Singleton<ApplicationConfigManager>,
                                             public ConfigManager {
public:
    /// A copy is an ordinary manager; Instance still returns the original.
    ApplicationConfigManager(const ApplicationConfigManager&);
    /// Copies the configuration as ConfigManager does.
    ApplicationConfigManager& operator=(const ApplicationConfigManager&);

protected:
    friend class Singleton<ApplicationConfigManager>;

    ApplicationConfigManager();
    ~ApplicationConfigManager() override;
};

// The configuration manager that all code of a program reaches without passing an object around.
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

/// A ConfigManager whose one object comes from `ApplicationConfigManager::Instance()` and goes with
/// `Delete()`.
class CORVANE_API ApplicationConfigManager : public Singleton<ApplicationConfigManager>,
                                             public ConfigManager {
public:
    /// A copy is a manager like any other; Instance goes on giving the original.
    ApplicationConfigManager(const ApplicationConfigManager&);
    /// Copies the configuration as ConfigManager does.
    ApplicationConfigManager& operator=(const ApplicationConfigManager&);

protected:
    friend class Singleton<ApplicationConfigManager>;

    ApplicationConfigManager();
    ~ApplicationConfigManager() override;
};

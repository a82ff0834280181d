#include <corvane/foundations/ApplicationConfigManager.h>
#include <corvane/platform/Platform.h>

// The library's two static locks are constructed in this order, before any exported function can run, and
// destroyed in reverse order.
template <>
ThreadLock Singleton<ApplicationConfigManager>::s_lock{};
ThreadLock ConfigManager::m_lock;

template <>
ApplicationConfigManager* volatile Singleton<ApplicationConfigManager>::s_instance = nullptr;

ApplicationConfigManager::ApplicationConfigManager() = default;
ApplicationConfigManager::ApplicationConfigManager(const ApplicationConfigManager&) = default;
ApplicationConfigManager& ApplicationConfigManager::operator=(const ApplicationConfigManager&) = default;
ApplicationConfigManager::~ApplicationConfigManager() = default;

template <>
ApplicationConfigManager* Singleton<ApplicationConfigManager>::Instance() {
    if (auto* const instance = platform::ReadPointerAcquire(&s_instance))
        return instance;
    const ThreadLockGuard guard(s_lock);
    if (!platform::ReadPointerAcquire(&s_instance))
        platform::InterlockedExchangePointer(&s_instance, new ApplicationConfigManager);
    return platform::ReadPointerAcquire(&s_instance);
}

template <>
void Singleton<ApplicationConfigManager>::Delete() {
    if (!platform::ReadPointerAcquire(&s_instance))
        return;
    const ThreadLockGuard guard(s_lock);
    if (platform::ReadPointerAcquire(&s_instance))
        delete platform::InterlockedExchangePointer(&s_instance, nullptr);
}

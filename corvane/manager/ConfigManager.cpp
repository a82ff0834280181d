// Construction, copying and simple queries of a manager.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/sources/IConfigSource.h>

using corvane::wchar;
using corvane::wstring;

ConfigManager::ConfigManager()
    : m_cache(std::make_unique<SectionMap>()), m_cacheOnlySections{corvane::reservedSection} {}

ConfigManager::ConfigManager(const ConfigManager& other)
    : m_cache(std::make_unique<SectionMap>(*other.m_cache)), m_source(other.m_source),
      m_cacheOnlySections(other.m_cacheOnlySections) {}

ConfigManager::~ConfigManager() = default;

ConfigManager& ConfigManager::operator=(const ConfigManager& other) CORVANE_TAKES_NO_LOCK {
    ConfigManager copy(other);
    m_cache.swap(copy.m_cache);
    m_source.swap(copy.m_source);
    m_cacheOnlySections.swap(copy.m_cacheOnlySections);
    return *this;
}

const wchar* ConfigManager::GetConfigName() const {
    const ThreadLockGuard guard(m_lock);
    return m_source ? m_source->GetConfigName() : nullptr;
}

IConfigSource* ConfigManager::GetConfigSource() const CORVANE_TAKES_NO_LOCK {
    return m_source.get();
}

bool ConfigManager::IsReady() const CORVANE_TAKES_NO_LOCK {
    return m_source && !m_cache->Empty();
}

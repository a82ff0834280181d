// Reading by key, from the cache only.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/sources/KeyParts.h>

using corvane::Fail;
using corvane::KeyParts;
using corvane::Log;
using corvane::wstring;

int ConfigManager::_GetValue(const wstring& key, wstring& value) {
    static constexpr const char* function = "ConfigManager::_GetValue";
    Quillon::NativeLogging::ILogger& log = Log();
    log.logTrace(CORVANE_TEXT("GetValue: key: '%s'"), key.c_str());
    const ThreadLockGuard guard(m_lock);
    if (!m_source)
        return Fail(function, __LINE__, key.c_str());
    KeyParts parts;
    if (!parts.Parse(*m_source, key))
        return Fail(function, __LINE__, key.c_str());

    const auto* const section = m_cache->Find(parts.section);
    if (!section) {
        log.logProgress(CORVANE_TEXT("config cache section for key '%s' was not found"), key.c_str());
        return FAILURE_GENERAL;
    }
    const auto tag = section->second.Find(parts.tag);
    if (!tag) {
        log.logProgress(CORVANE_TEXT("config cache item for key '%s' was not found"), key.c_str());
        return FAILURE_GENERAL;
    }
    value = tag->value;
    log.logTrace(CORVANE_TEXT("GetValue: key: '%s', value: '%s'"), key.c_str(), value.c_str());
    return 0;
}

int ConfigManager::GetValue(const wstring& key, wstring& value) {
    return _GetValue(key, value) == 0 ? 0 : FAILURE_GENERAL;
}

int ConfigManager::GetValue(const wstring& key, wstring& value, wstring defaultValue) {
    if (_GetValue(key, value) != 0)
        value = std::move(defaultValue);
    return 0;
}

bool ConfigManager::Exists(const wstring& key) const {
    const ThreadLockGuard guard(m_lock);
    KeyParts parts;
    if (!m_source || !parts.Parse(*m_source, key))
        return false;
    const auto* const section = m_cache->Find(parts.section);
    return section && (!parts.HasTag() || section->second.Find(parts.tag));
}

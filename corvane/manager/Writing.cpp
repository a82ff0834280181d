// Writing by key: first every check, then the source, then the cache.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/manager/StillLoaded.h>
#include <corvane/sources/KeyParts.h>

using corvane::Fail;
using corvane::KeyParts;
using corvane::Log;
using corvane::wstring;

int ConfigManager::SetValue(const wstring& key, const wstring& value, bool cacheOnly) {
    return _SetValue(key, value, cacheOnly);
}

int ConfigManager::_SetValue(const wstring& key, const wstring& value, bool cacheOnly) {
    return _SetValue(key, value, value, cacheOnly);
}

// The cache gets `value`, the source a text that it reads back as that value.
int ConfigManager::_SetValue(const wstring& key, const wstring& value, const wstring& sourceText,
                             bool cacheOnly) {
    const auto refuse = [&](std::int32_t line) {
        return Fail("ConfigManager::_SetValue", line, key.c_str());
    };
    Log().logTrace(CORVANE_TEXT("SetValue: key: '%s', value:'%s', cacheOnly = %s"), key.c_str(),
                   value.c_str(), cacheOnly ? CORVANE_TEXT("true") : CORVANE_TEXT("false"));
    const ThreadLockGuard guard(m_lock);
    if (!m_source)
        return refuse(__LINE__);
    if (key.empty())
        return refuse(__LINE__);
    if (!ValidateCacheOnlyKey(key, cacheOnly))
        return refuse(__LINE__);
    const wstring storedKey = GetKeyFromCache(key);
    KeyParts parts;
    if (!parts.Parse(*m_source, storedKey))
        return refuse(__LINE__);
    if (!parts.HasSection() || !parts.HasTag())
        return refuse(__LINE__);

    const wstring sectionName(corvane::UpToNul(parts.section));
    const bool writeThrough = !cacheOnly && m_cacheOnlySections.count(sectionName) == 0;
    if (writeThrough) {
        const auto source = m_source; // kept alive even if a log sink makes the program load
        const std::int32_t written = source->WriteValue(storedKey, sourceText);
        if (written == 0 || written == FAILURE_GENERAL)
            return refuse(__LINE__);
        if (!corvane::StillLoaded(m_source.get(), *source))
            return 0; // the cache now belongs to another configuration
    } else {
        m_cacheOnlySections.insert(sectionName);
    }

    const ConfigValue entry{value, !writeThrough};
    if (auto* const section = m_cache->Find(parts.section)) {
        section->second.Assign(parts.tag, entry);
        return 0;
    }
    TagMap tags;
    tags.Insert(parts.tag, entry);
    m_cache->Insert(parts.section, std::move(tags));
    return 0;
}

bool ConfigManager::ValidateCacheOnlyKey(const wstring& key, bool cacheOnly) {
    KeyParts parts;
    if (!parts.Parse(*m_source, key))
        return false;
    return !cacheOnly || !m_cache->Find(parts.section);
}

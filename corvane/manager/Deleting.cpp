// Deleting by key: from the source first, then from the cache.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/manager/StillLoaded.h>
#include <corvane/sources/KeyParts.h>

using corvane::Fail;
using corvane::KeyParts;
using corvane::Log;
using corvane::wstring;

int ConfigManager::DeleteValue(const wstring& key) {
    static constexpr const char* function = "ConfigManager::DeleteValue";
    Log().logTrace(CORVANE_TEXT("DeleteValue: key: '%s'"), key.c_str());
    const ThreadLockGuard guard(m_lock);
    if (!m_source)
        return Fail(function, __LINE__, key.c_str());
    KeyParts parts;
    if (!parts.Parse(*m_source, GetKeyFromCache(key)))
        return 0;
    if (!parts.HasSection() || corvane::IsReserved(parts.section))
        return 0;
    if (!m_cache->Find(parts.section))
        return Fail(function, __LINE__);
    const auto source = m_source; // kept alive even if a log sink makes the program load
    if (!source->DeleteValue(key))
        return 0;
    if (!corvane::StillLoaded(m_source.get(), *source))
        return 0; // the cache now belongs to another configuration

    auto* const section = m_cache->Find(parts.section);
    if (!section)
        return 0;
    TagMap& tags = section->second;
    const bool wholeSection = !parts.HasTag();
    const bool removed = wholeSection || tags.Erase(parts.tag);
    if (wholeSection || tags.Empty()) {
        m_cache->Erase(*section);
        parts.section.resize(corvane::UpToNul(parts.section).size());
        m_cacheOnlySections.erase(parts.section);
    }
    return removed ? 0 : Fail(function, __LINE__);
}

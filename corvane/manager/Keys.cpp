// Joining keys, and mapping them to the letter case of the cache.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/sources/KeyParts.h>

using corvane::wchar;
using corvane::wstring;

wstring ConfigManager::BuildKey(const wchar* section, const wchar* tag) const {
    wstring key;
    if (section)
        key += section;
    key += ':';
    if (tag)
        key += tag;
    return key;
}

wstring ConfigManager::BuildKey(const wstring& section, const wstring& tag) const {
    return BuildKey(section.c_str(), tag.c_str());
}

wstring ConfigManager::BuildKey(const wchar* section, const wstring& tag) const {
    return BuildKey(section, tag.c_str());
}

wstring ConfigManager::BuildKey(const wstring& section, const wchar* tag) const {
    return BuildKey(section.c_str(), tag);
}

wstring ConfigManager::GetKeyFromCache(const wstring& key) const {
    corvane::KeyParts parts;
    if (!parts.Parse(*m_source, key) || !parts.HasSection())
        return key;
    const auto* const section = m_cache->Find(parts.section);
    if (!section)
        return key;
    const auto tag = section->second.Find(parts.tag);
    wstring stored = section->first;
    stored += ':';
    stored += tag ? tag->name : parts.tag;
    return stored;
}

// Joining keys, and giving them the letter case of the cache.
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
    if (!parts.Parse(*m_source, key) || parts.section.empty())
        return key;
    const std::uint32_t section = m_cache.Find(parts.section);
    if (section == SectionMap::none)
        return key;
    const TagMap& tags = m_cache.Tags(section);
    const std::uint32_t tag = tags.Find(parts.tag);
    wstring stored(m_cache.Name(section));
    stored += ':';
    stored += tag == TagMap::none ? corvane::wstring_view(parts.tag) : tags.At(tag).name;
    return stored;
}

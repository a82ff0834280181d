// Listing the sections and tags of the cache.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/sources/KeyParts.h>

#include <algorithm>

using corvane::KeyParts;
using corvane::wstring;

namespace {

void Reserve(std::vector<wstring>& names, std::size_t more) {
    if (names.capacity() - names.size() < more)
        names.reserve(std::max(names.size() + more, names.capacity() * 2));
}

void Reserve(std::list<wstring>&, std::size_t) {}

template <class Names>
std::size_t AppendTags(IConfigSource* source, const ConfigManager::SectionMap& cache, const wstring& key,
                       Names& names) {
    KeyParts parts;
    if (!source || !parts.Parse(*source, key))
        return 0;
    const auto* const section = cache.Find(parts.section);
    if (!section)
        return 0;
    Reserve(names, section->second.Size());
    for (const auto& tag : section->second)
        names.emplace_back(tag.name);
    return names.size();
}

} // namespace

std::size_t ConfigManager::EnumerateSubKeys(std::vector<wstring>& subKeys) const {
    const ThreadLockGuard guard(m_lock);
    const auto& sections = m_cache->Ordered();
    Reserve(subKeys, sections.size());
    for (const auto* const section : sections)
        subKeys.push_back(section->first);
    return subKeys.size();
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::list<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), *m_cache, key, tags);
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::vector<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), *m_cache, key, tags);
}

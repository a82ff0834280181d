// Listing what the cache holds.
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/KeyParts.h>

using corvane::KeyParts;
using corvane::wstring;

namespace {

template <class Map, class Names>
std::size_t AppendNames(const Map& map, Names& names) {
    for (const auto& entry : map)
        names.push_back(entry.first);
    return names.size();
}

template <class Names>
std::size_t AppendTags(IConfigSource* source, const ConfigManager::SectionMap& cache, const wstring& key,
                       Names& names) {
    KeyParts parts;
    if (!source || !parts.Parse(*source, key))
        return 0;
    const auto section = cache.find(parts.section);
    return section == cache.end() ? 0 : AppendNames(section->second, names);
}

} // namespace

std::size_t ConfigManager::EnumerateSubKeys(std::vector<wstring>& subKeys) const {
    const ThreadLockGuard guard(m_lock);
    return AppendNames(m_cache, subKeys);
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::list<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), m_cache, key, tags);
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::vector<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), m_cache, key, tags);
}

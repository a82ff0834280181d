// Listing what the cache holds.
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
std::size_t AppendNames(const corvane::NameTable& table, Names& names) {
    constexpr std::size_t ahead = 32;
    const auto& order = table.Order();
    Reserve(names, order.Size());
    for (std::size_t i = 0; i < order.Size() + ahead; ++i) {
        if (i < order.Size())
            table.Prefetch(order[i]);
        if (i >= ahead)
            names.emplace_back(table.Name(order[i - ahead]));
    }
    return names.size();
}

template <class Names>
std::size_t AppendTags(IConfigSource* source, const ConfigManager::SectionMap& cache, const wstring& key,
                       Names& names) {
    KeyParts parts;
    if (!source || !parts.Parse(*source, key))
        return 0;
    const std::uint32_t section = cache.Find(parts.section);
    return section == corvane::SectionMap::none ? 0 : AppendNames(cache.Tags(section).Names(), names);
}

} // namespace

std::size_t ConfigManager::EnumerateSubKeys(std::vector<wstring>& subKeys) const {
    const ThreadLockGuard guard(m_lock);
    return AppendNames(m_cache.Names(), subKeys);
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::list<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), m_cache, key, tags);
}

std::size_t ConfigManager::EnumerateTags(const wstring& key, std::vector<wstring>& tags) const {
    const ThreadLockGuard guard(m_lock);
    return AppendTags(m_source.get(), m_cache, key, tags);
}

#include <corvane/manager/SectionMap.h>

#include <algorithm>
#include <utility>

namespace corvane {

void SectionMap::Reserve(std::size_t sections) {
    m_names.Reserve(sections);
    m_tags.reserve(sections);
}

void SectionMap::Insert(wstring_view name, TagMap tags) {
    if (m_tags.size() == m_tags.capacity())
        Reserve(std::max<std::size_t>(m_tags.size() * 2, 4));
    if (m_names.Add(name).second)
        m_tags.push_back(std::move(tags));
}

void SectionMap::InsertCopy(wstring_view name, const TagMap& tags) {
    Insert(name, TagMap(tags, m_pool));
}

void SectionMap::Erase(std::uint32_t index) noexcept {
    m_tags.erase(m_tags.begin() + index);
    m_names.Remove(index);
}

void SectionMap::Swap(SectionMap& other) noexcept {
    m_pool.Swap(other.m_pool);
    std::swap(m_names, other.m_names);
    m_tags.swap(other.m_tags);
}

void SectionMap::Clear() noexcept {
    SectionMap().Swap(*this);
}

} // namespace corvane

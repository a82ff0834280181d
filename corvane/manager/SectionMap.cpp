#include <corvane/manager/SectionMap.h>

#include <utility>

namespace corvane {

void SectionMap::Insert(wstring_view name, TagMap tags) {
    if (Contains(name))
        return;
    m_tags.push_back(std::move(tags));
    try {
        m_names.Add(name);
    } catch (...) {
        m_tags.pop_back();
        throw;
    }
}

void SectionMap::Erase(std::uint32_t index) noexcept {
    m_tags.erase(m_tags.begin() + index);
    m_names.Remove(index);
}

void SectionMap::Swap(SectionMap& other) noexcept {
    std::swap(m_names, other.m_names);
    m_tags.swap(other.m_tags);
}

void SectionMap::Clear() noexcept {
    SectionMap().Swap(*this);
}

} // namespace corvane

#include <corvane/cache/SectionMap.h>

#include <algorithm>

namespace corvane {

const SectionMap::Section* SectionMap::Find(const wstring& name) const noexcept {
    const auto found = m_sections.find(name);
    return found == m_sections.end() ? nullptr : &*found;
}

const std::vector<const SectionMap::Section*>& SectionMap::Ordered() const {
    if (m_order.size() == m_sections.size())
        return m_order;
    std::vector<const Section*> order;
    order.reserve(m_sections.size());
    for (const Section& section : m_sections)
        order.push_back(&section);
    std::sort(order.begin(), order.end(),
              [](const Section* a, const Section* b) { return CaseInsensitiveLess()(a->first, b->first); });
    m_order.swap(order);
    return m_order;
}

void SectionMap::Insert(const wstring& name, TagMap&& tags) {
    Changed();
    m_sections.try_emplace(name, std::move(tags));
}

void SectionMap::InsertCopy(const wstring& name, const TagMap& tags) {
    Changed();
    m_sections.try_emplace(name, tags, &m_arena);
}

void SectionMap::Erase(const Section& section) noexcept {
    Changed();
    m_sections.erase(m_sections.find(section.first));
}

void SectionMap::Replace(SectionMap& sections) noexcept {
    Changed();
    while (!sections.m_sections.empty()) {
        auto section = sections.m_sections.extract(sections.m_sections.begin());
        m_sections.erase(section.key());
        if (!section.mapped().Empty())
            m_sections.insert(std::move(section));
    }
}

} // namespace corvane

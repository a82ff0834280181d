#include <corvane/manager/SectionMap.h>

#include <algorithm>
#include <utility>

namespace corvane {
namespace {

// A number in the form of text.
class NumberText {
public:
    explicit NumberText(std::size_t number) noexcept {
        const auto bits = static_cast<std::uint32_t>(number);
        static_assert(sizeof m_units == sizeof bits);
        std::memcpy(m_units, &bits, sizeof bits);
    }
    wstring_view Get() const noexcept { return {m_units, size}; }

    static constexpr std::size_t size = 2;

private:
    wchar m_units[size];
};

} // namespace

void SectionMap::Reserve(const std::vector<wstring>& names) {
    std::size_t units = 0;
    for (const wstring& name : names)
        units += name.size() + NumberText::size;
    Reserve(names.size(), units);
}

void SectionMap::Reserve(std::size_t sections, std::size_t units) {
    m_names.Reserve(sections, units);
    m_tags.reserve(sections);
}

void SectionMap::Insert(wstring_view name, TagMap tags) {
    if (m_tags.size() == m_tags.capacity())
        Reserve(std::max<std::size_t>(m_tags.size() * 2, 4), 0);
    if (m_names.Add(name, NumberText(m_tags.size()).Get()))
        m_tags.push_back(std::move(tags));
}

void SectionMap::InsertCopy(wstring_view name, const TagMap& tags) {
    Insert(name, TagMap(tags, m_pool));
}

void SectionMap::Erase(std::uint32_t place) noexcept {
    const std::uint32_t number = NumberAt(place);
    const std::size_t last = m_tags.size() - 1;
    m_names.Remove(place);
    if (number != last) {
        std::uint32_t moved = none;
        m_names.ForEach([&](std::uint32_t other) { moved = NumberAt(other) == last ? other : moved; });
        m_names.Assign(moved, NumberText(number).Get(), false); // of the same length: it has a place
        m_tags[number] = std::move(m_tags[last]);
    }
    m_tags.pop_back();
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

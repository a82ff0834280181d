// The sections of the cache.
#pragma once

#include <corvane/manager/TagMap.h>

namespace corvane {

/// Section names with their tags, found without regard to letter case and listed in the order of the cache.
/// An operation that throws, for lack of memory, has changed nothing.
class SectionMap {
public:
    static constexpr std::uint32_t none = NameTable::none;

    SectionMap() = default;
    SectionMap(const SectionMap& other) : m_names(other.m_names), m_tags(other.m_tags) {}
    SectionMap& operator=(const SectionMap&) = delete;
    ~SectionMap() = default;

    bool Empty() const noexcept { return m_tags.empty(); }
    const NameTable& Names() const noexcept { return m_names; }

    /// The section's place, which lasts until the next section comes or goes, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept { return m_names.Find(name); }
    bool Contains(wstring_view name) const noexcept { return Find(name) != none; }
    wstring_view Name(std::uint32_t place) const noexcept { return m_names.Name(place); }
    TagMap& Tags(std::uint32_t place) noexcept { return m_tags[NumberAt(place)]; }
    const TagMap& Tags(std::uint32_t place) const noexcept { return m_tags[NumberAt(place)]; }

    /// Makes room for so many sections with these names at once.
    void Reserve(const std::vector<wstring>& names);

    /// Adds a section; the first of two equal names stands.
    void Insert(wstring_view name, TagMap tags);

    /// The same with a copy of `tags` in large blocks of the map's own, which go with the map: for the many
    /// sections of a load.
    void InsertCopy(wstring_view name, const TagMap& tags);

    /// Removes the section at that place. Cannot fail.
    void Erase(std::uint32_t place) noexcept;

    void Swap(SectionMap& other) noexcept;
    void Clear() noexcept;

private:
    void Reserve(std::size_t sections, std::size_t units);
    std::uint32_t NumberAt(std::uint32_t place) const noexcept {
        std::uint32_t number = 0;
        std::memcpy(&number, m_names.Text(place).data(), sizeof number);
        return number;
    }

    MemoryPool m_pool;
    NameTable m_names; // the text of a name tells where its tags are in m_tags
    std::vector<TagMap> m_tags;
};

} // namespace corvane

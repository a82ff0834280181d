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

    /// The index of the section, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept { return m_names.Find(name); }
    bool Contains(wstring_view name) const noexcept { return Find(name) != none; }
    wstring_view Name(std::uint32_t index) const noexcept { return m_names.Name(index); }
    TagMap& Tags(std::uint32_t index) noexcept { return m_tags[index]; }
    const TagMap& Tags(std::uint32_t index) const noexcept { return m_tags[index]; }

    /// Makes room for that many sections at once.
    void Reserve(std::size_t sections);

    /// Adds a section; the first of two equal names stands.
    void Insert(wstring_view name, TagMap tags);

    /// The same with a copy of `tags` in large blocks of the map's own, which go with the map: for the many
    /// sections of a load.
    void InsertCopy(wstring_view name, const TagMap& tags);

    /// Removes the section of that index; the indices behind it move up by one. Cannot fail.
    void Erase(std::uint32_t index) noexcept;

    void Swap(SectionMap& other) noexcept;
    void Clear() noexcept;

private:
    MemoryPool m_pool;
    NameTable m_names;
    std::vector<TagMap> m_tags; // by the index of the name
};

} // namespace corvane

// The tags of one section of the cache.
#pragma once

#include <corvane/manager/NameTable.h>

namespace corvane {

/// Tag names with their values, found without regard to letter case and listed in the order of the cache. An
/// operation that throws has changed nothing.
class TagMap {
public:
    /// One tag. The texts last until the next change of the map.
    struct Tag {
        wstring_view name;
        wstring_view value;
        bool cacheOnly;
    };

    static constexpr std::uint32_t none = NameTable::none;

    TagMap() = default;
    /// A copy in the pool's memory, without room for more than it holds.
    TagMap(const TagMap& other, MemoryPool& pool) : m_names(other.m_names, pool) {}

    std::size_t Size() const noexcept { return m_names.Size(); }
    bool Empty() const noexcept { return Size() == 0; }
    const NameTable& Names() const noexcept { return m_names; }

    /// The index of the tag, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept { return m_names.Find(name); }
    bool Contains(wstring_view name) const noexcept { return Find(name) != none; }
    Tag At(std::uint32_t index) const noexcept {
        return {m_names.Name(index), m_names.Text(index), m_names.IsMarked(index)};
    }

    /// Makes room for that many tags at once.
    void Reserve(std::size_t tags) { m_names.Reserve(tags); }

    /// Removes all tags, and keeps the room that they had.
    void Clear() noexcept { m_names.Clear(); }

    /// Adds a tag; the first of two equal names stands.
    void Insert(const Tag& tag) { m_names.Add(tag.name, tag.value, tag.cacheOnly); }

    /// Gives a tag a new value and mark; adds it if it is not there. A tag that is there keeps its name.
    void Assign(const Tag& tag);

    /// Removes a tag; says whether it was there. Cannot fail.
    bool Erase(wstring_view name) noexcept;

private:
    NameTable m_names; // a value is its name's text, and marked if it is in the cache alone
};

} // namespace corvane

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

    /// The tag's place, which lasts until the next change of the map, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept { return m_names.Find(name); }
    bool Contains(wstring_view name) const noexcept { return Find(name) != none; }
    Tag At(std::uint32_t place) const noexcept {
        return {m_names.Name(place), m_names.Text(place), m_names.IsMarked(place)};
    }

    /// Calls `visit` with every tag, in no order that means anything. It may not change the map. Another map
    /// that they go into has to have room for all of them: they come in the order of their hashes, and would
    /// lie close together in a map that grows.
    template <class Visit>
    void ForEach(Visit visit) const {
        m_names.ForEach([&](std::uint32_t place) { visit(At(place)); });
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

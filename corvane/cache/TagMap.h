// The tags of one section of the cache.
#pragma once

#include <corvane/cache/Arena.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/platform/Prefetch.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace corvane {

/// A hash map from tag names to values that ignores letter case; a name keeps the letter case in which it was
/// first inserted. Names and values are stored in one text, entry after entry; the slots of an
/// open-addressing table hold hashes and offsets into it. If an operation throws, for lack of memory or above
/// 2 G units of text (std::length_error), nothing has changed. Not thread-safe, not even for reading. A
/// moved-from map may only be assigned to or destroyed.
class TagMap {
public:
    using ConfigValue = ConfigManager::ConfigValue;

    /// One entry. The views are valid until the next change of the map.
    struct Tag {
        wstring_view name;
        wstring_view value;
        bool cacheOnly;
    };

    /// Iterates over the entries, sorted by name.
    class Iterator {
    public:
        Iterator(const TagMap& map, const std::uint32_t* at) noexcept : m_map(map), m_at(at) {}
        Tag operator*() const noexcept { return m_map.At(*m_at); }
        Iterator& operator++() noexcept {
            m_map.PrefetchAfter(m_at++);
            return *this;
        }
        bool operator!=(const Iterator& other) const noexcept { return m_at != other.m_at; }

    private:
        const TagMap& m_map;
        const std::uint32_t* m_at;
    };

    TagMap() = default;
    /// A copy without spare capacity, on the heap or in an arena that must outlive it.
    TagMap(const TagMap& other, Arena* arena = nullptr);
    TagMap(TagMap&&) noexcept = default;
    TagMap& operator=(const TagMap&) = delete;
    TagMap& operator=(TagMap&&) noexcept = default;
    ~TagMap() = default;

    std::size_t Size() const noexcept { return m_size; }
    bool Empty() const noexcept { return m_size == 0; }
    bool HasCacheOnly() const noexcept { return m_cacheOnly > 0; }

    std::optional<Tag> Find(wstring_view name) const noexcept;

    /// The order is computed by the first iteration after a change, which may throw std::bad_alloc.
    Iterator begin() const { return {*this, Order().data()}; }
    Iterator end() const { return {*this, Order().data() + m_size}; }

    /// Reserves capacity for that many tags in all, and for their text unless it is long.
    void Reserve(std::size_t tags);

    /// Adds a tag, whose texts must not be this map's. False, with nothing changed, if the name exists.
    bool Insert(wstring_view name, const ConfigValue& value);

    /// Adds a tag or replaces its value.
    void Assign(wstring_view name, const ConfigValue& value);

    /// False if there is no such tag. Frees no memory.
    bool Erase(wstring_view name) noexcept;

    /// Removes all tags and keeps the memory.
    void Clear() noexcept;

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t offset = none; // of the entry in m_text
    };

    // What an entry begins with; the name and the value follow.
    struct Header {
        std::uint32_t nameLength : 31;
        std::uint32_t cacheOnly : 1;
        std::uint32_t valueLength;
    };

    static constexpr std::uint32_t headerUnits = sizeof(Header) / sizeof(wchar);

    using Slots = std::vector<Slot, ArenaAllocator<Slot>>;
    using Text = std::basic_string<wchar, std::char_traits<wchar>, ArenaAllocator<wchar>>;

    Header HeaderAt(std::uint32_t offset) const noexcept {
        Header header;
        std::memcpy(&header, m_text.data() + offset, sizeof header);
        return header;
    }
    std::size_t EntryUnits(std::uint32_t offset) const noexcept {
        const Header header = HeaderAt(offset);
        return std::size_t{headerUnits} + header.nameLength + header.valueLength;
    }
    Tag At(std::uint32_t offset) const noexcept {
        const Header header = HeaderAt(offset);
        const wchar* const name = m_text.data() + offset + headerUnits;
        return {
            {name, header.nameLength}, {name + header.nameLength, header.valueLength}, header.cacheOnly != 0};
    }

    // The first slot to probe for a hash.
    std::size_t HomeOf(std::uint32_t hash) const noexcept {
        return static_cast<std::size_t>((std::uint64_t{hash} * m_slots.size()) >> 32);
    }
    std::size_t Next(std::size_t slot) const noexcept { return slot + 1 < m_slots.size() ? slot + 1 : 0; }
    std::size_t ProbeDistance(std::size_t from, std::size_t to) const noexcept {
        return to >= from ? to - from : to + m_slots.size() - from;
    }
    std::size_t FindSlot(wstring_view name, std::uint32_t hash) const noexcept;

    void Rehash(std::size_t slots);
    void ReserveText(std::size_t units) {
        if (m_text.capacity() - m_text.size() < units)
            MoveText(units);
    }
    void MoveText(std::size_t units);
    void CompactTo(Text& text) noexcept;
    std::uint32_t Append(wstring_view name, const ConfigValue& value);
    void Drop(std::uint32_t offset) noexcept;
    const std::vector<std::uint32_t>& Order() const;
    void PrefetchAfter(const std::uint32_t* at) const noexcept {
        constexpr std::ptrdiff_t ahead = 32;
        if (m_order.data() + m_order.size() - at > ahead)
            platform::Prefetch(m_text.data() + at[ahead]);
    }

    Text m_text;
    Slots m_slots;                              // at most half of them are used
    mutable std::vector<std::uint32_t> m_order; // offsets, or empty until the next iteration
    std::uint32_t m_size = 0;
    std::uint32_t m_cacheOnly = 0; // the number of cache-only tags
    std::uint32_t m_garbage = 0;   // units of m_text that belong to no entry
};

} // namespace corvane

// Names found without regard to letter case, by hash, and listed in the order of the cache.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace corvane {

/// A set of names that are unique under ConfigManager::CaseInsensitiveLess, each known by its index: 0 for
/// the first that was added. Names are kept in one text and keep their letter case. An operation that throws,
/// for lack of memory or of index numbers (std::length_error), has changed nothing. Not for use by two
/// threads at once, Order included.
class NameTable {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    NameTable() = default;
    /// The copy works its order out for itself: the other's may be coming up on another thread.
    NameTable(const NameTable& other);
    NameTable(NameTable&&) noexcept = default;
    NameTable& operator=(const NameTable&) = delete;
    NameTable& operator=(NameTable&&) noexcept = default;
    ~NameTable() = default;

    std::size_t Size() const noexcept { return m_entries.size(); }

    /// Lasts until the next change of the table.
    wstring_view Name(std::uint32_t index) const noexcept {
        return wstring_view(m_text).substr(m_entries[index].begin, m_entries[index].length);
    }

    /// The index of the name in any letter case, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept;

    /// Makes room for that many names at once.
    void Reserve(std::size_t names);

    /// Gives back the room for text that no name needs.
    void Shrink() { m_text.shrink_to_fit(); }

    /// Adds a name if it is not there yet. Gives its index, and whether it was added; a new one has the size
    /// of the table before as its index.
    std::pair<std::uint32_t, bool> Add(wstring_view name);

    /// Removes a name; the indices behind it move up by one. Cannot fail.
    void Remove(std::uint32_t index) noexcept;

    /// All indices in the order of the names. It is worked out when first asked for after a change.
    const std::vector<std::uint32_t>& Order() const;

private:
    struct Entry {
        std::uint32_t begin;
        std::uint32_t length;
        std::uint32_t hash;
    };

    std::uint32_t Find(wstring_view name, std::uint32_t hash) const noexcept;
    std::uint32_t& FreeSlotFor(std::uint32_t hash) noexcept;
    void Grow();
    void SetSlots(std::size_t count);
    void Relink() noexcept;

    std::vector<Entry> m_entries;
    wstring m_text;
    std::vector<std::uint32_t> m_slots; // open addressing: an index or `none`; a power of two, never full
    mutable std::vector<std::uint32_t> m_order; // not that of the table if it has another size
};

} // namespace corvane

// Names found without regard to letter case, by hash, and listed in the order of the cache.
#pragma once

#include <corvane/foundations/CaseFolding.h>
#include <corvane/manager/PlainArray.h>

#include <cstdint>
#include <utility>

namespace corvane {

/// A set of names that are unique under ConfigManager::CaseInsensitiveLess, each with a text and a mark, and
/// known by its index: 0 for the first that was added. All names and texts are kept in one text, each text
/// behind its name, so that a look-up touches little memory. Names keep their letter case. An operation that
/// throws, for lack of memory or of numbers (std::length_error, above 4 G units of text), has changed
/// nothing. Not for use by two threads at once, Order included.
class NameTable {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    NameTable() = default;
    /// The copy works its order out for itself: the other's may be coming up on another thread.
    NameTable(const NameTable& other);
    /// A copy in the pool's memory, without room for more than it holds.
    NameTable(const NameTable& other, MemoryPool& pool);
    NameTable(NameTable&&) noexcept = default;
    NameTable& operator=(const NameTable&) = delete;
    NameTable& operator=(NameTable&&) noexcept = default;
    ~NameTable() = default;

    std::size_t Size() const noexcept { return m_entries.Size(); }

    /// What belongs to an index. The views last until the next change of the table.
    wstring_view Name(std::uint32_t index) const noexcept {
        const Entry& entry = m_entries[index];
        return {m_text.begin() + entry.begin, entry.nameLength};
    }
    wstring_view Text(std::uint32_t index) const noexcept {
        const Entry& entry = m_entries[index];
        return {m_text.begin() + entry.begin + entry.nameLength, entry.textLength};
    }
    bool IsMarked(std::uint32_t index) const noexcept { return m_entries[index].marked; }

    /// The index of the name in any letter case, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept;

    /// Makes room for that many names at once.
    void Reserve(std::size_t names);

    /// Removes all names, and keeps the room that they had.
    void Clear() noexcept;

    /// Adds a name if it is not there yet. Gives its index, and whether it was added; a new one has the size
    /// of the table before as its index. None of the views may be of this table.
    std::pair<std::uint32_t, bool> Add(wstring_view name, wstring_view text = {}, bool marked = false);

    /// Gives a name another text, which is not of this table, and another mark.
    void Assign(std::uint32_t index, wstring_view text, bool marked);

    /// Removes a name; the indices behind it move up by one. Cannot fail.
    void Remove(std::uint32_t index) noexcept;

    /// All indices in the order of the names. It is worked out when first asked for after a change.
    const PlainArray<std::uint32_t>& Order() const;

private:
    struct Entry {
        std::uint32_t begin;
        std::uint32_t nameLength;
        std::uint32_t textLength;
        std::uint32_t hash : 31;
        std::uint32_t marked : 1;

        std::size_t Length() const noexcept { return std::size_t{nameLength} + textLength; }
    };

    std::size_t SlotOf(std::uint32_t hash) const noexcept {
        return static_cast<std::size_t>((std::uint64_t{hash} * m_slots.Size()) >> 31);
    }
    bool IsAt(std::uint32_t index, wstring_view name, std::uint32_t hash) const noexcept {
        return m_entries[index].hash == hash && SameIgnoringCase(Name(index), name);
    }
    std::uint32_t HashOf(wstring_view name) const noexcept;
    std::size_t SlotFor(wstring_view name, std::uint32_t hash) const noexcept;
    bool IsFar(std::size_t slot, std::uint32_t hash) const noexcept;
    void UseKeyedHash() noexcept;
    void RoomForEntry();
    void RoomForText(std::size_t units);
    void AppendText(wstring_view text) noexcept { m_text.Append(text.data(), text.size()); }
    void GiveBackUnused() noexcept;
    void MoveText(std::size_t room);
    void Relink() noexcept;

    PlainArray<Entry> m_entries;
    PlainArray<wchar> m_text;
    PlainArray<std::uint32_t> m_slots; // open addressing: an index or `none`, at most half of them taken
    mutable PlainArray<std::uint32_t> m_order; // not that of the table if it has another size
    std::size_t m_unused = 0;                  // units of m_text that no entry has any more
    bool m_keyed = false;                      // the hash is KeyedHash: too many names had the same quick one
};

} // namespace corvane

// Names found without regard to letter case, by hash, and listed in the order of the cache.
#pragma once

#include <corvane/foundations/CaseFolding.h>
#include <corvane/manager/PlainArray.h>
#include <corvane/platform/Prefetch.h>

#include <cstdint>
#include <cstring>

namespace corvane {

/// A set of names that are unique under ConfigManager::CaseInsensitiveLess, each with a text and a mark, and
/// known by its place, which lasts until the next change of the table. Everything about a name lies together
/// in one text, and the hash of the name stands beside its place, so that a look-up touches little memory.
/// Names keep their letter case. An operation that throws, for lack of memory or of numbers
/// (std::length_error: about 4 G units of text, 2 G of one name), has changed nothing. Not for use by two
/// threads at once, Order included.
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

    std::size_t Size() const noexcept { return m_size; }

    /// What belongs to a place. The views last until the next change of the table.
    wstring_view Name(std::uint32_t place) const noexcept {
        return {m_text.begin() + place + headUnits, HeadAt(place).nameLength};
    }
    wstring_view Text(std::uint32_t place) const noexcept {
        const Head head = HeadAt(place);
        return {m_text.begin() + place + headUnits + head.nameLength, head.textLength};
    }
    bool IsMarked(std::uint32_t place) const noexcept { return HeadAt(place).marked != 0; }

    /// Has the processor fetch the name from memory: worth it for many names one after the other.
    void Prefetch(std::uint32_t place) const noexcept { platform::Prefetch(m_text.begin() + place); }

    /// The place of the name in any letter case, or `none`.
    std::uint32_t Find(wstring_view name) const noexcept;

    /// Calls `visit` with every place, in no order that means anything. It may not change the table.
    template <class Visit>
    void ForEach(Visit visit) const {
        for (const Slot& slot : m_slots) {
            if (slot.place != none)
                visit(slot.place);
        }
    }

    /// Makes room for that many names at once, and for that many units of names and texts.
    void Reserve(std::size_t names, std::size_t units = 0);

    /// Removes all names, and keeps the room that they had.
    void Clear() noexcept;

    /// Adds a name if it is not there yet; says whether it did. None of the views may be of this table.
    bool Add(wstring_view name, wstring_view text = {}, bool marked = false);

    /// Gives a name another text, which is not of this table, and another mark.
    void Assign(std::uint32_t place, wstring_view text, bool marked);

    /// Removes a name. Cannot fail.
    void Remove(std::uint32_t place) noexcept;

    /// All places in the order of the names. It is worked out when first asked for after a change.
    const PlainArray<std::uint32_t>& Order() const;

private:
    // Where a name stands, and its hash.
    struct Slot {
        std::uint32_t hash;
        std::uint32_t place; // or `none` in a free slot
    };

    static constexpr std::uint32_t headUnits = 4;

    // What stands in the text before a name. Behind it come the name and its text.
    struct Head {
        std::uint32_t nameLength : 31;
        std::uint32_t marked : 1;
        std::uint32_t textLength;

        std::uint32_t Length() const noexcept { return headUnits + nameLength + textLength; }
    };

    static_assert(sizeof(Head) == headUnits * sizeof(wchar));

    Head HeadAt(std::uint32_t place) const noexcept {
        Head head;
        std::memcpy(&head, m_text.begin() + place, sizeof head);
        return head;
    }
    std::size_t SlotOf(std::uint32_t hash) const noexcept {
        return static_cast<std::size_t>((std::uint64_t{hash} * m_slots.Size()) >> 32);
    }
    std::size_t Behind(std::size_t slot) const noexcept { return slot + 1 < m_slots.Size() ? slot + 1 : 0; }
    std::size_t Way(std::size_t from, std::size_t to) const noexcept {
        return to >= from ? to - from : to + m_slots.Size() - from;
    }
    std::uint32_t HashOf(wstring_view name) const noexcept;
    std::size_t SlotFor(wstring_view name, std::uint32_t hash) const noexcept;
    std::size_t SlotWith(std::uint32_t place) const noexcept;
    bool IsFar(std::size_t slot, std::uint32_t hash) const noexcept;
    void MakeSlots(std::size_t count, bool keyed);
    void RoomForName();
    void RoomForText(std::size_t units);
    std::uint32_t MoveToEnd(std::uint32_t place, std::size_t textUnits);
    void GiveBackUnused() noexcept;
    void MoveText(std::size_t room);

    PlainArray<wchar> m_text;
    PlainArray<Slot> m_slots;                  // open addressing: at most half of them are taken
    mutable PlainArray<std::uint32_t> m_order; // not that of the table if it has another size
    std::uint32_t m_size = 0;
    std::uint32_t m_unused = 0; // units of m_text that no name has any more
    bool m_keyed = false;       // the hash is KeyedHash: too many names had the same quick one
};

} // namespace corvane

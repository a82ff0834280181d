#include <corvane/manager/NameTable.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {
namespace {

constexpr std::size_t leastNames = 4;
constexpr std::size_t mostText = 0xFFFFFFFF;
constexpr std::uint32_t longestName = 0x7FFFFFFF; // what a head has room for

// At least half of them are free.
constexpr std::size_t SlotsFor(std::size_t names) noexcept {
    return names * 2;
}

} // namespace

NameTable::NameTable(const NameTable& other)
    : m_text(other.m_text), m_slots(other.m_slots), m_size(other.m_size), m_unused(other.m_unused),
      m_keyed(other.m_keyed) {}

NameTable::NameTable(const NameTable& other, MemoryPool& pool)
    : m_text(other.m_text, pool), m_slots(other.m_slots, pool), m_size(other.m_size),
      m_unused(other.m_unused), m_keyed(other.m_keyed) {}

std::uint32_t NameTable::Find(wstring_view name) const noexcept {
    return m_slots.Empty() ? none : m_slots[SlotFor(name, HashOf(name))].place;
}

bool NameTable::Add(wstring_view name, wstring_view text, bool marked) {
    RoomForName();
    std::uint32_t hash = HashOf(name);
    std::size_t at = SlotFor(name, hash);
    if (m_slots[at].place != none)
        return false;
    if (IsFar(at, hash)) {
        MakeSlots(m_slots.Size(), true);
        hash = HashOf(name);
        at = SlotFor(name, hash);
    }
    if (name.size() > longestName)
        throw std::length_error("name too long");
    RoomForText(headUnits + name.size() + text.size());
    m_slots[at] = {hash, static_cast<std::uint32_t>(m_text.Size())};
    Head head{static_cast<std::uint32_t>(name.size()) & longestName, marked ? 1U : 0U,
              static_cast<std::uint32_t>(text.size())};
    wchar units[headUnits];
    std::memcpy(units, &head, sizeof head);
    m_text.Append(units, headUnits);
    m_text.Append(name.data(), name.size());
    m_text.Append(text.data(), text.size());
    ++m_size;
    return true;
}

void NameTable::Assign(std::uint32_t place, wstring_view text, bool marked) {
    const std::uint32_t room = HeadAt(place).textLength;
    if (text.size() > room) {
        place = MoveToEnd(place, text.size());
        m_text.Append(text.data(), text.size());
    } else {
        m_unused += room - static_cast<std::uint32_t>(text.size());
        std::copy(text.begin(), text.end(), m_text.begin() + place + headUnits + HeadAt(place).nameLength);
    }
    Head head = HeadAt(place);
    head.marked = marked ? 1U : 0U;
    head.textLength = static_cast<std::uint32_t>(text.size());
    std::memcpy(m_text.begin() + place, &head, sizeof head);
    GiveBackUnused();
}

void NameTable::Remove(std::uint32_t place) noexcept {
    m_unused += HeadAt(place).Length();
    m_order.Clear();
    --m_size;
    std::size_t hole = SlotWith(place);
    for (std::size_t at = Behind(hole); m_slots[at].place != none; at = Behind(at)) {
        if (Way(SlotOf(m_slots[at].hash), at) >= Way(hole, at)) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole].place = none;
    GiveBackUnused();
}

const PlainArray<std::uint32_t>& NameTable::Order() const {
    if (m_order.Size() == m_size)
        return m_order;
    PlainArray<std::uint32_t> order;
    order.Reserve(m_size);
    ForEach([&order](std::uint32_t place) { order.Append(&place, 1); });
    std::sort(order.begin(), order.end(),
              [this](std::uint32_t a, std::uint32_t b) { return CaseInsensitiveLess()(Name(a), Name(b)); });
    m_order.Swap(order);
    return m_order;
}

void NameTable::Reserve(std::size_t names, std::size_t units) {
    if (SlotsFor(names) > m_slots.Size())
        MakeSlots(SlotsFor(names), m_keyed);
    if (units > 0)
        m_text.Reserve(names * headUnits + units);
}

void NameTable::Clear() noexcept {
    m_text.Clear();
    m_slots.Clear();
    m_order.Clear();
    m_size = 0;
    m_unused = 0;
    m_keyed = false;
}

std::uint32_t NameTable::HashOf(wstring_view name) const noexcept {
    return m_keyed ? KeyedHashIgnoringCase(name) : HashIgnoringCase(name);
}

// The name's slot, or the free one where it belongs. There are slots, and one of them is free.
std::size_t NameTable::SlotFor(wstring_view name, std::uint32_t hash) const noexcept {
    std::size_t at = SlotOf(hash);
    for (;; at = Behind(at)) {
        const Slot slot = m_slots[at];
        if (slot.place == none || (slot.hash == hash && SameIgnoringCase(Name(slot.place), name)))
            return at;
    }
}

std::size_t NameTable::SlotWith(std::uint32_t place) const noexcept {
    std::size_t at = SlotOf(HashOf(Name(place)));
    while (m_slots[at].place != place)
        at = Behind(at);
    return at;
}

// Whether a name would lie so far behind its first slot that the quick hash is no good for these names.
bool NameTable::IsFar(std::size_t slot, std::uint32_t hash) const noexcept {
    constexpr std::size_t longestWay = 256;
    return Way(SlotOf(hash), slot) > longestWay && !m_keyed;
}

void NameTable::MakeSlots(std::size_t count, bool keyed) {
    PlainArray<Slot> slots;
    if (m_size == 0) // in the room that there was
        slots.Swap(m_slots);
    slots.Reserve(count);
    slots.Fill(count, {0, none});
    slots.Swap(m_slots);
    const bool sameHash = keyed == m_keyed;
    m_keyed = keyed;
    for (const Slot& slot : slots) {
        if (slot.place == none)
            continue;
        const std::uint32_t hash = sameHash ? slot.hash : HashOf(Name(slot.place));
        std::size_t at = SlotOf(hash);
        while (m_slots[at].place != none)
            at = Behind(at);
        m_slots[at] = {hash, slot.place};
    }
}

void NameTable::RoomForName() {
    if (SlotsFor(m_size + 1) > m_slots.Size())
        Reserve(std::max(m_size * std::size_t{2}, leastNames));
}

void NameTable::RoomForText(std::size_t units) {
    const std::size_t used = m_text.Size() - m_unused;
    if (units > mostText - used)
        throw std::length_error("too much text");
    if (m_text.Size() + units <= m_text.Room())
        return;
    const std::size_t room = std::max(used + units, std::min(used * 2, mostText));
    if (m_unused == 0)
        m_text.Reserve(room);
    else
        MoveText(room);
}

// Puts a name behind all others, where its text may grow by that many units. The place of every name may be
// another afterwards; gives that of this one.
std::uint32_t NameTable::MoveToEnd(std::uint32_t place, std::size_t textUnits) {
    const std::size_t nameUnits = headUnits + HeadAt(place).nameLength;
    const std::size_t slot = SlotWith(place);
    RoomForText(nameUnits + textUnits);
    place = m_slots[slot].place;
    m_unused += HeadAt(place).Length();
    const auto end = static_cast<std::uint32_t>(m_text.Size());
    m_text.Append(m_text.begin() + place, nameUnits);
    m_slots[slot].place = end;
    std::replace(m_order.begin(), m_order.end(), place, end);
    return end;
}

// Cannot fail: where there is no memory for it, the text stays as it is. So does one in a pool, which takes
// nothing back.
void NameTable::GiveBackUnused() noexcept {
    constexpr std::size_t alwaysKept = 4096; // units
    if (m_text.Room() == 0 || m_unused <= m_text.Size() / 2 || m_unused <= alwaysKept)
        return;
    try {
        MoveText(m_text.Size() - m_unused);
    } catch (...) { // NOLINT(bugprone-empty-catch): it is tried again at the next change
    }
}

// To another room, leaving behind what no name has any more.
void NameTable::MoveText(std::size_t room) {
    PlainArray<wchar> text;
    text.Reserve(room);
    m_order.Clear();
    for (Slot& slot : m_slots) {
        if (slot.place == none)
            continue;
        const auto place = static_cast<std::uint32_t>(text.Size());
        text.Append(m_text.begin() + slot.place, HeadAt(slot.place).Length());
        slot.place = place;
    }
    m_text.Swap(text);
    m_unused = 0;
}

} // namespace corvane

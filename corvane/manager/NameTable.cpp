#include <corvane/manager/NameTable.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace corvane {
namespace {

constexpr std::size_t leastEntries = 4;
constexpr std::size_t slotsOfEntry = 2;
constexpr std::size_t mostText = 0xFFFFFFFF;
constexpr std::uint32_t mostHash = 0x7FFFFFFF; // what an entry has room for

} // namespace

NameTable::NameTable(const NameTable& other)
    : m_entries(other.m_entries), m_text(other.m_text), m_slots(other.m_slots), m_unused(other.m_unused),
      m_keyed(other.m_keyed) {}

NameTable::NameTable(const NameTable& other, MemoryPool& pool)
    : m_entries(other.m_entries, pool), m_text(other.m_text, pool), m_slots(other.m_slots, pool),
      m_unused(other.m_unused), m_keyed(other.m_keyed) {}

std::uint32_t NameTable::Find(wstring_view name) const noexcept {
    return m_slots.Empty() ? none : m_slots[SlotFor(name, HashOf(name))];
}

std::pair<std::uint32_t, bool> NameTable::Add(wstring_view name, wstring_view text, bool marked) {
    RoomForEntry();
    const std::uint32_t hash = HashOf(name);
    const std::size_t at = SlotFor(name, hash);
    if (m_slots[at] != none)
        return {m_slots[at], false};
    RoomForText(name.size() + text.size());
    const auto index = static_cast<std::uint32_t>(m_entries.Size());
    m_slots[at] = index;
    const Entry entry{static_cast<std::uint32_t>(m_text.Size()), static_cast<std::uint32_t>(name.size()),
                      static_cast<std::uint32_t>(text.size()), hash & mostHash, marked ? 1U : 0U};
    m_entries.Append(&entry, 1);
    AppendText(name);
    AppendText(text);
    if (IsFar(at, hash))
        UseKeyedHash();
    return {index, true};
}

void NameTable::Assign(std::uint32_t index, wstring_view text, bool marked) {
    if (text.size() > m_entries[index].textLength) {
        RoomForText(m_entries[index].nameLength + text.size());
        Entry& entry = m_entries[index];
        m_unused += entry.Length();
        const wstring_view name = Name(index);
        entry.begin = static_cast<std::uint32_t>(m_text.Size());
        AppendText(name);
        AppendText(text);
    } else {
        const Entry& entry = m_entries[index];
        m_unused += entry.textLength - text.size();
        std::copy(text.begin(), text.end(), m_text.begin() + entry.begin + entry.nameLength);
    }
    m_entries[index].textLength = static_cast<std::uint32_t>(text.size());
    m_entries[index].marked = marked ? 1U : 0U;
    GiveBackUnused();
}

void NameTable::Remove(std::uint32_t index) noexcept {
    m_unused += m_entries[index].Length();
    m_entries.Erase(index);
    m_order.Clear();
    Relink();
    GiveBackUnused();
}

const PlainArray<std::uint32_t>& NameTable::Order() const {
    if (m_order.Size() == m_entries.Size())
        return m_order;
    PlainArray<std::uint32_t> order;
    order.Reserve(m_entries.Size());
    order.Fill(m_entries.Size(), 0);
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [this](std::uint32_t a, std::uint32_t b) { return CaseInsensitiveLess()(Name(a), Name(b)); });
    m_order.Swap(order);
    return m_order;
}

void NameTable::Reserve(std::size_t names) {
    m_entries.Reserve(names);
    const std::size_t slots = names * slotsOfEntry;
    if (slots <= m_slots.Size())
        return;
    m_slots.Reserve(slots);
    m_slots.Fill(slots, none);
    Relink();
}

void NameTable::Clear() noexcept {
    m_entries.Clear();
    m_text.Clear();
    m_slots.Clear();
    m_order.Clear();
    m_unused = 0;
    m_keyed = false;
}

std::uint32_t NameTable::HashOf(wstring_view name) const noexcept {
    return (m_keyed ? KeyedHashIgnoringCase(name) : HashIgnoringCase(name)) & mostHash;
}

// The name's slot, or the free one where it belongs. There are slots, and one of them is free.
std::size_t NameTable::SlotFor(wstring_view name, std::uint32_t hash) const noexcept {
    const std::uint32_t* const slots = m_slots.begin();
    const std::size_t count = m_slots.Size();
    std::size_t at = SlotOf(hash);
    while (slots[at] != none && !IsAt(slots[at], name, hash)) {
        if (++at == count)
            at = 0;
    }
    return at;
}

// Whether a name lies so far behind its first slot that the quick hash is no good for these names.
bool NameTable::IsFar(std::size_t slot, std::uint32_t hash) const noexcept {
    constexpr std::size_t longestWay = 256;
    if (Size() <= longestWay || m_keyed)
        return false;
    const std::size_t first = SlotOf(hash);
    const std::size_t way = slot < first ? slot + m_slots.Size() - first : slot - first;
    return way > longestWay;
}

void NameTable::UseKeyedHash() noexcept {
    m_keyed = true;
    for (std::uint32_t index = 0; index < Size(); ++index)
        m_entries[index].hash = HashOf(Name(index)) & mostHash;
    Relink();
}

void NameTable::RoomForEntry() {
    const std::size_t names = m_entries.Size();
    if (names < m_entries.Room() && (names + 1) * slotsOfEntry <= m_slots.Size())
        return;
    if (names >= none / 2)
        throw std::length_error("too many names");
    Reserve(std::max(names * 2, leastEntries));
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

// To another room, leaving behind what no entry has any more.
void NameTable::MoveText(std::size_t room) {
    PlainArray<wchar> text;
    text.Reserve(room);
    for (Entry& entry : m_entries) {
        const auto begin = static_cast<std::uint32_t>(text.Size());
        text.Append(m_text.begin() + entry.begin, entry.Length());
        entry.begin = begin;
    }
    m_text.Swap(text);
    m_unused = 0;
}

void NameTable::Relink() noexcept {
    m_slots.Fill(m_slots.Size(), none);
    for (std::uint32_t index = 0; index < m_entries.Size(); ++index) {
        std::size_t at = SlotOf(m_entries[index].hash);
        while (m_slots[at] != none)
            at = at + 1 < m_slots.Size() ? at + 1 : 0;
        m_slots[at] = index;
    }
}

} // namespace corvane

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

std::uint32_t HashOf(wstring_view name) noexcept {
    return HashIgnoringCase(name) & mostHash;
}

} // namespace

NameTable::NameTable(const NameTable& other)
    : m_entries(other.m_entries), m_text(other.m_text), m_unused(other.m_unused), m_slots(other.m_slots) {}

std::uint32_t NameTable::Find(wstring_view name) const noexcept {
    return m_slots.empty() ? none : m_slots[SlotFor(name, HashOf(name))];
}

std::pair<std::uint32_t, bool> NameTable::Add(wstring_view name, wstring_view text, bool marked) {
    RoomForEntry();
    const std::uint32_t hash = HashOf(name);
    std::uint32_t& slot = m_slots[SlotFor(name, hash)];
    if (slot != none)
        return {slot, false};
    RoomForText(name.size() + text.size());
    slot = static_cast<std::uint32_t>(m_entries.size());
    m_entries.push_back({static_cast<std::uint32_t>(m_text.size()), static_cast<std::uint32_t>(name.size()),
                         static_cast<std::uint32_t>(text.size()), hash & mostHash, marked ? 1U : 0U});
    m_text.append(name).append(text);
    return {slot, true};
}

void NameTable::Assign(std::uint32_t index, wstring_view text, bool marked) {
    if (text.size() > m_entries[index].textLength) {
        const std::size_t length = m_entries[index].nameLength + text.size();
        RoomForText(length);
        Entry& entry = m_entries[index];
        m_unused += entry.Length();
        const auto begin = static_cast<std::uint32_t>(m_text.size());
        m_text.append(m_text, entry.begin, entry.nameLength).append(text);
        entry.begin = begin;
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
    m_entries.erase(m_entries.begin() + index);
    m_order.clear();
    Relink();
    GiveBackUnused();
}

const std::vector<std::uint32_t>& NameTable::Order() const {
    if (m_order.size() == m_entries.size())
        return m_order;
    std::vector<std::uint32_t> order(m_entries.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [this](std::uint32_t a, std::uint32_t b) { return CaseInsensitiveLess()(Name(a), Name(b)); });
    m_order.swap(order);
    return m_order;
}

void NameTable::Reserve(std::size_t names) {
    constexpr std::size_t unitsOfEntry = 40;                   // of an ordinary name and value
    constexpr std::size_t mostReserved = std::size_t{1} << 20; // before there is any text
    RoomForEntries(names);
    m_text.reserve(std::min(names * unitsOfEntry, mostReserved));
}

void NameTable::Shrink() {
    if (m_text.capacity() - m_text.size() > m_text.size() / 4) // less is not worth a second copy for a while
        m_text.shrink_to_fit();
}

// The name's slot, or the free one where it belongs. There are slots, and one of them is free.
std::size_t NameTable::SlotFor(wstring_view name, std::uint32_t hash) const noexcept {
    const std::uint32_t* const slots = m_slots.data();
    const std::size_t count = m_slots.size();
    std::size_t at = SlotOf(hash);
    while (slots[at] != none && !IsAt(slots[at], name, hash)) {
        if (++at == count)
            at = 0;
    }
    return at;
}

void NameTable::RoomForEntry() {
    const std::size_t names = m_entries.size();
    if (names < m_entries.capacity() && (names + 1) * slotsOfEntry <= m_slots.size())
        return;
    if (names >= none / 2)
        throw std::length_error("too many names");
    RoomForEntries(std::max(names * 2, leastEntries));
}

void NameTable::RoomForEntries(std::size_t names) {
    m_entries.reserve(names);
    if (names * slotsOfEntry > m_slots.size())
        SetSlots(names * slotsOfEntry);
}

void NameTable::RoomForText(std::size_t units) {
    const std::size_t used = m_text.size() - m_unused;
    if (units > mostText - used)
        throw std::length_error("too much text");
    if (std::min(m_text.capacity(), mostText) - m_text.size() >= units)
        return;
    const std::size_t room = std::max(used + units, std::min(used * 2, mostText));
    if (m_unused == 0)
        m_text.reserve(room);
    else
        MoveText(room);
}

// Cannot fail: where there is no memory for it, the text stays as it is.
void NameTable::GiveBackUnused() noexcept {
    constexpr std::size_t alwaysKept = 4096; // units
    if (m_unused <= m_text.size() / 2 || m_unused <= alwaysKept)
        return;
    try {
        MoveText(m_text.size() - m_unused);
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): it is tried again at the next change
    }
}

// To another room, leaving behind what no entry has any more.
void NameTable::MoveText(std::size_t room) {
    wstring text;
    text.reserve(room);
    for (Entry& entry : m_entries) {
        const auto begin = static_cast<std::uint32_t>(text.size());
        text.append(m_text, entry.begin, entry.Length());
        entry.begin = begin;
    }
    m_text.swap(text);
    m_unused = 0;
}

void NameTable::SetSlots(std::size_t count) {
    std::vector<std::uint32_t>(count, none).swap(m_slots);
    Relink();
}

void NameTable::Relink() noexcept {
    std::fill(m_slots.begin(), m_slots.end(), none);
    for (std::uint32_t index = 0; index < m_entries.size(); ++index) {
        std::size_t at = SlotOf(m_entries[index].hash);
        while (m_slots[at] != none)
            at = at + 1 < m_slots.size() ? at + 1 : 0;
        m_slots[at] = index;
    }
}

} // namespace corvane

#include <corvane/foundations/CaseFolding.h>
#include <corvane/manager/NameTable.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace corvane {
namespace {

constexpr std::size_t leastSlots = 8;
constexpr std::size_t mostText = 0xFFFFFFFF;

} // namespace

std::uint32_t NameTable::Find(wstring_view name) const noexcept {
    return Find(name, HashIgnoringCase(name));
}

std::uint32_t NameTable::Find(wstring_view name, std::uint32_t hash) const noexcept {
    if (m_slots.empty())
        return none;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t at = hash & mask; m_slots[at] != none; at = (at + 1) & mask) {
        const std::uint32_t index = m_slots[at];
        if (m_entries[index].hash == hash && SameIgnoringCase(Name(index), name))
            return index;
    }
    return none;
}

std::pair<std::uint32_t, bool> NameTable::Add(wstring_view name) {
    const std::uint32_t hash = HashIgnoringCase(name);
    if (const std::uint32_t index = Find(name, hash); index != none)
        return {index, false};
    if (name.size() > mostText - m_text.size() || m_entries.size() >= none / 2)
        throw std::length_error("too many names");
    Grow();
    const auto begin = static_cast<std::uint32_t>(m_text.size());
    const auto index = static_cast<std::uint32_t>(m_entries.size());
    m_text.append(name);
    FreeSlotFor(hash) = index;
    m_entries.push_back({begin, static_cast<std::uint32_t>(name.size()), hash});
    return {index, true};
}

void NameTable::Remove(std::uint32_t index) noexcept {
    const Entry gone = m_entries[index];
    m_text.erase(gone.begin, gone.length);
    m_entries.erase(m_entries.begin() + index);
    for (Entry& entry : m_entries)
        entry.begin -= entry.begin > gone.begin ? gone.length : 0;
    m_order.clear();
    Relink();
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

NameTable::NameTable(const NameTable& other)
    : m_entries(other.m_entries), m_text(other.m_text), m_slots(other.m_slots) {}

std::uint32_t& NameTable::FreeSlotFor(std::uint32_t hash) noexcept {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = hash & mask;
    while (m_slots[at] != none)
        at = (at + 1) & mask;
    return m_slots[at];
}

// Makes room for one more name, before anything changes: at most two of three slots are taken.
void NameTable::Grow() {
    if (m_entries.size() == m_entries.capacity())
        m_entries.reserve(std::max<std::size_t>(m_entries.size() * 2, 4));
    if ((m_entries.size() + 1) * 3 > m_slots.size() * 2)
        SetSlots(std::max(m_slots.size() * 2, leastSlots));
}

void NameTable::Reserve(std::size_t names) {
    m_entries.reserve(names);
    std::size_t slots = leastSlots;
    while (names * 3 > slots * 2)
        slots *= 2;
    if (slots > m_slots.size())
        SetSlots(slots);
}

void NameTable::SetSlots(std::size_t count) {
    std::vector<std::uint32_t>(count, none).swap(m_slots);
    Relink();
}

void NameTable::Relink() noexcept {
    std::fill(m_slots.begin(), m_slots.end(), none);
    for (std::uint32_t index = 0; index < m_entries.size(); ++index)
        FreeSlotFor(m_entries[index].hash) = index;
}

} // namespace corvane

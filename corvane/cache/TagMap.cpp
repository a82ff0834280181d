#include <corvane/cache/NameHash.h>
#include <corvane/cache/TagMap.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {

TagMap::TagMap(const TagMap& other, Arena* arena)
    : m_text(other.m_text, ArenaAllocator<wchar>(arena)), m_slots(other.m_slots, ArenaAllocator<Slot>(arena)),
      m_size(other.m_size), m_cacheOnly(other.m_cacheOnly), m_garbage(other.m_garbage) {}

std::optional<TagMap::Tag> TagMap::Find(wstring_view name) const noexcept {
    if (m_size == 0)
        return {};
    const std::uint32_t offset = m_slots[FindSlot(name, HashIgnoringCase(name))].offset;
    if (offset == none)
        return {};
    return At(offset);
}

void TagMap::Reserve(std::size_t tags) {
    constexpr std::size_t unitsOfTag = 48;    // or fewer, in most files; unused memory is never touched
    constexpr std::size_t mostTags = 100'000; // a huge file may hold many without a value
    ReserveText(std::min(tags, mostTags) * unitsOfTag);
    if (tags * 2 > m_slots.size())
        Rehash(tags * 2);
}

bool TagMap::Insert(wstring_view name, const ConfigValue& value) {
    constexpr std::size_t minSlots = 8;
    if ((m_size + std::size_t{1}) * 2 > m_slots.size())
        Rehash(std::max(m_size * std::size_t{4}, minSlots));
    const std::uint32_t hash = HashIgnoringCase(name);
    Slot& slot = m_slots[FindSlot(name, hash)];
    if (slot.offset != none)
        return false;
    slot = {hash, Append(name, value)};
    ++m_size;
    return true;
}

void TagMap::Assign(wstring_view name, const ConfigValue& value) {
    if (!Find(name)) {
        Insert(name, value);
        return;
    }
    Slot& slot = m_slots[FindSlot(name, HashIgnoringCase(name))];
    ReserveText(EntryUnits(slot.offset) + value.value.size()); // from here on the stored name does not move
    const std::uint32_t offset = Append(At(slot.offset).name, value);
    Drop(slot.offset);
    slot.offset = offset;
}

bool TagMap::Erase(wstring_view name) noexcept {
    if (m_size == 0)
        return false;
    std::size_t hole = FindSlot(name, HashIgnoringCase(name));
    if (m_slots[hole].offset == none)
        return false;
    Drop(m_slots[hole].offset);
    --m_size;
    for (std::size_t at = Next(hole); m_slots[at].offset != none; at = Next(at)) {
        if (ProbeDistance(HomeOf(m_slots[at].hash), at) >= ProbeDistance(hole, at)) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole].offset = none;
    return true;
}

void TagMap::Clear() noexcept {
    m_text.clear();
    m_slots.clear();
    m_order.clear();
    m_size = 0;
    m_cacheOnly = 0;
    m_garbage = 0;
}

// The slot of the name, or the free one where it belongs. Requires slots, at least one of them free.
std::size_t TagMap::FindSlot(wstring_view name, std::uint32_t hash) const noexcept {
    for (std::size_t at = HomeOf(hash);; at = Next(at)) {
        const Slot slot = m_slots[at];
        if (slot.offset == none || (slot.hash == hash && SameIgnoringCase(At(slot.offset).name, name)))
            return at;
    }
}

void TagMap::Rehash(std::size_t slots) {
    Slots old(slots);
    old.swap(m_slots);
    for (const Slot& slot : old) {
        if (slot.offset == none)
            continue;
        std::size_t at = HomeOf(slot.hash);
        while (m_slots[at].offset != none)
            at = Next(at);
        m_slots[at] = slot;
    }
}

// Moves the text to the heap, with capacity for that many more units and without the garbage.
void TagMap::MoveText(std::size_t units) {
    constexpr std::size_t maxText = 0x7FFFFFFF; // so that every length fits its field of a header
    const std::size_t used = m_text.size() - m_garbage;
    if (units > maxText - used)
        throw std::length_error("too much text in a section");
    Text text;
    text.reserve(used + std::max(used, units));
    if (m_garbage == 0)
        text.append(m_text);
    else
        CompactTo(text);
    m_text = std::move(text);
}

// `text` has the capacity for all entries.
void TagMap::CompactTo(Text& text) noexcept {
    for (Slot& slot : m_slots) {
        if (slot.offset == none)
            continue;
        const auto offset = static_cast<std::uint32_t>(text.size());
        text.append(m_text, slot.offset, EntryUnits(slot.offset));
        slot.offset = offset;
    }
    m_order.clear();
    m_garbage = 0;
}

std::uint32_t TagMap::Append(wstring_view name, const ConfigValue& value) {
    ReserveText(headerUnits + name.size() + value.value.size());
    Header header{};
    header.nameLength = static_cast<std::uint32_t>(name.size()) & 0x7FFFFFFF;
    header.cacheOnly = value.cacheOnly ? 1 : 0;
    header.valueLength = static_cast<std::uint32_t>(value.value.size());
    wchar units[headerUnits];
    std::memcpy(units, &header, sizeof header);
    const auto offset = static_cast<std::uint32_t>(m_text.size());
    m_text.append(units, headerUnits).append(name).append(value.value);
    m_cacheOnly += header.cacheOnly;
    m_order.clear();
    return offset;
}

void TagMap::Drop(std::uint32_t offset) noexcept {
    m_garbage += static_cast<std::uint32_t>(EntryUnits(offset));
    m_cacheOnly -= HeaderAt(offset).cacheOnly;
    m_order.clear();
}

const std::vector<std::uint32_t>& TagMap::Order() const {
    if (m_order.size() == m_size)
        return m_order;
    std::vector<std::uint32_t> order;
    order.reserve(m_size);
    for (const Slot& slot : m_slots) {
        if (slot.offset != none)
            order.push_back(slot.offset);
    }
    std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
        return CaseInsensitiveLess()(At(a).name, At(b).name);
    });
    m_order.swap(order);
    return m_order;
}

} // namespace corvane

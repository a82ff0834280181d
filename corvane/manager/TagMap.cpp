#include <corvane/manager/TagMap.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {

TagMap::Tag TagMap::At(std::uint32_t index) const noexcept {
    const Value& value = m_values[index];
    return {m_names.Name(index), wstring_view(m_text).substr(value.begin, value.length), value.cacheOnly};
}

void TagMap::Reserve(std::size_t tags) {
    m_values.reserve(tags);
    m_names.Reserve(tags);
}

void TagMap::Shrink() {
    m_text.shrink_to_fit();
    m_names.Shrink();
}

void TagMap::Insert(const Tag& tag) {
    if (m_values.size() == m_values.capacity())
        m_values.reserve(std::max<std::size_t>(m_values.size() * 2, 4));
    const auto [index, added] = m_names.Add(tag.name);
    if (!added)
        return;
    try {
        m_values.push_back(Append(tag));
    } catch (...) {
        m_names.Remove(index);
        throw;
    }
}

void TagMap::Assign(const Tag& tag) {
    const std::uint32_t index = Find(tag.name);
    if (index == none)
        return Insert(tag);
    Value& old = m_values[index];
    if (tag.value.size() > old.length) {
        const Value value = Append(tag);
        m_unused += old.length;
        old = value;
        return;
    }
    std::copy(tag.value.begin(), tag.value.end(), m_text.begin() + old.begin);
    m_unused += old.length - tag.value.size();
    old.length = static_cast<std::uint32_t>(tag.value.size());
    old.cacheOnly = tag.cacheOnly;
}

bool TagMap::Erase(wstring_view name) noexcept {
    const std::uint32_t index = Find(name);
    if (index == none)
        return false;
    m_unused += m_values[index].length;
    m_values.erase(m_values.begin() + index);
    m_names.Remove(index);
    return true;
}

TagMap::Value TagMap::Append(const Tag& tag) {
    constexpr std::size_t most = 0xFFFFFFFF;
    if (m_unused > m_text.size() / 2)
        Compact();
    if (tag.value.size() > most - m_text.size())
        throw std::length_error("too much text in one section");
    const auto begin = static_cast<std::uint32_t>(m_text.size());
    m_text.append(tag.value);
    return {begin, static_cast<std::uint32_t>(tag.value.size()), tag.cacheOnly};
}

void TagMap::Compact() {
    wstring text;
    text.reserve(m_text.size() - m_unused);
    for (const Value& value : m_values)
        text.append(m_text, value.begin, value.length);
    std::uint32_t begin = 0;
    for (Value& value : m_values) {
        value.begin = begin;
        begin += value.length;
    }
    m_text.swap(text);
    m_unused = 0;
}

} // namespace corvane

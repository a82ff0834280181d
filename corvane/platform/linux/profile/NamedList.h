// Items looked up by their names in a private-profile file.
#pragma once

#include <corvane/platform/linux/profile/ProfileLine.h>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane::os {

/// Items in the order in which they were added, each with a `name` that SameName distinguishes from all
/// others. The names are views of texts that outlive the list. Lookup takes constant time on average.
template <class Item>
class NamedList {
public:
    auto begin() noexcept { return m_items.begin(); }
    auto end() noexcept { return m_items.end(); }
    auto begin() const noexcept { return m_items.begin(); }
    auto end() const noexcept { return m_items.end(); }

    /// The item, valid until the next one is added, or null.
    Item* Find(std::string_view name) {
        const auto position = m_positions.find(name);
        return position == m_positions.end() ? nullptr : &m_items[position->second];
    }

    Item& FindOrAdd(std::string_view name) {
        const auto [position, isNew] = m_positions.emplace(name, m_items.size());
        if (isNew)
            m_items.emplace_back().name = name;
        return m_items[position->second];
    }

private:
    struct Hash {
        std::size_t operator()(std::string_view name) const { return HashName(name); }
    };
    struct Same {
        bool operator()(std::string_view a, std::string_view b) const { return SameName(a, b); }
    };

    std::vector<Item> m_items;
    std::unordered_map<std::string_view, std::size_t, Hash, Same> m_positions;
};

} // namespace corvane::os

// Things found by the name that they have in a private-profile file.
#pragma once

#include <corvane/platform/linux/profile/ProfileLine.h>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane::os {

/// Items in the order in which they were added, each with a `name` of its own as SameName tells names apart.
/// The names are views of texts that outlive the list. Takes about the same time to find one of any number of
/// items, whatever their names.
template <class Item>
class NamedList {
public:
    auto begin() noexcept { return m_items.begin(); }
    auto end() noexcept { return m_items.end(); }
    auto begin() const noexcept { return m_items.begin(); }
    auto end() const noexcept { return m_items.end(); }

    /// The item, which stays where it is until the next one is added, or null.
    Item* Find(std::string_view name) {
        if (m_places.empty()) {
            for (Item& item : m_items)
                if (SameName(item.name, name))
                    return &item;
            return nullptr;
        }
        const auto place = m_places.find(name);
        return place == m_places.end() ? nullptr : &m_items[place->second];
    }

    Item& FindOrAdd(std::string_view name) {
        if (Item* const item = Find(name))
            return *item;
        m_items.emplace_back().name = name;
        if (m_items.size() > fewItems) {
            for (std::size_t place = m_places.size(); place < m_items.size(); ++place)
                m_places.emplace(m_items[place].name, place);
        }
        return m_items.back();
    }

private:
    static constexpr std::size_t fewItems = 4; // are as quickly compared with as hashed

    struct Hash {
        std::size_t operator()(std::string_view name) const { return HashName(name); }
    };
    struct Same {
        bool operator()(std::string_view a, std::string_view b) const { return SameName(a, b); }
    };

    std::vector<Item> m_items;
    std::unordered_map<std::string_view, std::size_t, Hash, Same> m_places; // none while the items are few
};

} // namespace corvane::os

// The whole content of a settings file, including what no key reaches: empty values, sections with a colon,
// repeated tags.
#pragma once

#include <corvane/config.h>

#include <map>
#include <string>
#include <vector>

/// Items with a name, in the order in which they were added. Lookups ignore letter case.
template <class Item>
class NamedList {
public:
    /// Adds an item, or returns the existing one of that name.
    Item& Add(const std::string& name) {
        const auto [place, isNew] = m_places.emplace(corvane::ToWide(name), m_items.size());
        if (isNew)
            m_items.push_back(Item{name, {}});
        return m_items[place->second];
    }

    /// The item of that name, or null.
    const Item* Find(const std::string& name) const {
        const auto place = m_places.find(corvane::ToWide(name));
        return place == m_places.end() ? nullptr : &m_items[place->second];
    }

    std::vector<const Item*> InOrder(bool sorted = false) const {
        std::vector<const Item*> items;
        items.reserve(m_items.size());
        if (sorted)
            for (const auto& [name, place] : m_places)
                items.push_back(&m_items[place]);
        else
            for (const Item& item : m_items)
                items.push_back(&item);
        return items;
    }

private:
    std::vector<Item> m_items;
    std::map<corvane::wstring, std::size_t, ConfigManager::CaseInsensitiveLess> m_places;
};

struct Tag {
    std::string name;
    std::vector<std::string> values; ///< of all lines with this tag; the first one counts

    const std::string& Value() const { return values.front(); }
};

struct Section {
    std::string name;
    NamedList<Tag> tags;

    /// Whether keys reach it: they end the section at the first colon.
    bool HasKeys() const { return name.find(':') == std::string::npos; }
};

using Settings = NamedList<Section>;

/// Reads the file of a loaded manager, in its order. A repeated section counts once.
Settings ReadSettings(ConfigManager& config);

/// Whether both have the same sections, tags and values, in any order.
bool SameSettings(const Settings& a, const Settings& b);

/// Prints what differs: "-Section:Tag=value" as it was, then "+Section:Tag=value" as it is. Returns whether
/// anything does.
bool PrintDifferences(const Settings& before, const Settings& after);

// Sections and tags for a range-for, in UTF-8. What is listed is a copy: the loop may change the
// configuration.
#pragma once

#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// One tag of a section and its value, in UTF-8.
struct TagValue {
    std::string tag;   ///< the name, in the letter case of the file
    std::string value; ///< the text
};

/// The names of all sections, in the order of the cache.
inline std::vector<std::string> Sections(const ConfigManager& config) {
    std::vector<wstring> names;
    config.EnumerateSubKeys(names);
    std::vector<std::string> sections;
    sections.reserve(names.size());
    for (const wstring& name : names)
        sections.push_back(ToUtf8(name));
    return sections;
}

/// The tags of a section with their values, in the order of the cache; none if there is no such section. A
/// tag that another thread deletes meanwhile is left out.
inline std::vector<TagValue> Tags(ConfigManager& config, std::string_view section) {
    const wstring sectionKey = ToWide(section) + CORVANE_TEXT(':');
    std::vector<wstring> names;
    config.EnumerateTags(sectionKey, names);
    std::vector<TagValue> tags;
    tags.reserve(names.size());
    wstring value;
    for (const wstring& name : names)
        if (config.GetValue(sectionKey + name, value) == 0)
            tags.push_back({ToUtf8(name), ToUtf8(value)});
    return tags;
}

} // namespace corvane

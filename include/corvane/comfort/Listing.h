// Sections and tags for a range-based for, in UTF-8. They are copies: the loop may change the configuration.
#pragma once

#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// One tag of a section and its value, in UTF-8.
struct TagValue {
    std::string tag;   ///< the name, in the letter case of the file
    std::string value; ///< the text
};

/// The names of all sections, in the order of the cache.
CORVANE_API std::vector<std::string> Sections(const ConfigManager& config);

/// The tags of a section with their values, in the order of the cache, all as of one moment; none if there is
/// no such section.
CORVANE_API std::vector<TagValue> Tags(const ConfigManager& config, std::string_view section);

} // namespace corvane

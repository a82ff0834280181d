#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/Listing.h>

namespace corvane {

std::vector<std::string> Sections(const ConfigManager& config) {
    std::vector<wstring> names;
    config.EnumerateSubKeys(names);
    std::vector<std::string> sections;
    sections.reserve(names.size());
    for (const wstring& name : names)
        sections.push_back(ToUtf8(name));
    return sections;
}

std::vector<TagValue> Tags(const ConfigManager& config, std::string_view section) {
    const wstring sectionKey = ToWide(section) + CORVANE_TEXT(':');
    std::vector<TagValue> tags;
    ComfortAccess::Locked([&] {
        std::vector<wstring> names;
        config.EnumerateTags(sectionKey, names);
        tags.reserve(names.size());
        wstring value;
        for (const wstring& name : names)
            if (ComfortAccess::Read(config, sectionKey + name, value) == 0)
                tags.push_back({ToUtf8(name), ToUtf8(value)});
    });
    return tags;
}

} // namespace corvane

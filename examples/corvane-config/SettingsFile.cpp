#include "SettingsFile.h"

#include "Failure.h"

#include <filesystem>

namespace {

Failure NotAKey(const std::string& text) {
    return {Usage, "'" + text + "' is not a key; expected SECTION:TAG"};
}

// Refuses a:b:c where the file has [a:b]: to a key that is tag "b:c" of section [a].
void RefuseSectionWithColon(const Settings& settings, const Key& key) {
    const std::string text = key.Text();
    for (std::size_t colon = text.find(':', key.section.size() + 1); colon != std::string::npos;
         colon = text.find(':', colon + 1))
        if (const Section* const section = settings.Find(text.substr(0, colon)))
            throw Failure(Refused, "section [" + section->name +
                                       "] cannot be reached by a key, because its name has a colon: '" +
                                       text + "' means '" + key.tag + "' in [" + key.section + "]");
}

} // namespace

Key ParseKeyOrSection(const std::string& text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || colon == 0)
        throw NotAKey(text);
    return {text.substr(0, colon), text.substr(colon + 1)};
}

Key ParseKey(const std::string& text) {
    Key key = ParseKeyOrSection(text);
    if (key.tag.empty())
        throw NotAKey(text);
    return key;
}

void Load(ConfigManager& config, const std::string& path) {
    const std::filesystem::path file(corvane::ToWide(path));
    // Windows looks for a bare name in a folder of its own.
    const auto loaded = corvane::Load(config, file.has_parent_path() ? path : "./" + path);
    if (loaded)
        return;
    std::error_code unknown;
    if (!std::filesystem::exists(file, unknown) && !unknown)
        throw Failure(Refused, "'" + path + "' does not exist");
    throw Failure(Refused, loaded.reason);
}

const Tag* FindTag(const Settings& settings, const Key& key) {
    const Section* const section = settings.Find(key.section);
    const Tag* const tag = section ? section->tags.Find(key.tag) : nullptr;
    if (!tag)
        RefuseSectionWithColon(settings, key);
    return tag;
}

const Section& SectionNamed(const Settings& settings, const std::string& name) {
    if (const Section* const section = settings.Find(name))
        return *section;
    throw Failure(No, "there is no section [" + name + "]");
}

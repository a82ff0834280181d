#include "SettingsFile.h"

#include "Failure.h"
#include "FileText.h"

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

std::string NameOf(const ConfigManager& config) {
    const std::string name = corvane::ToUtf8(config.GetConfigName());
    return name.compare(0, 2, "./") == 0 ? name.substr(2) : name;
}

std::string ReasonOf(const corvane::LoadResult& failed) {
    std::string reason = failed.reason;
    const std::size_t prefix = reason.find("'./");
    return prefix == std::string::npos ? reason : reason.erase(prefix + 1, 2);
}

void Load(ConfigManager& config, const std::string& path) {
    // Windows looks for a bare name in a folder of its own.
    const std::string name = ToPath(path).has_parent_path() ? path : "./" + path;
    if (const corvane::LoadResult loaded = corvane::Load(config, name); !loaded)
        throw Failure(Refused, ReasonOf(loaded));
}

// Reads again while another program changes the file, so that all values are of one version.
Settings SettingsFile::Read() {
    corvane::FileWatch watch(m_config);
    Settings settings = ReadSettings(m_config);
    while (watch.Differs()) {
        Settings again = ReadSettings(m_config);
        const bool same = SameSettings(settings, again);
        settings = std::move(again);
        if (same)
            break;
    }
    return settings;
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

// A loaded settings file, and keys as they are typed.
#pragma once

#include "Settings.h"

#include <corvane/comfort.h>

struct Key {
    std::string section;
    std::string tag; ///< empty for the section itself

    std::string Text() const { return section + ":" + tag; }
};

/// Splits SECTION:TAG. Throws Failure if it has no colon or a part is empty.
Key ParseKey(const std::string& text);
/// The same, but SECTION: means the section.
Key ParseKeyOrSection(const std::string& text);

/// Loads `path`. Throws Failure.
void Load(ConfigManager& config, const std::string& path);

/// The path of the loaded file, without a leading "./".
std::string NameOf(const ConfigManager& config);

/// The error text of a failure, with the path in the same form.
std::string ReasonOf(const corvane::LoadResult& failed);

class SettingsFile {
public:
    /// Loads the file. Throws Failure.
    explicit SettingsFile(const std::string& path) { Load(m_config, path); }

    ConfigManager& Config() { return m_config; }
    /// The current content of the file, all of one version.
    Settings Read();

private:
    ConfigManager m_config;
};

/// The tag of that key or null. Throws Failure if there is none because the section that the key seems to
/// mean has a colon in its name.
const Tag* FindTag(const Settings& settings, const Key& key);

/// The section. Throws Failure if there is none.
const Section& SectionNamed(const Settings& settings, const std::string& name);

// All that a manager lists and answers.
#pragma once

#include <corvane/config.h>

#include <stdexcept>
#include <tuple>
#include <vector>

namespace corvane::test {

/// Section, tag and value of one tag of a manager's cache, or with an empty tag a section.
using Entry = std::tuple<wstring, wstring, wstring>;

/// In the order of the cache. Sections with a colon, which no key reaches, go without tags. Throws if
/// something that is listed cannot be read.
inline std::vector<Entry> StateOf(ConfigManager& manager) {
    std::vector<Entry> state;
    std::vector<wstring> sections;
    manager.EnumerateSubKeys(sections);
    for (const wstring& section : sections) {
        state.emplace_back(section, wstring(), wstring());
        std::vector<wstring> tags;
        if (section.find(CORVANE_TEXT(':')) == wstring::npos)
            manager.EnumerateTags(manager.BuildKey(section, wstring()), tags);
        for (const wstring& tag : tags) {
            wstring value;
            const wstring key = manager.BuildKey(section, tag);
            if (!manager.Exists(key) || manager.GetValue(key, value) != 0)
                throw std::logic_error(ToUtf8(key));
            state.emplace_back(section, tag, value);
        }
    }
    return state;
}

} // namespace corvane::test

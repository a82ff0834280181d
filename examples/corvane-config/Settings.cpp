#include "Settings.h"

#include "FileText.h"
#include "Terminal.h"

#include <algorithm>
#include <iostream>

namespace {

using corvane::wstring;

std::string WithoutQuotes(const std::string& text) {
    const bool quoted =
        text.size() > 1 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

void AddLine(Section& section, const std::string& line) {
    const std::size_t equals = line.find('=');
    const std::string tag = Trimmed(line.substr(0, equals));
    if (equals != std::string::npos && !tag.empty())
        section.tags.Add(tag).values.push_back(WithoutQuotes(Trimmed(line.substr(equals + 1))));
}

// The lines are separated by NULs.
void AddLines(Section& section, const wstring& lines) {
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = std::min(lines.find(corvane::wchar(), begin), lines.size());
        AddLine(section, corvane::ToUtf8(lines.substr(begin, end - begin)));
        begin = end + 1;
    }
}

// The lines for what `one` has and `other` has not, or has with another value.
std::vector<std::string> Difference(const Settings& one, const Settings& other) {
    std::vector<std::string> lines;
    for (const Section* const section : one.InOrder()) {
        const Section* const counterpart = other.Find(section->name);
        if (!counterpart)
            lines.push_back("[" + section->name + "]");
        for (const Tag* const tag : section->tags.InOrder()) {
            const Tag* const same = counterpart ? counterpart->tags.Find(tag->name) : nullptr;
            if (!same || same->Value() != tag->Value())
                lines.push_back(section->name + ":" + tag->name + "=" + tag->Value());
        }
    }
    return lines;
}

} // namespace

Settings ReadSettings(ConfigManager& config) {
    IConfigSource& source = *config.GetConfigSource();
    std::vector<wstring> names;
    source.EnumerateSections(names);
    Settings settings;
    wstring lines;
    for (const wstring& name : names) {
        const std::string readable = corvane::ToUtf8(name);
        if (settings.Find(readable))
            continue;
        Section& section = settings.Add(readable);
        if (source.ReadSection(name, lines) > 0)
            AddLines(section, lines);
    }
    return settings;
}

bool SameSettings(const Settings& a, const Settings& b) {
    return Difference(a, b).empty() && Difference(b, a).empty();
}

bool PrintDifferences(const Settings& before, const Settings& after) {
    const std::vector<std::string> removed = Difference(before, after);
    const std::vector<std::string> added = Difference(after, before);
    for (const std::string& line : removed)
        std::cout << Painted(Paint::removed, "-" + line) << '\n';
    for (const std::string& line : added)
        std::cout << Painted(Paint::added, "+" + line) << '\n';
    return !removed.empty() || !added.empty();
}

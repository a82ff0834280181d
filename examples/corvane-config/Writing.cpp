// The commands that write by key: set, delete, apply.
#include "Changes.h"
#include "FileCommands.h"
#include "FirstSection.h"

#include <corvane/config.h>

#include <algorithm>
#include <iostream>

namespace {

bool IsUtf8(const std::string& text) {
    return corvane::ToUtf8(corvane::ToWide(text)) == text;
}

// "Section:Tag=value" writes, and so with a plus sign in front; "-Section:Tag" deletes, and what follows a
// '=' there does not count. "-[Section]" deletes a section; "+[Section]" is no change, its tags follow.
// Returns whether the line is a change.
bool ParseChange(std::string line, Change& change) {
    const char sign = line[0];
    if (sign == '-' || sign == '+')
        line.erase(0, 1);
    const std::size_t equals = line.find('=');
    const std::string key = line.substr(0, equals);
    const bool isHeader =
        !key.empty() && key.front() == '[' && equals == std::string::npos && line.back() == ']';
    if (isHeader && sign == '+')
        return false;
    if (isHeader && sign == '-')
        change = {{line.substr(1, line.size() - 2), ""}, std::nullopt};
    else if (sign == '-')
        change = {ParseKeyOrSection(key), std::nullopt};
    else if (equals == std::string::npos)
        throw Failure(Usage, "expected SECTION:TAG=VALUE or -SECTION:TAG");
    else
        change = {ParseKey(key), line.substr(equals + 1)};
    CheckChange(change);
    return true;
}

// Blank lines and lines that begin with ';' or '#' are skipped.
std::vector<Change> ReadChanges(std::istream& input) {
    std::vector<Change> changes;
    std::size_t number = 0;
    for (std::string line; std::getline(input, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == ';' || line[0] == '#')
            continue;
        try {
            if (!IsUtf8(line))
                throw Failure(Usage, "the text is not valid UTF-8");
            if (Change change; ParseChange(line, change))
                changes.push_back(std::move(change));
        } catch (const Failure& failure) {
            throw Failure(failure.Code(), "line " + std::to_string(number) + ": " + failure.what());
        }
    }
    return changes;
}

ExitCode Write(const CommandLine& line, const std::vector<Change>& changes) {
    const auto first =
        std::find_if(changes.begin(), changes.end(), [](const Change& change) { return change.value; });
    std::optional<FirstSection> section;
    if (first != changes.end())
        section.emplace(line.file, first->key.section, line.Has("--create"));
    SettingsFile file(line.file);
    Make(changes, file, line.Has("--ignore-missing"));
    if (section)
        section->Keep();
    return Done;
}

} // namespace

ExitCode SetValues(const CommandLine& line) {
    std::vector<Change> changes;
    for (std::size_t at = 0; at < line.arguments.size(); at += 2) {
        changes.push_back({ParseKey(line.arguments[at]), line.arguments[at + 1]});
        CheckChange(changes.back());
    }
    return Write(line, changes);
}

ExitCode DeleteKeys(const CommandLine& line) {
    std::vector<Change> changes;
    for (const std::string& key : line.arguments)
        changes.push_back({ParseKeyOrSection(key), std::nullopt});
    return Write(line, changes);
}

ExitCode ApplyChanges(const CommandLine& line) {
    return Write(line, ReadChanges(std::cin));
}

// The commands that only read: list, keys, get, exists.
#include "FileCommands.h"
#include "Formats.h"
#include "SettingsFile.h"
#include "Terminal.h"

#include <iostream>

namespace {

using Sections = std::vector<const Section*>;

Sections SectionsAskedFor(const CommandLine& line, const Settings& settings) {
    if (line.arguments.empty())
        return settings.InOrder(line.Has("--sorted"));
    return {&SectionNamed(settings, line.arguments[0])};
}

void ListAsText(const Sections& sections, bool sorted) {
    for (const Section* const section : sections) {
        std::cout << Painted(Paint::section, "[" + section->name + "]") << '\n';
        for (const Tag* const tag : section->tags.InOrder(sorted))
            std::cout << Painted(Paint::tag, tag->name) << '=' << tag->Value() << '\n';
    }
}

void ListAsJson(const Sections& sections, bool sorted) {
    std::cout << '{';
    const char* beforeSection = "\n";
    for (const Section* const section : sections) {
        std::cout << beforeSection << "  " << JsonText(section->name) << ": {";
        beforeSection = ",\n";
        const char* beforeTag = "\n";
        for (const Tag* const tag : section->tags.InOrder(sorted)) {
            std::cout << beforeTag << "    " << JsonText(tag->name) << ": " << JsonText(tag->Value());
            beforeTag = ",\n";
        }
        std::cout << (section->tags.InOrder().empty() ? "}" : "\n  }");
    }
    std::cout << (sections.empty() ? "}\n" : "\n}\n");
}

// Refuses two keys that would become the same variable, before anything is printed.
void ListForShell(const Sections& sections, bool sorted) {
    std::map<std::string, std::string> keys;
    std::string assignments;
    for (const Section* const section : sections)
        for (const Tag* const tag : section->tags.InOrder(sorted)) {
            const std::string key = Key{section->name, tag->name}.Text();
            const auto [variable, isNew] = keys.emplace(ShellName(key), key);
            if (!isNew)
                throw Failure(Refused, "'" + variable->second + "' and '" + key +
                                           "' would both become the variable " + variable->first +
                                           "; use --format=json");
            assignments.append(variable->first).append("=").append(ShellWord(tag->Value())).append("\n");
        }
    std::cout << assignments;
}

// The first value of a key, or all of them; none if there is no such tag.
std::vector<std::string> ValuesOf(const Key& key, SettingsFile& file, bool all) {
    const auto value = corvane::Get<std::string>(file.Config(), key.Text());
    if (value && !all)
        return {*value};
    const Settings settings = file.Read(); // has empty values too
    const Tag* const tag = FindTag(settings, key);
    return tag ? tag->values : std::vector<std::string>();
}

void PrintValue(Format format, const Key& key, const std::string& value) {
    switch (format) {
    case Format::text: std::cout << value; break;
    case Format::sh: std::cout << ShellName(key.Text()) << '=' << ShellWord(value); break;
    case Format::json: std::cout << JsonText(value); break;
    }
    std::cout << '\n';
}

void PrintValues(Format format, const std::vector<std::string>& values) {
    if (format == Format::json) {
        std::cout << JsonList(values) << '\n';
        return;
    }
    for (const std::string& value : values)
        std::cout << value << '\n';
}

} // namespace

ExitCode ListFile(const CommandLine& line) {
    const Format format = FormatOf(line);
    const bool sorted = line.Has("--sorted");
    const Settings settings = SettingsFile(line.file).Read();
    const Sections sections = SectionsAskedFor(line, settings);
    switch (format) {
    case Format::text: ListAsText(sections, sorted); break;
    case Format::sh: ListForShell(sections, sorted); break;
    case Format::json: ListAsJson(sections, sorted); break;
    }
    return Done;
}

ExitCode ListKeys(const CommandLine& line) {
    const Settings settings = SettingsFile(line.file).Read();
    const Sections sections = SectionsAskedFor(line, settings);
    if (!line.arguments.empty() && !sections[0]->HasKeys())
        throw Failure(Refused, "section [" + sections[0]->name +
                                   "] cannot be reached by a key, because its name has a colon");
    for (const Section* const section : sections)
        if (section->HasKeys())
            for (const Tag* const tag : section->tags.InOrder(line.Has("--sorted")))
                std::cout << section->name << ':' << tag->name << '\n';
    return Done;
}

ExitCode GetValue(const CommandLine& line) {
    const Key key = ParseKey(line.arguments[0]);
    const Format format = FormatOf(line);
    const bool all = line.Has("--all");
    if (all && format == Format::sh)
        throw Failure(Usage, "'--all' cannot be combined with '--format=sh': a variable has only one value");
    SettingsFile file(line.file);
    std::vector<std::string> values = ValuesOf(key, file, all);
    if (values.empty() && line.arguments.size() < 2)
        throw Failure(No, "there is no '" + key.Text() + "'");
    if (values.empty())
        values.push_back(line.arguments[1]);
    if (all)
        PrintValues(format, values);
    else
        PrintValue(format, key, values.front());
    return Done;
}

ExitCode KeyExists(const CommandLine& line) {
    const Key key = ParseKeyOrSection(line.arguments[0]);
    const Settings settings = SettingsFile(line.file).Read();
    const bool exists =
        key.tag.empty() ? settings.Find(key.section) != nullptr : FindTag(settings, key) != nullptr;
    std::cout << (exists ? "yes" : "no") << '\n';
    return exists ? Done : No;
}

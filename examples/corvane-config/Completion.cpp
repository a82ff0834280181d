#include "Completion.h"

#include "Log.h"
#include "SettingsFile.h"

#include <algorithm>
#include <iostream>

namespace {

struct Candidate {
    std::string word;
    std::string help;
};
using Candidates = std::vector<Candidate>;

constexpr const char* files = ""; // a candidate that means any file name

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool BeginsWith(const std::string& word, const std::string& typed) {
    return word.size() >= typed.size() && std::equal(typed.begin(), typed.end(), word.begin(),
                                                     [](char a, char b) { return Lower(a) == Lower(b); });
}

Candidates OptionsFor(const Command* command) {
    Candidates candidates;
    for (const Option& option : Options()) {
        if (command ? !Takes(*command, option) : !option.common)
            continue;
        if (option.name == std::string("--format"))
            for (const char* const format : {"text", "sh", "json"})
                candidates.push_back({option.name + ("=" + std::string(format)), option.help});
        else
            candidates.push_back({option.name, option.help});
    }
    return candidates;
}

Candidates CommandsFor(Target target) {
    Candidates candidates;
    for (const Command& command : Commands())
        if (command.target == target)
            candidates.push_back({command.name, command.help});
    return candidates;
}

Candidates SectionsAndKeys(const std::string& file, bool sections, bool keys) {
    Candidates candidates;
    const Settings settings = SettingsFile(file).Read();
    for (const Section* const section : settings.InOrder()) {
        if (sections)
            candidates.push_back({section->name, "section"});
        for (const Tag* const tag : section->tags.InOrder())
            if (keys && section->HasKeys())
                candidates.push_back({section->name + ":" + tag->name, ""}); // a value may be a secret
    }
    return candidates;
}

Candidates ArgumentsFor(const CommandLine& line) {
    const std::string_view parameter = Parameters(*line.command).At(line.arguments.size());
    if (parameter == "KEY")
        return SectionsAndKeys(line.file, false, true);
    if (parameter == "SECTION")
        return SectionsAndKeys(line.file, true, false);
    if (parameter == "SNAPSHOT")
        return {{files, ""}};
    if (parameter == "PATH")
        return {{"HKEY_CURRENT_USER\\", "of the user"}, {"HKEY_LOCAL_MACHINE\\", "of the machine"}};
    return {};
}

// What can follow the words of `line`.
Candidates After(const CommandLine& line) {
    switch (line.operands.size()) {
    case 0: return {{"registry", "the registry, not a file"}, {files, ""}};
    case 1: return CommandsFor(line.operands[0] == "registry" ? Target::registry : Target::file);
    default: return line.command ? ArgumentsFor(line) : Candidates();
    }
}

} // namespace

ExitCode PrintCompletions(const Arguments& words) {
    if (words.empty())
        return Usage;
    ReceiveLog(false);
    const std::string& typed = words.back();
    const CommandLine line = Parse({words.begin(), words.end() - 1});
    for (const Candidate& candidate : typed[0] == '-' ? OptionsFor(line.command) : After(line))
        if (candidate.word == files || BeginsWith(candidate.word, typed))
            std::cout << candidate.word << '\t' << candidate.help << '\n';
    return Done;
}

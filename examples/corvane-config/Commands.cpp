#include "Commands.h"

#include "FileCommands.h"
#include "RegistryCommands.h"

#include <algorithm>

const std::vector<Command>& Commands() {
    constexpr Target file = Target::file;
    constexpr Target registry = Target::registry;
    static const std::vector<Command> commands = {
        {file, "list", "[SECTION]", "--sorted --format", "print all values, or those of one section",
         ListFile},
        {file, "keys", "[SECTION]", "--sorted", "print the keys, one per line", ListKeys},
        {file, "get", "KEY [DEFAULT]", "--all --format", "print a value", GetValue},
        {file, "exists", "KEY", "", "print yes or no; SECTION: asks for a section", KeyExists},
        {file, "set", "KEY VALUE [KEY VALUE ...]", "--create", "write values, all or none", SetValues},
        {file, "delete", "KEY [KEY ...]", "--ignore-missing",
         "delete values, all or none; SECTION: deletes a section", DeleteKeys},
        {file, "apply", "", "--create --ignore-missing",
         "make the changes read from standard input, all or none", ApplyChanges},
        {file, "rename-section", "SECTION NAME", "", "rename a section, keeping its lines", RenameSection},
        {file, "edit", "", "", "edit a copy in $VISUAL or $EDITOR, then replace the file", EditFile},
        {file, "watch", "", "", "print changes as they happen, until interrupted", WatchFile},
        {file, "snapshot", "", "", "copy the file and print the name of the copy", MakeSnapshot},
        {file, "restore", "SNAPSHOT", "", "replace the file with a copy", RestoreSnapshot},
        {file, "diff", "SNAPSHOT", "", "print the changes since a copy", CompareWithSnapshot},
        {registry, "get", "PATH NAME", "", "print a string", GetRegistryText},
        {registry, "set", "PATH NAME TEXT", "", "write a string", SetRegistryText},
        {registry, "number", "PATH NAME [NUMBER]", "", "print or write a number", GetOrSetRegistryNumber},
        {registry, "delete", "PATH", "--ignore-missing", "delete a key that has no subkeys",
         DeleteRegistryKey},
        {registry, "list", "PATH", "", "print the names of the subkeys", ListRegistryKeys},
    };
    return commands;
}

const std::vector<Option>& Options() {
    static const std::vector<Option> options = {
        {"--sorted", "", "sort by name instead of in the order of the file", false},
        {"--format", "FORMAT", "text (the default), sh or json", false},
        {"--all", "", "print all values of a repeated tag", false},
        {"--create", "", "create the file if it does not exist", false},
        {"--ignore-missing", "", "succeed even if a key to delete does not exist", false},
        {"--folders", "USER MACHINE", "absolute paths of the registry folders (not on Windows)", false},
        {"--log", "", "print the library's log to standard error", true},
        {"--help", "", "print this text, or the usage of the command", true},
        {"--version", "", "print the version", true},
    };
    return options;
}

const Command* FindCommand(Target target, std::string_view name) {
    for (const Command& command : Commands())
        if (command.target == target && command.name == name)
            return &command;
    return nullptr;
}

const Option* FindOption(std::string_view name) {
    for (const Option& option : Options())
        if (option.name == name)
            return &option;
    return nullptr;
}

bool Takes(const Command& command, const Option& option) {
    const std::vector<std::string_view> own = Words(command.options);
    const bool isOwn = std::find(own.begin(), own.end(), option.name) != own.end();
    const bool hasFolders =
        command.target == Target::registry && option.name == std::string_view("--folders");
    return option.common || isOwn || hasFolders;
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        if (length > 0)
            words.push_back(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return words;
}

Parameters::Parameters(const Command& command) {
    bool optional = false;
    for (std::string_view word : Words(command.parameters)) {
        if (word == "...]") {
            m_repeated = m_names.size() - m_needed;
            continue;
        }
        if (word.front() == '[') {
            optional = true;
            word.remove_prefix(1);
        }
        if (word.back() == ']')
            word.remove_suffix(1);
        m_names.push_back(word);
        if (!optional)
            ++m_needed;
    }
}

bool Parameters::Accepts(std::size_t count) const {
    if (count < m_needed)
        return false;
    return m_repeated > 0 ? (count - m_needed) % m_repeated == 0 : count <= m_names.size();
}

std::string_view Parameters::At(std::size_t index) const {
    while (m_repeated > 0 && index >= m_names.size())
        index -= m_repeated;
    return index < m_names.size() ? m_names[index] : std::string_view();
}

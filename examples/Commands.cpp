#include "Commands.h"

#include <iostream>

namespace {

using corvane::ToUtf8;
using corvane::ToWide;
using corvane::wstring;

int Error(const std::string& message) {
    std::cerr << "corvane-config: " << message << '\n';
    return Refused;
}

int List(ConfigManager& manager, const Arguments& arguments) {
    std::vector<wstring> sections;
    if (arguments.size() > 1)
        sections.push_back(ToWide(arguments[1]));
    else
        manager.EnumerateSubKeys(sections);
    for (const wstring& section : sections) {
        const wstring sectionKey = manager.BuildKey(section, wstring());
        if (!manager.Exists(sectionKey))
            return Error("there is no section '" + ToUtf8(section) + "'");
        std::vector<wstring> tags;
        manager.EnumerateTags(sectionKey, tags);
        std::cout << '[' << ToUtf8(section) << "]\n";
        for (const wstring& tag : tags) {
            wstring value;
            manager.GetValue(manager.BuildKey(section, tag), value, wstring());
            std::cout << ToUtf8(tag) << '=' << ToUtf8(value) << '\n';
        }
    }
    return Done;
}

int Get(ConfigManager& manager, const Arguments& arguments) {
    wstring value;
    if (manager.GetValue(ToWide(arguments[1]), value) != 0) {
        if (arguments.size() < 3)
            return Error("there is no value '" + arguments[1] + "'");
        value = ToWide(arguments[2]);
    }
    std::cout << ToUtf8(value) << '\n';
    return Done;
}

int Exists(ConfigManager& manager, const Arguments& arguments) {
    const bool exists = manager.Exists(ToWide(arguments[1]));
    std::cout << (exists ? "yes" : "no") << '\n';
    return exists ? Done : Refused;
}

int Set(ConfigManager& manager, const Arguments& arguments) {
    if (manager.SetValue(ToWide(arguments[1]), ToWide(arguments[2])) != 0)
        return Error("'" + arguments[1] + "' was not written");
    return Done;
}

int Delete(ConfigManager& manager, const Arguments& arguments) {
    const wstring key = ToWide(arguments[1]);
    if (!manager.Exists(key))
        return Error("there is no '" + arguments[1] + "' to delete");
    if (manager.DeleteValue(key) != 0 || manager.Exists(key))
        return Error("'" + arguments[1] + "' was not deleted");
    return Done;
}

int Snapshot(ConfigManager& manager, const Arguments&) {
    wstring name;
    if (manager.CreateSnapshot(name) != 0)
        return Error("no snapshot was made");
    std::cout << ToUtf8(name) << '\n';
    return Done;
}

int Restore(ConfigManager& manager, const Arguments& arguments) {
    if (manager.RestoreSnapshot(ToWide(arguments[1])) != 0)
        return Error("'" + arguments[1] + "' was not restored");
    return Done;
}

struct Command {
    const char* name;
    const char* parameters;
    const char* help;
    std::size_t least; // arguments
    std::size_t most;
    int (*run)(ConfigManager&, const Arguments&);
};

constexpr Command commands[] = {
    {"list", "[SECTION]", "show all sections and values, or one section", 0, 1, List},
    {"get", "SECTION:TAG [DEFAULT]", "show one value", 1, 2, Get},
    {"exists", "SECTION:TAG", "say yes or no; a key 'SECTION:' asks for the section", 1, 1, Exists},
    {"set", "SECTION:TAG VALUE", "write one value", 2, 2, Set},
    {"delete", "SECTION:TAG", "delete one value; a key 'SECTION:' deletes the section", 1, 1, Delete},
    {"snapshot", "", "copy the file and show the copy's name", 0, 0, Snapshot},
    {"restore", "SNAPSHOT", "put a copy in the file's place", 1, 1, Restore},
};

} // namespace

std::string CommandHelp() {
    std::string help;
    for (const Command& command : commands) {
        std::string line = std::string("  ") + command.name + " " + command.parameters;
        line.resize(std::max<std::size_t>(line.size() + 1, 34), ' ');
        help += line + command.help + "\n";
    }
    return help;
}

int RunCommand(ConfigManager& manager, const Arguments& arguments) {
    for (const Command& command : commands) {
        if (arguments[0] != command.name)
            continue;
        const std::size_t count = arguments.size() - 1;
        if (count >= command.least && count <= command.most)
            return command.run(manager, arguments);
        Error(std::string("expected: ") + command.name + " " + command.parameters);
        return Usage;
    }
    Error("there is no command '" + arguments[0] + "'; --help lists them");
    return Usage;
}

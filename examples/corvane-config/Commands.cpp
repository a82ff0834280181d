// The one table of commands, and the help that is made of it.
#include "Command.h"

#include <algorithm>

namespace {

constexpr Command commands[] = {
    {Target::file, "list", "[SECTION]", "show all sections and values, or one section", 0, 1, ListFile},
    {Target::file, "keys", "[SECTION]", "show the keys alone, one a line", 0, 1, ListKeys},
    {Target::file, "get", "SECTION:TAG [DEFAULT]", "show one value", 1, 2, GetValue},
    {Target::file, "exists", "SECTION:TAG", "say yes or no; 'SECTION:' asks for the section", 1, 1,
     AskForKey},
    {Target::file, "set", "SECTION:TAG VALUE", "write one value; an empty one counts as not there", 2, 2,
     SetValue},
    {Target::file, "delete", "SECTION:TAG", "delete one value; 'SECTION:' deletes the section", 1, 1,
     DeleteKey},
    {Target::file, "snapshot", "", "copy the file and show the copy's name", 0, 0, MakeSnapshot},
    {Target::file, "restore", "SNAPSHOT", "put a copy in the file's place", 1, 1, RestoreSnapshot},
    {Target::file, "diff", "SNAPSHOT", "show what has changed since a copy", 1, 1, CompareWithSnapshot},
    {Target::registry, "get", "PATH NAME", "show a text", 2, 2, GetRegistryText},
    {Target::registry, "set", "PATH NAME TEXT", "write a text", 3, 3, SetRegistryText},
    {Target::registry, "number", "PATH NAME [NUMBER]", "show or write a number", 2, 3,
     GetOrSetRegistryNumber},
    {Target::registry, "delete", "PATH", "delete a key that has no subkeys", 1, 1, DeleteRegistryKey},
    {Target::registry, "list", "PATH", "show the names of a key's subkeys", 1, 1, ListRegistryKeys},
};

std::string CommandLines(Target target) {
    std::string lines;
    for (const Command& command : commands) {
        if (command.target != target)
            continue;
        std::string line = std::string("  ") + command.name + " " + command.parameters;
        line.resize(std::max<std::size_t>(line.size() + 1, 32), ' ');
        lines += line + command.help + "\n";
    }
    return lines;
}

} // namespace

const Command& FindCommand(Target target, const std::string& name, std::size_t arguments) {
    const Command* const found =
        std::find_if(std::begin(commands), std::end(commands), [&](const Command& command) {
            return command.target == target && command.name == name;
        });
    if (found == std::end(commands))
        throw Failure(Usage, "there is no command '" + name + "'; --help lists them, and options go first");
    if (found->most == 0 && arguments > 0)
        throw Failure(Usage, "'" + name + "' takes nothing behind it");
    if (arguments < found->fewest || arguments > found->most)
        throw Failure(Usage, "'" + name + "' wants: " + name + " " + found->parameters);
    return *found;
}

std::string Help() {
    return "corvane-config reads and changes settings files and the registry.\n\n"
           "corvane-config [--log] FILE COMMAND ...\n" +
           CommandLines(Target::file) +
           "\ncorvane-config [--log] registry [--folders USER MACHINE] COMMAND ...\n" +
           CommandLines(Target::registry) +
           "\n  --log      show the library's log lines on standard error\n"
           "  --folders  where the registry's two trees lie, as absolute paths (not on Windows)\n"
           "  --help     show this text\n"
           "  --version  show the version\n\n"
           "A PATH begins with a root, such as HKEY_CURRENT_USER\\Software\\Demo.\n"
           "Exit codes: 0 done, yes or the same; 1 no, not there or not the same; 2 the command line makes "
           "no\n"
           "sense; 3 refused by the file or the registry.\n";
}

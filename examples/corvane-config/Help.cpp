#include "Help.h"

#include "CommandLine.h"

#include <algorithm>

namespace {

std::string Row(std::string left, const char* right) {
    static constexpr std::size_t width = 34;
    left = "  " + left;
    left.resize(std::max(left.size() + 2, width), ' ');
    return left + right + "\n";
}

std::string CommandRows(Target target) {
    std::string rows;
    for (const Command& command : Commands())
        if (command.target == target)
            rows += Row(command.name + (" " + std::string(command.parameters)), command.help);
    return rows;
}

std::string OptionRow(const Option& option) {
    const std::vector<std::string_view> values = Words(option.values);
    std::string left(option.name);
    if (!values.empty())
        left.append(values.size() == 1 ? "=" : " ").append(option.values);
    return Row(left, option.help);
}

} // namespace

std::string Help() {
    std::string help = "Reads and changes settings files and the registry.\n\n"
                       "Usage: corvane-config FILE COMMAND [ARGUMENTS] [OPTIONS]\n"
                       "       corvane-config registry COMMAND [ARGUMENTS] [OPTIONS]\n\n"
                       "Commands for a file; KEY is SECTION:TAG:\n" +
                       CommandRows(Target::file) + "\nCommands for the registry:\n" +
                       CommandRows(Target::registry) + "\nOptions:\n";
    for (const Option& option : Options())
        help += OptionRow(option);
    return help + Row("--", "end of the options") +
           "\nExit codes: 0 done, yes or equal; 1 no, not found or different; 2 usage error; 3 refused.\n";
}

std::string HelpOn(const Command& command) {
    std::string help = "Usage: " + UsageOf(command) + "\n\n  " + command.help + "\n\nOptions:\n";
    for (const Option& option : Options())
        if (Takes(command, option))
            help += OptionRow(option);
    return help;
}

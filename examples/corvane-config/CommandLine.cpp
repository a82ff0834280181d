#include "CommandLine.h"

namespace {

// A single "-" and negative numbers are operands.
bool IsOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-' && (word[1] < '0' || word[1] > '9');
}

const Option& OptionNamed(const std::string& name) {
    if (const Option* const option = FindOption(name == "-h" ? "--help" : name))
        return *option;
    throw Failure(Usage, "unknown option '" + name + "'; use -- before arguments that begin with '-'");
}

// Takes the option at words[at] with its values, and leaves `at` at the last word of them.
void TakeOption(CommandLine& line, const Arguments& words, std::size_t& at) {
    const std::string& word = words[at];
    const std::size_t equals = word.find('=');
    const Option& option = OptionNamed(word.substr(0, equals));
    const std::size_t count = Words(option.values).size();
    Arguments& values = line.options[option.name];
    values.clear();
    if (equals != std::string::npos && count == 1) {
        values.push_back(word.substr(equals + 1));
        return;
    }
    if (equals != std::string::npos || words.size() - at <= count)
        throw Failure(Usage, "usage: " + (std::string(option.name) + ' ') + option.values);
    values.assign(words.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                  words.begin() + static_cast<std::ptrdiff_t>(at + count) + 1);
    at += count;
}

} // namespace

CommandLine Parse(const Arguments& words) {
    CommandLine line;
    bool optionsEnded = false;
    for (std::size_t at = 0; at < words.size(); ++at) {
        if (optionsEnded || !IsOption(words[at]))
            line.operands.push_back(words[at]);
        else if (words[at] == "--")
            optionsEnded = true;
        else
            TakeOption(line, words, at);
    }
    if (line.operands.empty())
        return line;
    line.file = line.operands[0];
    if (line.operands.size() < 2)
        return line;
    line.command = FindCommand(line.file == "registry" ? Target::registry : Target::file, line.operands[1]);
    line.arguments.assign(line.operands.begin() + 2, line.operands.end());
    return line;
}

void CheckCommand(CommandLine& line) {
    if (line.operands.size() < 2)
        throw Failure(Usage, "usage: corvane-config FILE COMMAND [ARGUMENTS]; see --help");
    if (!line.command)
        throw Failure(Usage, "unknown command '" + line.operands[1] + "'; see --help");
    for (const auto& [name, values] : line.options)
        if (!Takes(*line.command, *FindOption(name)))
            throw Failure(Usage, "'" + name + "' is not an option of '" + line.command->name +
                                     "'; usage: " + UsageOf(*line.command));
    if (!Parameters(*line.command).Accepts(line.arguments.size()))
        throw Failure(Usage, "wrong number of arguments; usage: " + UsageOf(*line.command));
}

std::string UsageOf(const Command& command) {
    std::string usage = "corvane-config ";
    usage += command.target == Target::file ? "FILE " : "registry ";
    usage += command.name;
    for (const std::string_view option : Words(command.options)) {
        const std::string values = FindOption(option)->values;
        usage.append(" [").append(option).append(values.empty() ? "" : "=" + values).append("]");
    }
    return *command.parameters ? usage + " " + command.parameters : usage;
}

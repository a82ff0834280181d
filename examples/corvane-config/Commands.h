// The tables of commands and options. The parser, --help and the completions are made from them.
#pragma once

#include "Failure.h"

#include <string_view>
#include <vector>

struct CommandLine;

/// What a command works on.
enum class Target { file, registry };

struct Command {
    Target target;
    const char* name;
    const char* parameters; ///< "KEY VALUE [KEY VALUE ...]": optional ones in brackets, "..." repeats them
    const char* options;    ///< its options in addition to the common ones: "--sorted --format"
    const char* help;
    ExitCode (*run)(const CommandLine&);
};

struct Option {
    const char* name;
    const char* values; ///< the words that follow it: "USER MACHINE"
    const char* help;
    bool common; ///< goes with every command
};

/// All commands, those on a file first.
const std::vector<Command>& Commands();
/// All options.
const std::vector<Option>& Options();

/// Null if there is none of that name.
const Command* FindCommand(Target target, std::string_view name);
const Option* FindOption(std::string_view name);

/// Whether the option goes with the command.
bool Takes(const Command& command, const Option& option);

/// The words of a text.
std::vector<std::string_view> Words(std::string_view text);

/// The parameters of a command, taken apart.
class Parameters {
public:
    explicit Parameters(const Command& command);
    bool Accepts(std::size_t count) const;
    /// The name of the parameter at `index`, empty past the last one.
    std::string_view At(std::size_t index) const;

private:
    std::vector<std::string_view> m_names;
    std::size_t m_needed = 0;
    std::size_t m_repeated = 0; // how many of the last ones repeat
};

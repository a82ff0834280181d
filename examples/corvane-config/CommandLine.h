// The words of the command line, sorted into options and operands.
#pragma once

#include "Commands.h"

#include <map>
#include <string>

using Arguments = std::vector<std::string>;

struct CommandLine {
    Arguments operands;                       ///< all words that are no options
    std::map<std::string, Arguments> options; ///< by name, with their values
    const Command* command = nullptr;         ///< null if none is named
    std::string file;                         ///< the first operand
    Arguments arguments;                      ///< the operands after the command

    bool Has(const char* option) const { return options.count(option) != 0; }
};

/// Separates options from operands. Options may appear anywhere before "--". Throws Failure for one that does
/// not exist.
CommandLine Parse(const Arguments& words);

/// Finds the command and checks its options and arguments. Throws Failure.
void CheckCommand(CommandLine& line);

/// `corvane-config FILE set KEY VALUE [KEY VALUE ...]`
std::string UsageOf(const Command& command);

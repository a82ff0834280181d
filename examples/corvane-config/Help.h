// The texts of --help.
#pragma once

#include "Commands.h"

#include <string>

/// The whole help text.
std::string Help();

/// The help for one command.
std::string HelpOn(const Command& command);

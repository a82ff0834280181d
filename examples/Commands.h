// The commands of corvane-config on one settings file.
#pragma once

#include <corvane/config.h>

#include <string>
#include <vector>

/// Exit codes: done, refused or not there, and a command line that makes no sense.
enum ExitCode { Done = 0, Refused = 1, Usage = 2 };

using Arguments = std::vector<std::string>;

/// Runs `arguments`, a command and what belongs to it, on the configuration that `manager` has loaded.
/// Results go to standard output, errors to standard error in one line.
int RunCommand(ConfigManager& manager, const Arguments& arguments);

/// The help text of the commands, a line each.
std::string CommandHelp();

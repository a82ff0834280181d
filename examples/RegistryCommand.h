#pragma once

#include <string>
#include <vector>

/// Carries out what stands behind the word `registry` on the command line, in UTF-8: get, set, number, delete
/// or list, see RegistryUsage. Returns the exit code: 0 done, 1 not found or refused, 2 usage.
int RunRegistryCommand(const std::vector<std::string>& arguments);

/// One line for each form of the command.
const char* RegistryUsage();

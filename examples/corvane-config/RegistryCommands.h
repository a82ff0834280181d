// The commands for the registry. Each throws Failure.
#pragma once

#include "CommandLine.h"

ExitCode GetRegistryText(const CommandLine& line);
ExitCode SetRegistryText(const CommandLine& line);
ExitCode GetOrSetRegistryNumber(const CommandLine& line);
ExitCode DeleteRegistryKey(const CommandLine& line);
ExitCode ListRegistryKeys(const CommandLine& line);

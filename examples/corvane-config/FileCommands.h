// The commands for a settings file. Each throws Failure.
#pragma once

#include "CommandLine.h"

ExitCode ListFile(const CommandLine& line);
ExitCode ListKeys(const CommandLine& line);
ExitCode GetValue(const CommandLine& line);
ExitCode KeyExists(const CommandLine& line);

ExitCode SetValues(const CommandLine& line);
ExitCode DeleteKeys(const CommandLine& line);
ExitCode ApplyChanges(const CommandLine& line);

ExitCode RenameSection(const CommandLine& line);
ExitCode EditFile(const CommandLine& line);

ExitCode MakeSnapshot(const CommandLine& line);
ExitCode RestoreSnapshot(const CommandLine& line);
ExitCode CompareWithSnapshot(const CommandLine& line);
ExitCode WatchFile(const CommandLine& line);

// watch: changes as they happen.
#include "FileCommands.h"
#include "SettingsFile.h"

#include <chrono>
#include <iostream>
#include <thread>

ExitCode WatchFile(const CommandLine& line) {
    SettingsFile file(line.file);
    Settings before = file.Read();
    while (std::cout.flush()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        ConfigManager config;
        Load(config, line.file);
        Settings now = ReadSettings(config);
        PrintDifferences(before, now);
        before = std::move(now);
    }
    throw Failure(Refused, "cannot write to standard output");
}

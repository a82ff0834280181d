// watch: changes as they happen.
#include "FileCommands.h"
#include "SettingsFile.h"

#include <chrono>
#include <iostream>
#include <thread>

namespace {

// Loads the file again. If that fails, prints why, once for each reason.
bool Reload(ConfigManager& config, std::string& printed) {
    const corvane::LoadResult loaded = corvane::Reload(config);
    const std::string reason = ReasonOf(loaded);
    if (!loaded && reason != printed)
        std::cerr << "corvane-config: " << reason << '\n';
    printed = reason;
    return static_cast<bool>(loaded);
}

} // namespace

ExitCode WatchFile(const CommandLine& line) {
    SettingsFile file(line.file);
    corvane::FileWatch watch(file.Config());
    Settings before = file.Read();
    bool stale = false;
    std::string reason;
    while (std::cout.flush()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        stale = watch.Differs() || stale;
        if (!stale)
            continue;
        stale = !Reload(file.Config(), reason);
        if (stale)
            continue;
        Settings now = file.Read();
        PrintDifferences(before, now);
        before = std::move(now);
    }
    return Refused; // the output cannot be written any more
}

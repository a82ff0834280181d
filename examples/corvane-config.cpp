// Reads and changes a settings file from the command line.
#include "Commands.h"
#include "RegistryCommand.h"

#include <exception>
#include <iostream>

namespace {

using Quillon::NativeLogging::LoggerRegistry;
using Quillon::NativeLogging::LogLine;
using Quillon::NativeLogging::Severity;

void ShowHelp() {
    std::cout << "corvane-config [--log] FILE COMMAND ...\n"
              << CommandHelp() << "\ncorvane-config [--log] registry ...\n"
              << RegistryUsage() << "\n--log shows the library's log lines on standard error.\n"
              << "Exit codes: 0 done, 1 refused or not there, 2 a command line that makes no sense.\n";
}

void ShowLog() {
    LoggerRegistry::setSink([](const LogLine& line) {
        static constexpr const char* kinds[] = {"report", "problem", "progress", "trace"};
        std::cerr << "log, " << kinds[static_cast<int>(line.severity)] << ": " << corvane::ToUtf8(line.text)
                  << '\n';
    });
}

int Run(Arguments arguments) {
    if (!arguments.empty() && arguments[0] == "--log") {
        ShowLog();
        arguments.erase(arguments.begin());
    }
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        ShowHelp();
        return Done;
    }
    if (!arguments.empty() && arguments[0] == "registry")
        return RunRegistryCommand(Arguments(arguments.begin() + 1, arguments.end()));
    if (arguments.size() < 2) {
        std::cerr << "corvane-config: expected: FILE COMMAND ...; --help tells more\n";
        return Usage;
    }
    ConfigManager& manager = *ApplicationConfigManager::Instance();
    if (manager.Update(corvane::ToWide(arguments[0]).c_str(), 0) != 0) {
        std::cerr
            << "corvane-config: '" << arguments[0]
            << "' cannot be loaded: it has to exist, readable and writable, with at least one section\n";
        return Refused;
    }
    arguments.erase(arguments.begin());
    return RunCommand(manager, arguments);
}

} // namespace

int main(int count, char** values) {
    try {
        return Run(Arguments(values + 1, values + count));
    } catch (const std::exception& error) {
        std::cerr << "corvane-config: " << error.what() << '\n';
        return Refused;
    }
}

// corvane-config: reads and changes a settings file or the registry from the command line.
#include "Command.h"

#include <corvane/config.h>

#include <iostream>

namespace {

using Quillon::NativeLogging::LoggerRegistry;
using Quillon::NativeLogging::LogLine;

void WriteLogLine(const LogLine& line) {
    static constexpr const char* kinds[] = {"report", "problem", "progress", "trace"};
    std::cerr << "log, " << kinds[static_cast<int>(line.severity)] << ": " << corvane::ToUtf8(line.text)
              << '\n';
}

// Takes the first argument off.
std::string Take(Arguments& arguments) {
    std::string first = std::move(arguments.front());
    arguments.erase(arguments.begin());
    return first;
}

// Anything else would come to the file as another text.
void RefuseWhatIsNotUtf8(const Arguments& arguments) {
    for (const std::string& argument : arguments)
        if (const std::string readable = corvane::ToUtf8(corvane::ToWide(argument)); readable != argument)
            throw Failure(Usage, "'" + readable + "' is not in UTF-8; give every argument in it");
}

bool AsksForHelp(const std::string& argument) {
    return argument == "--help" || argument == "-h";
}

ExitCode ShowHelp() {
    std::cout << Help();
    return Done;
}

ExitCode Run(Arguments arguments) {
    RefuseWhatIsNotUtf8(arguments);
    const bool log = !arguments.empty() && arguments[0] == "--log";
    if (log)
        Take(arguments);
    LoggerRegistry::setSink(log ? WriteLogLine : [](const LogLine&) {}); // or it would write reports

    if (arguments.empty())
        throw Failure(Usage, "expected: FILE COMMAND ...; --help tells more");
    const std::string first = Take(arguments);
    if (AsksForHelp(first))
        return ShowHelp();
    if (first == "--version") {
        std::cout << "corvane-config " << corvane::Version() << '\n';
        return Done;
    }
    if (first.substr(0, 1) == "-")
        throw Failure(Usage,
                      "there is no option '" + first + "'; --help lists them, ./" + first + " is a file");
    const Target target = first == "registry" ? Target::registry : Target::file;
    if (target == Target::registry)
        TakeRegistryFolders(arguments);
    if (arguments.empty())
        throw Failure(Usage, "expected a command behind '" + first + "'; --help lists them");
    const std::string name = Take(arguments);
    if (AsksForHelp(name))
        return ShowHelp();
    const Command& command = FindCommand(target, name, arguments.size());
    if (target == Target::file)
        LoadFile(first);
    return command.run(arguments);
}

} // namespace

int main(int count, char** values) {
    try {
        const ExitCode code = Run(Arguments(values + 1, values + count));
        if (!std::cout.flush())
            throw Failure(Refused, "the output could not be written; see to room where it goes");
        return code;
    } catch (const Failure& failure) {
        std::cout.flush();
        std::cerr << "corvane-config: " << failure.what() << '\n';
        return failure.Code();
    } catch (const std::exception& error) {
        std::cerr << "corvane-config: " << error.what() << '\n';
        return Refused;
    }
}

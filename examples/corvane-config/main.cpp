// corvane-config: reads and changes a settings file or the registry from the command line.
#include "CommandLine.h"
#include "Completion.h"
#include "Help.h"
#include "Log.h"

#include <corvane/config.h>

#include <cerrno>
#include <clocale>
#include <iostream>
#include <system_error>

namespace {

// Anything else would be changed on its way to the file.
void RefuseInvalidUtf8(const Arguments& words) {
    for (const std::string& word : words)
        if (const std::string readable = corvane::ToUtf8(corvane::ToWide(word)); readable != word)
            throw Failure(Usage, "'" + readable + "' is not valid UTF-8");
}

ExitCode Run(const Arguments& words) {
    if (!words.empty() && words[0] == "--complete")
        return PrintCompletions({words.begin() + 1, words.end()});
    RefuseInvalidUtf8(words);
    CommandLine line = Parse(words);
    ReceiveLog(line.Has("--log"));
    if (line.Has("--help")) {
        std::cout << (line.command ? HelpOn(*line.command) : Help());
        return Done;
    }
    if (line.Has("--version")) {
        std::cout << "corvane-config " << corvane::Version() << '\n';
        return Done;
    }
    CheckCommand(line);
    return line.command->run(line);
}

ExitCode Print(ExitCode code, const std::string& message) {
    std::cout.flush();
    std::cerr << "corvane-config: " << message << '\n';
    return code;
}

} // namespace

int main(int count, char** values) {
    std::setlocale(LC_CTYPE, ""); // letter case outside ASCII, as in the programs that read the file
    try {
        const ExitCode code = Run(Arguments(values + 1, values + count));
        errno = 0;
        if (!std::cout.flush())
            throw Failure(Refused,
                          "cannot write the output (" + std::generic_category().message(errno) + ")");
        return code;
    } catch (const Failure& failure) {
        return Print(failure.Code(), failure.what());
    } catch (const std::exception& error) {
        return Print(Refused, error.what());
    }
}

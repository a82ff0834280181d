// What every command of corvane-config shares.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// Exit codes: done; no, not there, not the same; a command line that makes no sense; refused by a file or
/// the registry.
enum ExitCode { Done = 0, No = 1, Usage = 2, Refused = 3 };

/// Ends the program with one line on standard error, which says what to do, and an exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), m_code(code) {}
    ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

/// What stands behind the command's name, in UTF-8.
using Arguments = std::vector<std::string>;

/// On what a command works.
enum class Target { file, registry };

struct Command {
    Target target;
    const char* name;
    const char* parameters;
    const char* help;
    std::size_t fewest; // arguments
    std::size_t most;
    ExitCode (*run)(const Arguments&);
};

/// The command of that name, if its arguments are as many as it takes. Throws Failure otherwise.
const Command& FindCommand(Target target, const std::string& name, std::size_t arguments);

/// The whole help text.
std::string Help();

/// Loads the settings file that the commands below work on. Throws Failure.
void LoadFile(const std::string& path);

ExitCode ListFile(const Arguments& arguments);
ExitCode ListKeys(const Arguments& arguments);
ExitCode GetValue(const Arguments& arguments);
ExitCode AskForKey(const Arguments& arguments);
ExitCode SetValue(const Arguments& arguments);
ExitCode DeleteKey(const Arguments& arguments);
ExitCode MakeSnapshot(const Arguments& arguments);
ExitCode RestoreSnapshot(const Arguments& arguments);
ExitCode CompareWithSnapshot(const Arguments& arguments);

/// Takes the registry's folders off the front of `arguments`, if they are given, and uses them. Throws
/// Failure.
void TakeRegistryFolders(Arguments& arguments);

ExitCode GetRegistryText(const Arguments& arguments);
ExitCode SetRegistryText(const Arguments& arguments);
ExitCode GetOrSetRegistryNumber(const Arguments& arguments);
ExitCode DeleteRegistryKey(const Arguments& arguments);
ExitCode ListRegistryKeys(const Arguments& arguments);

// How a command ends.
#pragma once

#include <stdexcept>
#include <string>

/// Exit codes: done, yes or equal; no, not found or different; a usage error; refused by the file, the
/// registry or the output.
enum ExitCode { Done = 0, No = 1, Usage = 2, Refused = 3 };

/// Ends the program with one line on standard error and an exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), m_code(code) {}
    ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

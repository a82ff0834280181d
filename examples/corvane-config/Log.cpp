#include "Log.h"

#include <corvane/config.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <system_error>

namespace {

using Quillon::NativeLogging::LoggerRegistry;
using Quillon::NativeLogging::LogLine;
using Quillon::NativeLogging::Severity;

struct Received {
    bool print = false;
    int error = 0;                    // of the system, as the log has it
    IConfigSource* writing = nullptr; // while it is written to
};
Received received; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): the log has one receiver

// The same error under the number that std::generic_category knows.
std::errc Condition(int error) {
    switch (error) {
    case 2:
    case 3: return std::errc::no_such_file_or_directory;
    case 5: return std::errc::permission_denied;
    case 8: return std::errc::not_enough_memory;
    case 19: return std::errc::read_only_file_system;
    case 32:
    case 33: return std::errc::device_or_resource_busy;
    case 112: return std::errc::no_space_on_device;
    default: return std::errc::io_error;
    }
}

// Reports begin with `Error 112`.
void TakeError(const std::string& report) {
    static const std::string opening = "Error ";
    const int error =
        report.compare(0, opening.size(), opening) == 0 ? std::atoi(&report[opening.size()]) : 0;
    if (error == 0 || error == FAILURE_GENERAL)
        return;
    received.error = error;
    if (received.writing && Condition(error) != std::errc::device_or_resource_busy)
        received.writing->SetWriteRetries(0);
}

void Receive(const LogLine& line) {
    static constexpr const char* kinds[] = {"report", "problem", "progress", "trace"};
    const std::string text = corvane::ToUtf8(line.text);
    if (line.severity == Severity::report)
        TakeError(text);
    if (received.print)
        std::cerr << "log, " << kinds[static_cast<int>(line.severity)] << ": " << text << '\n';
}

} // namespace

void ReceiveLog(bool print) {
    received.print = print;
    LoggerRegistry::setSink(Receive);
    if (!print)
        LoggerRegistry::setThreshold(Severity::report);
}

std::string LoggedReason() {
    if (received.error == 0)
        return {};
    return " (" + std::make_error_code(Condition(received.error)).message() + ")";
}

RetryWhileBusy::RetryWhileBusy(IConfigSource& source) {
    received.writing = &source;
}

RetryWhileBusy::~RetryWhileBusy() {
    received.writing = nullptr;
}

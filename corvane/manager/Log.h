// How the manager's operations speak to the log.
#pragma once

#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/NativeLogging.h>

namespace corvane {

inline Quillon::NativeLogging::ILogger& Log() {
    return *Quillon::NativeLogging::LoggerRegistry::getLogger(configChannel);
}

/// Reports a failure of the library's own making; gives FAILURE_GENERAL.
inline std::int32_t Fail(const char* function, std::int32_t line, const wchar* message = nullptr) {
    return failure_report(FAILURE_GENERAL, message, configChannel, function, line);
}

} // namespace corvane

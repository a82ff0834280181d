// The log as the manager's operations use it.
#pragma once

#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/NativeLogging.h>

namespace corvane {

inline Quillon::NativeLogging::ILogger& Log() {
    return *Quillon::NativeLogging::LoggerRegistry::getLogger(configChannel);
}

/// Reports a general failure and returns FAILURE_GENERAL.
inline std::int32_t Fail(const char* function, std::int32_t line, const wchar* message = nullptr) {
    return failure_report(FAILURE_GENERAL, message, configChannel, function, line);
}

} // namespace corvane

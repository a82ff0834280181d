// How the manager's operations speak to the log.
#pragma once

#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/NativeLogging.h>
#include <corvane/platform/quillonlogging/LogOutput.h>

namespace corvane {

inline Quillon::NativeLogging::ILogger& Log() {
    return *Quillon::NativeLogging::LoggerRegistry::getLogger(configChannel);
}

/// Writes a single access. One that nobody wants costs a look at a number.
template <class... Texts>
void Trace(const wchar* format, const Texts*... texts) {
    if (logging::IsWanted(Quillon::NativeLogging::Severity::trace))
        Log().logTrace(format, texts...);
}

/// The same for what has been done.
template <class... Texts>
void Progress(const wchar* format, const Texts*... texts) {
    if (logging::IsWanted(Quillon::NativeLogging::Severity::progress))
        Log().logProgress(format, texts...);
}

/// Reports a failure of the library's own making; gives FAILURE_GENERAL.
inline std::int32_t Fail(const char* function, std::int32_t line, const wchar* message = nullptr) {
    return failure_report(FAILURE_GENERAL, message, configChannel, function, line);
}

} // namespace corvane

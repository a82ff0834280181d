#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/NativeLogging.h>
#include <corvane/platform/Platform.h>

#include <cstdarg>

std::int32_t failure_report(std::int32_t code, const corvane::wchar* message, const corvane::wchar* channel,
                            const char* function, std::int32_t line) {
    constexpr std::int32_t always = -1;
    auto* const logger = Quillon::NativeLogging::LoggerRegistry::getLogger(channel);
    if (message)
        logger->logAtLevel(always, CORVANE_TEXT("Error %d \"%s\" at func: %S line: %d"), code, message,
                           function, line);
    else
        logger->logAtLevel(always, CORVANE_TEXT("Error %d at func: %S line: %d"), code, function, line);
    return code;
}

std::int32_t failure_reportFormatted(std::int32_t code, const corvane::wchar* messageFormat,
                                     const corvane::wchar* channel, const char* function, std::int32_t line,
                                     ...) {
    if (!messageFormat)
        return failure_report(code, nullptr, channel, function, line);
    corvane::wchar message[512] = {};
    std::va_list arguments;
    va_start(arguments, line);
    platform::_vsnwprintf(message, std::size(message) - 1, messageFormat, arguments);
    va_end(arguments);
    return failure_report(code, message, channel, function, line);
}

// The log. The library logs to the channel "corvane.config".
#pragma once

#include <corvane/foundations/WideString.h>

#include <functional>

namespace Quillon::NativeLogging {

/// The logger of one channel. Formats are those of wide printf: `%s` takes a wide text, `%S` a narrow one,
/// `%d` a 32-bit integer, `%lu` a corvane::ulong. Thread-safe; nothing throws.
class CORVANE_API ILogger {
public:
    /// Logs a line of any level; the library's reports use this.
    virtual void logAtLevel(std::int32_t level, const corvane::wchar* format, ...) = 0;
    /// Logs a text verbatim.
    virtual void logProblem(const corvane::wchar* text) = 0;
    /// Logs what has been done.
    virtual void logProgress(const corvane::wchar* format, ...) = 0;
    /// Logs a single access.
    virtual void logTrace(const corvane::wchar* format, ...) = 0;

    /// @cond
protected:
    ILogger() = default;
    ILogger(const ILogger&) = default;
    ILogger& operator=(const ILogger&) = default;
    ~ILogger() = default;
    /// @endcond
};

/// The kinds of line, the most urgent first: failure reports, explanations of a failed load, loads and
/// restores and misses, and one line for each value access.
enum class Severity { report, problem, progress, trace };

/// One formatted line. The texts are valid until the sink returns.
struct LogLine {
    corvane::wstring_view channel; ///< the name of the logger
    Severity severity;             ///< the kind of line
    corvane::wstring_view text;    ///< the formatted text, without a line break
};

/// Receives formatted lines; an empty sink stands for standard error.
using LogSink = std::function<void(const LogLine&)>;

/// The process's loggers and their output: without a sink, reports and problems go to standard error in
/// UTF-8, and nothing else. Thread-safe.
class CORVANE_API LoggerRegistry {
public:
    /// The logger of a channel, created by the first call. Never null; owned by the registry and never
    /// destroyed.
    static ILogger* getLogger(const corvane::wchar* name);

    /// Sends every line to `sink`, or to standard error again if it is empty. A sink may be called on several
    /// threads at once and with the library's lock held; it may use a configuration, and lines that it logs
    /// itself are dropped, as are exceptions that it throws. A call in progress may still reach the replaced
    /// sink.
    static void setSink(LogSink sink);

    /// Sets the least urgent severity to log. The default is problem, or trace with a sink.
    static void setThreshold(Severity severity);
};

} // namespace Quillon::NativeLogging

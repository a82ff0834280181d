// Where the library's log lines go. Every line of the library belongs to the channel "corvane.config".
#pragma once

#include <corvane/foundations/WideString.h>

#include <functional>

namespace Quillon::NativeLogging {

/// A logger of one channel. Formats are those of wide printf: `%s` takes a wide text, `%S` a narrow one, `%d`
/// a 32-bit integer, `%lu` a corvane::ulong. Any thread may call it at any time; no operation throws.
class CORVANE_API ILogger {
public:
    /// Writes a line of any level; the library's reports come this way.
    virtual void logAtLevel(std::int32_t level, const corvane::wchar* format, ...) = 0;
    /// Writes a text as it is.
    virtual void logProblem(const corvane::wchar* text) = 0;
    /// Writes what has been done.
    virtual void logProgress(const corvane::wchar* format, ...) = 0;
    /// Writes a single access.
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

/// One finished line. The texts last as long as the call of the sink.
struct LogLine {
    corvane::wstring_view channel; ///< the name of the logger
    Severity severity;             ///< the kind of line
    corvane::wstring_view text;    ///< the finished text, without a line break
};

/// Takes finished lines; an empty one stands for standard error.
using LogSink = std::function<void(const LogLine&)>;

/// The process's loggers and where their lines go: without a sink, reports and problems to standard error in
/// UTF-8 and nothing else. Safe from any thread.
class CORVANE_API LoggerRegistry {
public:
    /// The logger of a channel, made at the first call. Never null; it belongs to the registry and lasts for
    /// ever.
    static ILogger* getLogger(const corvane::wchar* name);

    /// Sends every line to `sink`, or with an empty one to standard error again. A sink may be called from
    /// several threads at once and under the library's lock; it may read a configuration, and lines that it
    /// causes itself are dropped. What it throws is dropped too. A call under way may still reach the sink
    /// that was replaced.
    static void setSink(LogSink sink);

    /// The least urgent kind that is wanted, from now on. Until it is called: problems, with a sink
    /// everything.
    static void setThreshold(Severity severity);
};

} // namespace Quillon::NativeLogging

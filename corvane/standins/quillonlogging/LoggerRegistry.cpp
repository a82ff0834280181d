#include <corvane/foundations/FailureReport.h>
#include <corvane/platform/Mutex.h>
#include <corvane/platform/WideFormat.h>
#include <corvane/standins/quillonlogging/LogOutput.h>

#include <deque>

namespace Quillon::NativeLogging {
namespace {

using corvane::wchar;
using corvane::wstring;
using corvane::wstring_view;
using corvane::logging::Emit;
using corvane::logging::IsWanted;

class Logger final : public ILogger {
public:
    explicit constexpr Logger(wstring_view channel) noexcept : m_channel(channel) {}

    wstring_view Channel() const noexcept { return m_channel; }

    // The library's reports all use the level "always".
    void logAtLevel(std::int32_t, const wchar* format, ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        Log(Severity::report, format, arguments);
        va_end(arguments);
    }

    void logProblem(const wchar* text) override {
        if (IsWanted(Severity::problem))
            Emit({m_channel, Severity::problem, text});
    }

    void logProgress(const wchar* format, ...) override {
        if (!IsWanted(Severity::progress))
            return;
        std::va_list arguments;
        va_start(arguments, format);
        Log(Severity::progress, format, arguments);
        va_end(arguments);
    }

    void logTrace(const wchar* format, ...) override {
        if (!IsWanted(Severity::trace))
            return;
        std::va_list arguments;
        va_start(arguments, format);
        Log(Severity::trace, format, arguments);
        va_end(arguments);
    }

private:
    void Log(Severity severity, const wchar* format, std::va_list arguments) const noexcept {
        std::va_list again;
        va_copy(again, arguments);
        wchar buffer[512];
        const std::size_t length = corvane::FormatWide(buffer, std::size(buffer), format, arguments);
        if (length <= std::size(buffer))
            Emit({m_channel, severity, wstring_view(buffer, length)});
        else
            LogLong(severity, length, format, again);
        va_end(again);
    }

    void LogLong(Severity severity, std::size_t length, const wchar* format,
                 std::va_list arguments) const noexcept {
        try {
            wstring text(length, wchar());
            corvane::FormatWide(text.data(), length, format, arguments);
            Emit({m_channel, severity, text});
        } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): without memory, the line is lost
        }
    }

    wstring_view m_channel;
};

// The library's own channel needs no allocation, so its logger is never missing.
Logger& LibraryLogger() noexcept {
    static Logger logger(configChannel);
    return logger;
}

struct OtherLoggers {
    corvane::platform::Mutex mutex;
    std::deque<wstring> names CORVANE_GUARDED_BY(mutex); // a deque's elements stay where they are
    std::deque<Logger> loggers CORVANE_GUARDED_BY(mutex);
};

Logger& OtherLogger(wstring_view name) {
    static auto& others = *new OtherLoggers;
    const corvane::platform::MutexGuard guard(others.mutex);
    for (Logger& logger : others.loggers) {
        if (logger.Channel() == name)
            return logger;
    }
    others.names.emplace_back(name);
    return others.loggers.emplace_back(others.names.back());
}

} // namespace

ILogger* LoggerRegistry::getLogger(const wchar* name) {
    Logger& own = LibraryLogger();
    if (name == own.Channel().data() || name == own.Channel())
        return &own;
    return &OtherLogger(name);
}

} // namespace Quillon::NativeLogging

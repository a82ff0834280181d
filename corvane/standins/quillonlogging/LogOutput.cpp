#include <corvane/foundations/Utf.h>
#include <corvane/platform/Mutex.h>
#include <corvane/platform/Platform.h>
#include <corvane/standins/quillonlogging/LogOutput.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <utility>

namespace corvane::logging {
namespace {

using namespace Quillon::NativeLogging;

struct Output {
    platform::Mutex mutex;
    std::shared_ptr<const LogSink> sink CORVANE_GUARDED_BY(mutex);
    bool thresholdIsSet CORVANE_GUARDED_BY(mutex) = false;
    Severity threshold CORVANE_GUARDED_BY(mutex) = Severity::problem;
};

// Never destroyed: lines may come from the destructors of static objects.
Output& TheOutput() {
    static auto& output = *new Output;
    return output;
}

std::atomic<Severity> leastUrgent{Severity::problem};
std::atomic<bool> hasSink{false};
thread_local bool inSink = false;

void Refresh(const Output& output) noexcept CORVANE_REQUIRES(output.mutex) {
    const Severity unset = output.sink ? Severity::trace : Severity::problem;
    hasSink.store(output.sink != nullptr, std::memory_order_relaxed);
    leastUrgent.store(output.thresholdIsSet ? output.threshold : unset, std::memory_order_relaxed);
}

std::shared_ptr<const LogSink> CurrentSink() {
    if (!hasSink.load(std::memory_order_relaxed))
        return nullptr;
    Output& output = TheOutput();
    const platform::MutexGuard guard(output.mutex);
    return output.sink;
}

// One write per line, so that lines of several threads do not mix. An ordinary line needs no memory, because
// a lack of memory is reported too.
void WriteToStandardError(const LogLine& line) {
    char buffer[2048];
    std::unique_ptr<char[]> larger;
    char* text = buffer;
    if (const std::size_t most = (line.channel.size() + line.text.size()) * 3 + 3; most > sizeof buffer) {
        larger.reset(new char[most]);
        text = larger.get();
    }
    std::size_t size = utf::ToUtf8(line.channel, text);
    text[size++] = ':';
    text[size++] = ' ';
    size += utf::ToUtf8(line.text, text + size);
    text[size++] = '\n';
    std::fwrite(text, 1, size, stderr);
}

} // namespace

bool IsWanted(Severity severity) noexcept {
    return severity <= leastUrgent.load(std::memory_order_relaxed);
}

void Emit(const LogLine& line) noexcept {
    // A report may be followed by a read of the thread's last error, which even an access to a thread-local
    // variable may change.
    const ulong lastError = platform::GetLastError();
    if (!std::exchange(inSink, true)) {
        try {
            if (const auto sink = CurrentSink())
                (*sink)(line);
            else
                WriteToStandardError(line);
        } catch (...) { // NOLINT(bugprone-empty-catch): a log line never makes an operation fail
        }
        inSink = false;
    }
    platform::SetLastError(lastError);
}

} // namespace corvane::logging

namespace Quillon::NativeLogging {

using namespace corvane::logging;

void LoggerRegistry::setSink(LogSink sink) {
    auto next = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    Output& output = TheOutput();
    const platform::MutexGuard guard(output.mutex);
    output.sink.swap(next); // the old one is destroyed after the lock is released
    Refresh(output);
}

void LoggerRegistry::setThreshold(Severity severity) {
    Output& output = TheOutput();
    const platform::MutexGuard guard(output.mutex);
    output.thresholdIsSet = true;
    output.threshold = severity;
    Refresh(output);
}

} // namespace Quillon::NativeLogging

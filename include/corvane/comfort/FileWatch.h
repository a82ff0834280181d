// Tells when the file behind a configuration has changed.
#pragma once

#include <corvane/detail/FileState.h>
#include <corvane/manager/ConfigManager.h>

#include <chrono>

namespace corvane {

/// Watches the file that a manager has loaded by its identity, size and nanosecond times, so that it also
/// notices changes during the load and files that are replaced by older ones, deleted or created again. Make
/// the watch after a load, then call Reload whenever Differs returns true. If that fails, try again without
/// asking Differs first:
///
///     if (watch.Differs() || stale)
///         stale = !corvane::Reload(config);
///
/// The watch does not refer to the manager, and keeps watching the same file if the manager loads another.
/// Not for use by several threads at once.
class FileWatch {
public:
    /// Starts from the file as `config` loaded it. Without a loaded file, Differs always returns false.
    CORVANE_API explicit FileWatch(const ConfigManager& config);

    /// Whether the file has changed since this last returned true, or since the load; the program's own
    /// writes count. No change is missed. While a further change could leave the same timestamp, it returns
    /// true without one: for some milliseconds after a change, for two seconds where times are in whole
    /// seconds, and on network file systems until two seconds after the watch was made or found a
    /// change, or longer if the server's clock is ahead.
    [[nodiscard]] CORVANE_API bool Differs() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    wstring m_path;
    FileState m_seen;
    Clock::time_point m_seenSince = Clock::now();
    Clock::time_point m_lastLook = m_seenSince;
};

} // namespace corvane

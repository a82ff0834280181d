// Tells when the file behind a configuration has changed.
#pragma once

#include <corvane/detail/FileState.h>
#include <corvane/manager/ConfigManager.h>

#include <chrono>

namespace corvane {

/// Watches the file that a manager has loaded, by its identity, size and times in nanoseconds: a change in
/// the very moment of the load is seen, and so is one that puts an older file in its place, takes it away or
/// brings it back. Make the watch after a load, and from then on Reload whenever Differs; if that fails, try
/// it again without asking once more.
///
///     if (watch.Differs() || stale)
///         stale = !corvane::Reload(config);
///
/// The watch keeps no reference to the manager, and stays with its file if the manager loads another one.
/// Each thread needs a watch of its own.
class FileWatch {
public:
    /// Begins with the file as it was when `config` loaded it. Without a file there is nothing to watch.
    CORVANE_API explicit FileWatch(const ConfigManager& config);

    /// Whether the file is another than when this last gave true, or than at the load. True also after the
    /// program's own writes, and too often while a timestamp is racy, since one more change could have got
    /// the same: for some milliseconds after a change; for two seconds where times are in seconds; and on
    /// network file systems, whose clock is another, until the first look two seconds after the watch was
    /// made or saw a change. Never too rarely.
    [[nodiscard]] CORVANE_API bool Differs() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    wstring m_path;
    FileState m_seen;
    Clock::time_point m_seenSince = Clock::now();
    Clock::time_point m_lastLook = m_seenSince;
};

} // namespace corvane

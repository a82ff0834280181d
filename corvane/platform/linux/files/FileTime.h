#pragma once

#include <cstdint>
#include <ctime>

namespace corvane::os {

inline std::int64_t Nanoseconds(const timespec& time) noexcept {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// The current time by the clock of file times, in nanoseconds since 1970.
inline std::int64_t CoarseNow() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return Nanoseconds(now);
}

/// Whether the times of the file at `path` (UTF-8) may come from another machine's clock. True also when
/// it cannot be known.
bool HasRemoteClock(const char* path) noexcept;

} // namespace corvane::os

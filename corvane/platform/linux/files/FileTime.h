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

} // namespace corvane::os

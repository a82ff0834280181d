#pragma once

#include <chrono>

namespace corvane::os {

/// Patience of about a second, or of a moment under platform::BriefWaits, for a lock that another process
/// holds: short sleeps that grow and differ at
/// random, so that the waiting ones don't march in step. Who has waited for long looks more often again, so
/// as not to be passed over by those who came later.
class Backoff {
public:
    Backoff() noexcept;

    /// Sleeps a little. False, without a sleep, when the time is over.
    bool Pause() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::microseconds shortestSleep{200};

    Clock::time_point m_end;
    std::chrono::microseconds m_longest = shortestSleep;
};

} // namespace corvane::os

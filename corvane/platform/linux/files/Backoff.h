#pragma once

#include <chrono>

namespace corvane::os {

/// Backoff while another process holds a lock, with a deadline of about a second (shorter under
/// platform::BriefWaits): sleeps that grow, with random jitter. Near the deadline they become shorter again,
/// so that a process that has waited long is not starved by newer ones.
class Backoff {
public:
    Backoff() noexcept;

    /// Sleeps briefly. False, without a sleep, after the deadline.
    bool Pause() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::microseconds shortestSleep{200};

    Clock::time_point m_end;
    std::chrono::microseconds m_longest = shortestSleep;
};

} // namespace corvane::os

#pragma once

#include <chrono>

namespace corvane::posix {

/// Patience of about a second for a lock that another process holds: short sleeps that grow and differ at
/// random, so that the waiting ones don't march in step.
class BoundedWait {
public:
    /// Sleeps a little. False, without a sleep, when the second is over.
    bool Pause() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_end = Clock::now() + std::chrono::seconds(1);
    std::chrono::microseconds m_longest{200};
};

} // namespace corvane::posix

#include <corvane/platform/posix/files/BoundedWait.h>

#include <algorithm>
#include <random>
#include <thread>
#include <unistd.h>

namespace corvane::posix {
namespace {

constexpr std::chrono::microseconds longestSleep{1000};
constexpr std::chrono::milliseconds lateTime{800}; // before the end

// A seed of its own for every thread of every process, the two sides of a fork included.
std::minstd_rand Generator() noexcept {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return std::minstd_rand(static_cast<unsigned>(now) ^ static_cast<unsigned>(::gettid()) << 16);
}

} // namespace

bool BoundedWait::Pause() noexcept {
    const auto left = m_end - Clock::now();
    if (left <= Clock::duration::zero())
        return false;
    auto generator = Generator();
    generator.discard(1);
    const auto part = static_cast<long>(generator() % 1000);
    std::this_thread::sleep_for(m_longest * (500 + part) / 1500);
    m_longest = left < lateTime ? shortestSleep : std::min(m_longest * 2, longestSleep);
    return true;
}

} // namespace corvane::posix

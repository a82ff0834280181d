#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/Backoff.h>

#include <algorithm>
#include <random>
#include <thread>
#include <unistd.h>
#include <utility>

namespace corvane {
namespace {

constexpr std::chrono::microseconds longestSleep{1000};
constexpr std::chrono::milliseconds lateTime{800}; // before the deadline
constexpr std::chrono::milliseconds patience{1000};
constexpr std::chrono::milliseconds briefPatience{50};

thread_local bool waitsAreBrief = false;

// Each thread of each process has its own seed, also on both sides of a fork.
std::minstd_rand Generator() noexcept {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return std::minstd_rand(static_cast<unsigned>(now) ^ static_cast<unsigned>(::gettid()) << 16);
}

} // namespace

platform::BriefWaits::BriefWaits(bool wanted) noexcept
    : m_outer(std::exchange(waitsAreBrief, waitsAreBrief || wanted)) {}

platform::BriefWaits::~BriefWaits() {
    waitsAreBrief = m_outer;
}

os::Backoff::Backoff() noexcept : m_end(Clock::now() + (waitsAreBrief ? briefPatience : patience)) {}

bool os::Backoff::Pause() noexcept {
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

} // namespace corvane

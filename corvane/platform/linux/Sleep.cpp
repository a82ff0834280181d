#include <corvane/platform/linux/LinuxPlatform.h>

#include <cerrno>
#include <ctime>

namespace corvane {

// Sleeps until an absolute time, so that signals neither shorten nor extend it.
void platform::Sleep(ulong milliseconds) noexcept {
    constexpr long second = 1'000'000'000;
    timespec until{};
    ::clock_gettime(CLOCK_MONOTONIC, &until);
    until.tv_sec += static_cast<std::time_t>(milliseconds / 1000);
    until.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (until.tv_nsec >= second) {
        ++until.tv_sec;
        until.tv_nsec -= second;
    }
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

} // namespace corvane

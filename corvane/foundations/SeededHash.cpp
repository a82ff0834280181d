#include <corvane/foundations/SeededHash.h>

#include <chrono>
#include <random>

namespace corvane {
namespace {

std::uint64_t RandomNumber() noexcept {
    try {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    } catch (...) { // without entropy, a time is still hard to guess
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

} // namespace

const SeededHash::Seed& SeededHash::TheSeed() noexcept {
    static const Seed seed{RandomNumber(), RandomNumber()};
    return seed;
}

} // namespace corvane

#include <corvane/foundations/KeyedHash.h>

#include <chrono>
#include <random>

namespace corvane {
namespace {

std::uint64_t RandomNumber() noexcept {
    try {
        return std::random_device()();
    } catch (...) { // a time is harder to guess than nothing
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

} // namespace

const KeyedHash::Keys& KeyedHash::TheKeys() noexcept {
    static const Keys keys{RandomNumber() % prime, RandomNumber() << 32 | RandomNumber() | 1};
    return keys;
}

} // namespace corvane

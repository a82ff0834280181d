// A hash whose results nobody outside the process can know.
#pragma once

#include <cstdint>

namespace corvane {

/// Takes a text unit by unit. Two texts of the same hash cannot be sought out, unlike those of a quicker
/// hash; what meets too many of them turns to this one. Gives other results in each process.
class KeyedHash {
public:
    void Put(std::uint32_t unit) noexcept { m_hash = (m_hash * TheKeys().factor + unit) % prime; }

    std::uint32_t Get() const noexcept {
        return static_cast<std::uint32_t>((m_hash * TheKeys().spread) >> 32);
    }

private:
    struct Keys {
        std::uint64_t factor; // below the prime
        std::uint64_t spread; // odd
    };

    static constexpr std::uint64_t prime = 0x7FFFFFFF;

    static const Keys& TheKeys() noexcept;

    std::uint64_t m_hash = 0; // the text as a number to the base of a secret factor, modulo a prime
};

} // namespace corvane

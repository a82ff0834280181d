// A hash that cannot be predicted outside the process.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane {

/// Lower-cases the ASCII letters in all lanes of a block at once; `each` has a one in each lane. The result
/// is undefined for lanes outside ASCII.
constexpr std::uint64_t FoldAsciiLanes(std::uint64_t block, std::uint64_t each) noexcept {
    const std::uint64_t fromA = block + each * (0x80 - 'A'); // bit 7 of a lane: at least 'A'
    const std::uint64_t pastZ = block + each * (0x80 - 'Z' - 1);
    return block | ((fromA ^ pastZ) & each * 0x80) >> 2;
}

/// Hashes a text in blocks of 64 bits. The seed is drawn once per process, so texts with equal hashes cannot
/// be prepared in advance.
class SeededHash {
public:
    /// `length` distinguishes texts whose last blocks overlap.
    explicit SeededHash(std::size_t length = 0) noexcept : SeededHash(TheSeed(), length) {}

    // Multiplies two secret halves: different blocks collide for one seed in 4 G.
    void Put(std::uint64_t block) noexcept {
        const std::uint64_t masked = m_state ^ block ^ m_mask;
        m_state = (masked & 0xFFFFFFFF) * (masked >> 32);
    }

    std::uint32_t Get() const noexcept {
        return static_cast<std::uint32_t>((m_state ^ m_state >> 32) * 0x9E3779B97F4A7C15 >> 32);
    }

private:
    struct Seed {
        std::uint64_t start;
        std::uint64_t mask;
    };

    SeededHash(const Seed& seed, std::size_t length) noexcept
        : m_mask(seed.mask), m_state(seed.start ^ length) {}

    static const Seed& TheSeed() noexcept;

    std::uint64_t m_mask;
    std::uint64_t m_state;
};

} // namespace corvane

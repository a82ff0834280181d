// 32-bit integers as registries store them: the lowest byte first, whatever the machine's byte order.
#pragma once

#include <array>
#include <cstdint>

namespace corvane {

using NumberBytes = std::array<unsigned char, 4>;

constexpr NumberBytes LittleEndian(std::uint32_t number) noexcept {
    return {static_cast<unsigned char>(number & 0xFF), static_cast<unsigned char>(number >> 8 & 0xFF),
            static_cast<unsigned char>(number >> 16 & 0xFF), static_cast<unsigned char>(number >> 24)};
}

constexpr std::uint32_t FromLittleEndian(const NumberBytes& bytes) noexcept {
    return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

} // namespace corvane

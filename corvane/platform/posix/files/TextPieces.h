// A text in several fragments.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvane::posix {

/// The concatenation of non-owning fragments.
using TextPieces = std::vector<std::string_view>;

inline std::size_t SizeOf(const TextPieces& text) noexcept {
    std::size_t size = 0;
    for (const std::string_view piece : text)
        size += piece.size();
    return size;
}

} // namespace corvane::posix

// A text that is not in one place.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvane::posix {

/// The text is the pieces one behind the other. They lie elsewhere, and have to last as long as it is used.
using TextPieces = std::vector<std::string_view>;

inline std::size_t SizeOf(const TextPieces& text) noexcept {
    std::size_t size = 0;
    for (const std::string_view piece : text)
        size += piece.size();
    return size;
}

} // namespace corvane::posix

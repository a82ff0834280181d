// A text in several fragments.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvane::os {

/// The concatenation of non-owning fragments.
using TextFragments = std::vector<std::string_view>;

inline std::size_t SizeOf(const TextFragments& text) noexcept {
    std::size_t size = 0;
    for (const std::string_view piece : text)
        size += piece.size();
    return size;
}

} // namespace corvane::os

// Searches UTF-16 text, four units at a time.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstdint>
#include <cstring>

namespace corvane {

// For a block that contains the unit. Branch-free: the branch would be mispredicted half the time.
inline std::size_t OffsetInBlock(const wchar* block, wchar unit) noexcept {
    const std::size_t afterFirst = block[0] != unit ? 1 : 0;
    const std::size_t afterSecond = block[1] != unit ? afterFirst : 0;
    const std::size_t afterThird = block[2] != unit ? afterSecond : 0;
    return afterFirst + afterSecond + afterThird;
}

/// The position of the first `unit` in `text`, or the text's size.
inline std::size_t FindUnit(wstring_view text, wchar unit) noexcept {
    constexpr std::size_t unitsOfBlock = 4;
    constexpr std::uint64_t each = 0x0001000100010001;
    std::size_t at = 0;
    for (; text.size() - at >= unitsOfBlock; at += unitsOfBlock) {
        std::uint64_t block = 0;
        std::memcpy(&block, text.data() + at, sizeof block);
        block ^= each * unit; // a lane that equals the unit becomes zero
        if (((block - each) & ~block & each * 0x8000) != 0)
            return at + OffsetInBlock(text.data() + at, unit);
    }
    while (at < text.size() && text[at] != unit)
        ++at;
    return at;
}

/// `name` up to its first NUL, where every name ends.
inline wstring_view UpToNul(wstring_view name) noexcept {
    return name.substr(0, FindUnit(name, wchar()));
}

/// Whether a name, which ends at its first NUL, is empty.
inline bool IsEmptyName(const wstring& name) noexcept {
    return *name.c_str() == 0;
}

} // namespace corvane

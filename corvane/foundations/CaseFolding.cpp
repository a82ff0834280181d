#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/Platform.h>

#include <algorithm>
#include <cstring>
#include <cwctype>

namespace corvane {

wchar FoldOutsideAscii(wchar unit) noexcept {
    if (unit >= 0xD800 && unit <= 0xDFFF)
        return unit;
    const std::wint_t lower = std::towlower(static_cast<std::wint_t>(unit));
    const auto folded = static_cast<wchar>(lower);
    return folded == lower ? folded : unit;
}

namespace {

constexpr std::size_t unitsOfBlock = 4;

wchar FoldForHash(wchar unit) noexcept {
    return unit < 0x80 ? FoldCase(unit) : platform::LowerInvariant(unit);
}

// Four units in one number, folded one by one, or fewer at the end of the text.
std::uint64_t FoldBlock(const wchar* units, std::size_t count) noexcept {
    std::uint64_t block = 0;
    for (std::size_t i = 0; i < count; ++i)
        block |= static_cast<std::uint64_t>(FoldForHash(units[i])) << (16 * i);
    return block;
}

// The same for four units at once, if they are ASCII: a lane gets its bit 0x20 if it holds an upper-case
// letter.
std::uint64_t FoldAsciiBlock(std::uint64_t block) noexcept {
    constexpr std::uint64_t each = 0x0001000100010001;
    const std::uint64_t fromA = block + each * (0x80 - 'A');
    const std::uint64_t beyondZ = block + each * (0x80 - 'Z' - 1);
    return block | (((fromA & ~beyondZ) & each * 0x80) >> 2);
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t block) noexcept {
    hash = (hash ^ block) * 0x9E3779B97F4A7C15;
    return hash ^ hash >> 29;
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    text = text.substr(0, text.find(wchar()));
    constexpr std::uint64_t outsideAscii = 0xFF80FF80FF80FF80;
    std::uint64_t hash = text.size();
    const wchar* at = text.data();
    for (std::size_t left = text.size(); left > 0;) {
        const std::size_t count = std::min(left, unitsOfBlock);
        std::uint64_t block = 0;
        std::memcpy(&block, at, count * sizeof(wchar));
        hash = Mix(hash, block & outsideAscii ? FoldBlock(at, count) : FoldAsciiBlock(block));
        at += count;
        left -= count;
    }
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

} // namespace corvane

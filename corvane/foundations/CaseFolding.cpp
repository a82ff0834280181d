#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/Platform.h>

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
constexpr std::uint64_t each = 0x0001000100010001; // one in each of four lanes of 16 bits

wchar FoldForHash(wchar unit) noexcept {
    return unit < 0x80 ? FoldCase(unit) : platform::LowerInvariant(unit);
}

bool IsPlain(std::uint64_t block) noexcept { // ASCII without a NUL
    const bool ascii = (block & each * 0xFF80) == 0;
    return ascii && ((block - each) & each * 0x8000) == 0;
}

// A lane gets its bit 0x20 if it holds an upper-case letter.
std::uint64_t FoldPlain(std::uint64_t block) noexcept {
    const std::uint64_t fromA = block + each * (0x80 - 'A');
    const std::uint64_t beyondZ = block + each * (0x80 - 'Z' - 1);
    return block | (((fromA & ~beyondZ) & each * 0x80) >> 2);
}

// The same unit by unit, up to a NUL.
std::uint64_t FoldUnits(wstring_view units) noexcept {
    std::uint64_t block = 0;
    for (std::size_t i = 0; i < units.size() && units[i] != 0; ++i)
        block |= static_cast<std::uint64_t>(FoldForHash(units[i])) << (16 * i);
    return block;
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t block) noexcept {
    hash = (hash ^ block) * 0x9E3779B97F4A7C15;
    return hash ^ hash >> 29;
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    std::uint64_t hash = 0;
    for (; text.size() >= unitsOfBlock; text.remove_prefix(unitsOfBlock)) {
        std::uint64_t block = 0;
        std::memcpy(&block, text.data(), sizeof block);
        const wstring_view units = text.substr(0, unitsOfBlock);
        const bool plain = IsPlain(block);
        if (!plain && units.find(wchar()) != wstring_view::npos)
            break;
        hash = Mix(hash, plain ? FoldPlain(block) : FoldUnits(units));
    }
    if (const std::uint64_t rest = FoldUnits(text))
        hash = Mix(hash, rest);
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

} // namespace corvane

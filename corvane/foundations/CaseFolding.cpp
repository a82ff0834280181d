#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/FindUnit.h>
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

std::uint64_t BlockAt(const wchar* units) noexcept {
    std::uint64_t block = 0;
    std::memcpy(&block, units, sizeof block);
    return block;
}

// A lane gets its bit 0x20 if it holds an upper-case letter.
std::uint64_t FoldPlain(std::uint64_t block) noexcept {
    const std::uint64_t fromA = block + each * (0x80 - 'A');
    const std::uint64_t beyondZ = block + each * (0x80 - 'Z' - 1);
    return block | (((fromA & ~beyondZ) & each * 0x80) >> 2);
}

// The same unit by unit, for at most four units.
std::uint64_t FoldUnits(wstring_view units) noexcept {
    std::uint64_t block = 0;
    for (std::size_t i = 0; i < units.size(); ++i)
        block |= static_cast<std::uint64_t>(FoldForHash(units[i])) << (16 * i);
    return block;
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t block) noexcept {
    hash = (hash ^ block) * 0x9E3779B97F4A7C15;
    return hash ^ hash >> 29;
}

std::uint32_t Finish(std::uint64_t hash) noexcept {
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

// Calls `put` with the beginning of each block of a text of at least one block. The last one may reach back
// into the one before it.
template <class Put>
bool ForEachBlock(wstring_view text, Put put) noexcept {
    const wchar* const last = text.data() + text.size() - unitsOfBlock;
    for (const wchar* at = text.data(); at < last; at += unitsOfBlock) {
        if (!put(at))
            return false;
    }
    return put(last);
}

std::uint32_t HashUnitByUnit(wstring_view text) noexcept {
    text = text.substr(0, FindUnit(text, wchar()));
    std::uint64_t hash = 0;
    if (text.size() < unitsOfBlock)
        return Finish(Mix(hash, FoldUnits(text)));
    ForEachBlock(text, [&hash](const wchar* at) {
        hash = Mix(hash, FoldUnits({at, unitsOfBlock}));
        return true;
    });
    return Finish(hash);
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    if (text.size() < unitsOfBlock)
        return HashUnitByUnit(text);
    std::uint64_t hash = 0;
    const bool plain = ForEachBlock(text, [&hash](const wchar* at) {
        const std::uint64_t block = BlockAt(at);
        hash = Mix(hash, FoldPlain(block));
        return IsPlain(block);
    });
    return plain ? Finish(hash) : HashUnitByUnit(text);
}

} // namespace corvane

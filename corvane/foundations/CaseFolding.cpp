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

std::uint64_t BlockAt(const wchar* units) noexcept {
    std::uint64_t block = 0;
    std::memcpy(&block, units, sizeof block);
    return block;
}

// Not zero if a lane holds a NUL or is outside ASCII: only then is there anything from bit 7 on up in it, or
// in what is left of it after one is taken away.
std::uint64_t NotPlain(std::uint64_t block) noexcept {
    return (block | (block - each)) & each * 0xFF80;
}

std::uint64_t FoldedBlock(wstring_view units) noexcept { // of at most one block
    wchar folded[unitsOfBlock] = {};
    for (std::size_t i = 0; i < units.size(); ++i)
        folded[i] = units[i] < 0x80 ? FoldCase(units[i]) : platform::LowerInvariant(units[i]);
    return BlockAt(folded);
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t block) noexcept {
    // the bit that parts the letter cases of ASCII
    hash = (hash ^ (block | each * 0x20)) * 0x9E3779B97F4A7C15;
    return hash ^ hash >> 32;
}

// Calls `put` with the beginning of each block of a text of at least one block. The last one may reach back
// into the one before it.
template <class Put>
void ForEachBlock(wstring_view text, Put put) noexcept {
    const wchar* const last = text.data() + text.size() - unitsOfBlock;
    for (const wchar* at = text.data(); at < last; at += unitsOfBlock)
        put(at);
    put(last);
}

std::uint32_t HashUnitByUnit(wstring_view text) noexcept {
    text = text.substr(0, FindUnit(text, wchar()));
    std::uint64_t hash = 0;
    if (text.size() < unitsOfBlock)
        hash = Mix(hash, FoldedBlock(text));
    else
        ForEachBlock(text, [&hash](const wchar* at) { hash = Mix(hash, FoldedBlock({at, unitsOfBlock})); });
    return static_cast<std::uint32_t>(hash);
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    if (text.size() < unitsOfBlock)
        return HashUnitByUnit(text);
    std::uint64_t hash = 0;
    std::uint64_t notPlain = 0;
    ForEachBlock(text, [&](const wchar* at) {
        const std::uint64_t block = BlockAt(at);
        notPlain |= NotPlain(block);
        hash = Mix(hash, block);
    });
    return notPlain == 0 ? static_cast<std::uint32_t>(hash) : HashUnitByUnit(text);
}

} // namespace corvane

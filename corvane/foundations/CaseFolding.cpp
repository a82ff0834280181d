#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/KeyedHash.h>
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

wchar FoldInEveryLocale(wchar unit) noexcept {
    return unit < 0x80 ? FoldCase(unit) : platform::LowerInvariant(unit);
}

int CompareIgnoringCase(wstring_view a, wstring_view b) noexcept {
    for (std::size_t i = 0;; ++i) {
        const wchar left = i < a.size() ? a[i] : wchar();
        const wchar right = i < b.size() ? b[i] : wchar();
        if (left != right && FoldCase(left) != FoldCase(right))
            return FoldCase(left) < FoldCase(right) ? -1 : 1;
        if (left == 0)
            return 0;
    }
}

namespace {

constexpr std::size_t unitsOfBlock = 4;
constexpr std::uint64_t each = 0x0001000100010001; // one in each of four lanes of 16 bits

std::uint64_t BlockAt(const wchar* units) noexcept {
    std::uint64_t block = 0;
    std::memcpy(&block, units, sizeof block);
    return block;
}

// What it gives for a block has one of the bits from 7 up in a lane that holds a NUL or is outside ASCII.
std::uint64_t Conspicuous(std::uint64_t block) noexcept {
    return block | (block - each);
}

std::uint64_t FoldedBlock(wstring_view units) noexcept { // of at most one block
    wchar folded[unitsOfBlock] = {};
    for (std::size_t i = 0; i < units.size(); ++i)
        folded[i] = FoldInEveryLocale(units[i]);
    return BlockAt(folded);
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t first, std::uint64_t second) noexcept {
    constexpr std::uint64_t caseBit = each * 0x20; // it parts the letter cases of ASCII
    hash = (hash ^ (first | caseBit)) * 0x9E3779B97F4A7C15;
    const std::uint64_t other = (second | caseBit) * 0xC2B2AE3D27D4EB4F;
    return hash ^ hash >> 32 ^ (other << 32 | other >> 32);
}

// Without it, names with a number in them would lie close together: such a number moves a hash evenly.
std::uint32_t Spread(std::uint64_t hash) noexcept {
    return static_cast<std::uint32_t>((hash * 0xD6E8FEB86659FD93) >> 32);
}

// Calls `put` with the beginnings of two blocks after two, for a text of at least one block. The last ones
// may reach back into those before them.
template <class Put>
void ForEachPair(wstring_view text, Put put) noexcept {
    const wchar* at = text.data();
    const wchar* const last = at + text.size() - unitsOfBlock;
    for (; last - at > static_cast<std::ptrdiff_t>(unitsOfBlock); at += 2 * unitsOfBlock)
        put(at, at + unitsOfBlock);
    put(at < last ? at : last, last);
}

std::uint32_t HashUnitByUnit(wstring_view text) noexcept {
    text = text.substr(0, FindUnit(text, wchar()));
    if (text.size() < unitsOfBlock)
        return Spread(Mix(0, FoldedBlock(text), 0));
    std::uint64_t hash = 0;
    ForEachPair(text, [&hash](const wchar* first, const wchar* second) {
        hash = Mix(hash, FoldedBlock({first, unitsOfBlock}), FoldedBlock({second, unitsOfBlock}));
    });
    return Spread(hash);
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    if (text.size() < unitsOfBlock)
        return HashUnitByUnit(text);
    std::uint64_t hash = 0;
    std::uint64_t conspicuous = 0;
    ForEachPair(text, [&](const wchar* first, const wchar* second) {
        const std::uint64_t blocks[] = {BlockAt(first), BlockAt(second)};
        conspicuous |= Conspicuous(blocks[0]) | Conspicuous(blocks[1]);
        hash = Mix(hash, blocks[0], blocks[1]);
    });
    return (conspicuous & each * 0xFF80) == 0 ? Spread(hash) : HashUnitByUnit(text);
}

std::uint32_t KeyedHashIgnoringCase(wstring_view text) noexcept {
    KeyedHash hash;
    for (const wchar unit : text.substr(0, FindUnit(text, wchar())))
        hash.Put(FoldInEveryLocale(unit));
    return hash.Get();
}

} // namespace corvane

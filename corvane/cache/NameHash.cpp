#include <corvane/cache/NameHash.h>
#include <corvane/detail/CaseFolding.h>
#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/SeededHash.h>

#include <cstring>

namespace corvane {
namespace {

constexpr std::size_t unitsOfBlock = 4;
constexpr std::uint64_t each = 0x0001000100010001; // one in each of four lanes of 16 bits

std::uint64_t BlockAt(const wchar* units) noexcept {
    std::uint64_t block = 0;
    std::memcpy(&block, units, sizeof block);
    return block;
}

// Any of the bits 7 to 15 of a lane is set in the result if the lane is NUL or not ASCII.
std::uint64_t SpecialUnits(std::uint64_t block) noexcept {
    return block | (block - each);
}

std::uint64_t FoldUnits(wstring_view units) noexcept { // of at most one block
    wchar folded[unitsOfBlock] = {};
    for (std::size_t i = 0; i < units.size(); ++i)
        folded[i] = FoldForHash(units[i]);
    return BlockAt(folded);
}

// Calls `put` with the start of each block of a text that has at least one; the last may overlap the one
// before.
template <class Put>
void ForEachBlock(wstring_view text, Put put) noexcept {
    const wchar* const last = text.data() + text.size() - unitsOfBlock;
    for (const wchar* at = text.data(); at < last; at += unitsOfBlock)
        put(at);
    put(last);
}

std::uint32_t HashUnitByUnit(wstring_view name) noexcept {
    name = name.substr(0, FindUnit(name, wchar()));
    SeededHash hash(name.size());
    if (name.size() < unitsOfBlock)
        hash.Put(FoldUnits(name));
    else
        ForEachBlock(name, [&](const wchar* units) { hash.Put(FoldUnits({units, unitsOfBlock})); });
    return hash.Get();
}

} // namespace

std::uint32_t HashIgnoringCase(wstring_view name) noexcept {
    if (name.size() < unitsOfBlock)
        return HashUnitByUnit(name);
    SeededHash hash(name.size());
    std::uint64_t special = 0;
    ForEachBlock(name, [&](const wchar* units) {
        const std::uint64_t block = BlockAt(units);
        special |= SpecialUnits(block);
        hash.Put(FoldAsciiLanes(block, each));
    });
    return (special & each * 0xFF80) == 0 ? hash.Get() : HashUnitByUnit(name);
}

} // namespace corvane

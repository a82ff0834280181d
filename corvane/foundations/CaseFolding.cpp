#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/Platform.h>

#include <cwctype>

namespace corvane {

wchar FoldOutsideAscii(wchar unit) noexcept {
    if (unit >= 0xD800 && unit <= 0xDFFF)
        return unit;
    const std::wint_t lower = std::towlower(static_cast<std::wint_t>(unit));
    const auto folded = static_cast<wchar>(lower);
    return folded == lower ? folded : unit;
}

std::uint32_t HashIgnoringCase(wstring_view text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const wchar unit : text) {
        if (unit == 0)
            break;
        const bool upper = unit >= 'A' && unit <= 'Z';
        const wchar folded = unit >= 0x80 ? platform::LowerInvariant(unit)
                             : upper      ? static_cast<wchar>(unit | 0x20)
                                          : unit;
        hash = (hash ^ folded) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
    }
    return static_cast<std::uint32_t>(hash >> 16);
}

} // namespace corvane

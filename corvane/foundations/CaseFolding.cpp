#include <corvane/detail/CaseFolding.h>
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

wchar FoldForHash(wchar unit) noexcept {
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

} // namespace corvane

#include <corvane/foundations/CaseFolding.h>

#include <cwctype>

namespace corvane {

wchar FoldOutsideAscii(wchar unit) noexcept {
    if (unit >= 0xD800 && unit <= 0xDFFF)
        return unit;
    const std::wint_t lower = std::towlower(static_cast<std::wint_t>(unit));
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
}

} // namespace corvane

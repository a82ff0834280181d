#include <corvane/platform/linux/LinuxPlatform.h>

#include <clocale>
#include <cwctype>

namespace corvane {

namespace {

// The fallback without a locale: the same for all units but the two letters whose lower case is ASCII.
wchar WithoutLocale(wchar unit) noexcept {
    constexpr wchar kelvinSign = 0x212A;
    constexpr wchar dottedI = 0x130;
    if (unit == kelvinSign)
        return 'k';
    return unit == dottedI ? wchar('i') : wchar(0xFFFD);
}

} // namespace

// Units that any other locale treats as equal are equal in this one; most C libraries include it.
wchar platform::LowerInvariant(wchar unit) noexcept {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!unicode)
        return WithoutLocale(unit);
    const std::wint_t lower = ::towlower_l(unit, unicode);
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
}

} // namespace corvane

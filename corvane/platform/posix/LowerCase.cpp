#include <corvane/platform/posix/PosixPlatform.h>

#include <clocale>
#include <cwctype>

namespace corvane {

// Whatever one locale holds equal this one does too. Without it every code unit gives the same: slower, never
// wrong.
wchar platform::LowerInvariant(wchar unit) noexcept {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!unicode)
        return 0xFFFD;
    const std::wint_t lower = ::towlower_l(unit, unicode);
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
}

} // namespace corvane

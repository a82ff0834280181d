#include <corvane/platform/posix/PosixPlatform.h>

#include <clocale>
#include <cwctype>

namespace corvane {

// Whatever one locale holds equal this one does too. Without it all code units give the same, but for the two
// whose lower case is ASCII: slower, never wrong.
wchar platform::LowerInvariant(wchar unit) noexcept {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!unicode)
        return unit == 0x212A ? 'k' : unit == 0x130 ? 'i' : 0xFFFD;
    const std::wint_t lower = ::towlower_l(unit, unicode);
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
}

} // namespace corvane

#include <corvane/platform/posix/PosixPlatform.h>

#include <clocale>
#include <cwctype>

namespace corvane {

// Whatever another locale holds equal this one does too; it comes with the C library.
wchar platform::LowerInvariant(wchar unit) noexcept {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const std::wint_t lower = unicode ? ::towlower_l(unit, unicode) : unit;
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
}

} // namespace corvane

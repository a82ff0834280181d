#include <corvane/platform/windows/WindowsPlatform.h>

namespace corvane {

// Units that cannot be mapped all give the same result: slower to find, never wrong.
wchar platform::LowerInvariant(wchar unit) noexcept {
    wchar lower = 0;
    return ::LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, &unit, 1, &lower, 1) == 1 ? lower : 0xFFFD;
}

} // namespace corvane

// Case-insensitive comparison by code unit, in the current locale.
#pragma once

#include <corvane/foundations/WideString.h>

#include <algorithm>

namespace corvane {

/// The lower-case form of a code unit outside ASCII in the current locale. Surrogates stay as they are.
wchar FoldOutsideAscii(wchar unit) noexcept;

inline wchar FoldCase(wchar unit) noexcept {
    if (unit >= 0x80)
        return FoldOutsideAscii(unit);
    return unit >= 'A' && unit <= 'Z' ? static_cast<wchar>(unit + ('a' - 'A')) : unit;
}

/// The same for all units that FoldCase can ever take for one, whatever the locale.
wchar FoldForHash(wchar unit) noexcept;

/// Below zero, zero or above zero as `a` sorts before, with or behind `b` after folding to lower case. Each
/// text ends at its first NUL. Safe from any thread.
CORVANE_API int CompareIgnoringCase(wstring_view a, wstring_view b) noexcept;

/// Whether CompareIgnoringCase gives zero.
inline bool SameIgnoringCase(wstring_view a, wstring_view b) noexcept {
    const bool same = std::equal(a.begin(), a.end(), b.begin(), b.end());
    return same || CompareIgnoringCase(a, b) == 0;
}

/// The order of the cache: that of the platform's `_wcsicmp`, up to the first NUL.
struct CaseInsensitiveLess {
    using is_transparent = void;
    bool operator()(wstring_view a, wstring_view b) const noexcept { return CompareIgnoringCase(a, b) < 0; }
};

} // namespace corvane

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

/// Folds for hashing: the same for all units that FoldCase can ever make equal, in any locale.
wchar FoldForHash(wchar unit) noexcept;

/// Compares after folding to lower case: below zero, zero or above zero as `a` sorts before, equal to or
/// after `b`. Each text ends at its first NUL. Thread-safe.
CORVANE_API int CompareIgnoringCase(wstring_view a, wstring_view b) noexcept;

/// Whether CompareIgnoringCase returns zero.
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

#pragma once

#include <corvane/foundations/FindUnit.h>

namespace corvane {

/// The section for cache-only values, which no source may contain. It survives every reload.
inline constexpr const wchar* reservedSection = CORVANE_TEXT("_$CACHE$_");

/// Whether `section`, up to its first NUL, is the reserved one in exactly this letter case.
inline bool IsReserved(wstring_view section) noexcept {
    return UpToNul(section) == reservedSection;
}

} // namespace corvane

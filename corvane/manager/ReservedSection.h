#pragma once

#include <corvane/foundations/FindUnit.h>

namespace corvane {

/// The section for values that no source may define. It comes through every reload whole.
inline constexpr const wchar* reservedSection = CORVANE_TEXT("_$CACHE$_");

/// Whether `section` is that one, in that very letter case. A name ends at a NUL.
inline bool IsReserved(wstring_view section) noexcept {
    return UpToNul(section) == reservedSection;
}

} // namespace corvane

#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// The section for values that no source may define. It comes through every reload whole.
inline constexpr const wchar* reservedSection = CORVANE_TEXT("_$CACHE$_");

} // namespace corvane

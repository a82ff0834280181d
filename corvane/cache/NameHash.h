#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// A hash that is the same for all names that SameIgnoringCase holds equal, in every locale. Seeded: it
/// differs from process to process.
std::uint32_t HashIgnoringCase(wstring_view name) noexcept;

} // namespace corvane

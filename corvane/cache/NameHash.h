#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// A hash that is equal for names that SameIgnoringCase finds equal, in every locale. Seeded: it differs from
/// process to process.
std::uint32_t HashIgnoringCase(wstring_view name) noexcept;

} // namespace corvane

#pragma once

#include <corvane/detail/Export.h>

namespace corvane {

/// The version of the loaded library, "major.minor.patch". Until 1.0, programs must be rebuilt for another
/// minor version. Thread-safe.
CORVANE_API const char* Version() noexcept;

} // namespace corvane

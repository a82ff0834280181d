#pragma once

#include <corvane/foundations/Export.h>

namespace corvane {

/// The version of the library that is loaded, "major.minor.patch". Until 1.0, programs have to be built anew
/// for another minor version. Safe from any thread.
CORVANE_API const char* Version() noexcept;

} // namespace corvane

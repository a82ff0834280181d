#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// Why the file at `path` cannot be loaded, as the second half of a sentence. Examines the file anew; it may
/// have changed since the load failed.
std::string CauseOfFailure(const wstring& path);

} // namespace corvane

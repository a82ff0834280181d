#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// Why the file at `path` cannot be loaded, as the second half of a sentence. It is a new look at the file,
/// which may be another by now.
std::string CauseOfFailure(const wstring& path);

} // namespace corvane

#pragma once

#include <corvane/foundations/WideString.h>

#include <string>

namespace corvane::posix {

/// Reads the regular file behind `descriptor` from its beginning to its end, under the lock that keeps
/// writers in place away. More than 1 GiB is refused (ERROR_FILE_TOO_LARGE). Returns a platform error number.
ulong ReadWholeFile(int descriptor, std::string& content);

} // namespace corvane::posix

#pragma once

#include <corvane/foundations/WideString.h>

#include <cstddef>
#include <string>

namespace corvane::posix {

/// 1 GiB: no configuration, but a mistake, and too much to hold in memory.
inline constexpr std::size_t largestFile = std::size_t{1} << 30;

/// Reads the regular file behind `descriptor` from its beginning to its end, under the lock that keeps
/// writers in place away. More than that is refused (ERROR_FILE_TOO_LARGE). Returns a platform error number.
ulong ReadWholeFile(int descriptor, std::string& content);

} // namespace corvane::posix

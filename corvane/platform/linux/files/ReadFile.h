#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/FileText.h>

#include <cstddef>
#include <sys/stat.h>

namespace corvane::os {

/// The largest file that is read, in bytes: offsets into it fit 32 bits.
inline constexpr std::size_t maximumFileSize = std::size_t{1} << 30;

/// Reads an open file from its beginning to its end, wherever its offset stands, into `content`. Takes no
/// lock; what is no regular file is ERROR_ACCESS_DENIED, what is above maximumFileSize is
/// ERROR_FILE_TOO_LARGE. Returns ERROR_SUCCESS or the platform's error number; throws only for lack of
/// memory.
ulong ReadWholeFile(int descriptor, FileText& content);

/// The same for a file whose status is known.
ulong ReadWholeFile(int descriptor, const struct stat& status, FileText& content);

} // namespace corvane::os

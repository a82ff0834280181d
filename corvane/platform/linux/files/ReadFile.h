#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/FileText.h>

#include <cstddef>
#include <sys/stat.h>

namespace corvane::os {

/// The largest file that is read, in bytes: offsets into it fit 32 bits.
inline constexpr std::size_t maximumFileSize = std::size_t{1} << 30;

/// Reads an open file from beginning to end, whatever its offset, into `content`. Takes no lock.
/// ERROR_ACCESS_DENIED for anything but a regular file, ERROR_FILE_TOO_LARGE above maximumFileSize. Returns
/// ERROR_SUCCESS or the platform's error number; throws only std::bad_alloc.
ulong ReadWholeFile(int descriptor, FileText& content);

/// The same for a file whose status is known.
ulong ReadWholeFile(int descriptor, const struct stat& status, FileText& content);

} // namespace corvane::os

#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/posix/files/TextPieces.h>

#include <string_view>

namespace corvane::posix {

/// Writes the whole of `content` at the beginning of the file. Returns an `errno` value, 0 for done.
int WriteWhole(int descriptor, const TextPieces& content) noexcept;

/// Overwrites the file with `content` where it lies and flushes it, while readers are kept away. Room is
/// taken before anything is touched; when it fails in the middle, `old`, the present content, is put back.
/// Returns a platform error number.
ulong WriteInPlace(int descriptor, const TextPieces& content, std::string_view old);

} // namespace corvane::posix

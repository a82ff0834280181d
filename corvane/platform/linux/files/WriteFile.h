#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/TextFragments.h>

#include <string_view>

namespace corvane::os {

/// Writes all of `content` at the beginning of the file. Returns an `errno` value, 0 for success.
int WriteWhole(int descriptor, const TextFragments& content) noexcept;

/// Overwrites the file in place with `content` and flushes it, under the exclusive content lock. Space is
/// reserved before anything is changed; after an error, the present content, `old`, is written back. Returns
/// a platform error number.
ulong WriteInPlace(int descriptor, const TextFragments& content, std::string_view old);

} // namespace corvane::os

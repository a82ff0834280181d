// The wide printf formats of log lines and names, the same on every platform.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstdarg>
#include <cstddef>

namespace corvane {

/// Formats `%s` (wide text), `%S` (narrow text, UTF-8), `%d` (32-bit integer), `%lu` (corvane::ulong) and
/// `%%`; a null text prints as "(null)". Stores at most `capacity` units without a terminator and returns the
/// length of the whole text. From any other conversion on, the format is printed verbatim. Allocates nothing.
std::size_t FormatWide(wchar* buffer, std::size_t capacity, const wchar* format,
                       std::va_list arguments) noexcept;

} // namespace corvane

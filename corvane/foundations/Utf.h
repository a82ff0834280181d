// Transcoding into buffers of the caller's, without allocation. ToWide and ToUtf8 are the comfortable forms.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstddef>

namespace corvane::utf {

/// Decodes the character at the front of `utf8`, which is not empty, and moves `utf8` behind it. A maximal
/// ill-formed sequence gives U+FFFD.
char32_t TakeCharacter(std::string_view& utf8) noexcept;

/// Converts UTF-8 to UTF-16 at `out`, which has room for `utf8.size()` units: UTF-16 never needs more units
/// than UTF-8 needs bytes. Returns the number of units written. A maximal ill-formed sequence becomes one
/// U+FFFD.
std::size_t ToWide(std::string_view utf8, wchar* out) noexcept;

/// The number of units that the conversion of `utf8` writes.
std::size_t WideLength(std::string_view utf8) noexcept;

/// Converts UTF-16 to UTF-8 at `out`, which has room for three bytes a unit. Returns the number of bytes
/// written. A lone surrogate becomes U+FFFD.
std::size_t ToUtf8(wstring_view wide, char* out) noexcept;

/// The number of bytes that the conversion of `wide` writes.
std::size_t Utf8Length(wstring_view wide) noexcept;

/// Whether the text has half of a surrogate pair in it, for which there is no UTF-8.
bool HasLoneSurrogate(wstring_view wide) noexcept;

} // namespace corvane::utf

// Transcoding between UTF-8 and UTF-16 into the caller's buffers, without allocation. ToWide and ToUtf8 are
// the convenient forms.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstddef>

namespace corvane::utf {

/// Decodes the first character of `utf8`, which is not empty, and removes it. A maximal ill-formed sequence
/// gives U+FFFD.
char32_t ConsumeCharacter(std::string_view& utf8) noexcept;

/// Converts UTF-8 to UTF-16. `out` must hold `utf8.size()` units: UTF-16 never needs more units than UTF-8
/// needs bytes. Returns the number of units written. A maximal ill-formed sequence becomes one U+FFFD.
std::size_t ToWide(std::string_view utf8, wchar* out) noexcept;

/// The number of units that the conversion of `utf8` writes.
std::size_t WideLength(std::string_view utf8) noexcept;

/// Converts UTF-16 to UTF-8. `out` must hold three bytes per unit. Returns the number of bytes written. A
/// lone surrogate becomes U+FFFD.
std::size_t ToUtf8(wstring_view wide, char* out) noexcept;

/// The number of bytes that the conversion of `wide` writes.
std::size_t Utf8Length(wstring_view wide) noexcept;

/// Whether the text contains a lone surrogate, which UTF-8 cannot represent.
bool HasLoneSurrogate(wstring_view wide) noexcept;

} // namespace corvane::utf

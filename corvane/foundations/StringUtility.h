// The functions of the string utility library that this library calls.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstddef>

/// Converts a NUL-terminated wide text, not null, to UTF-8. Returns 0 and in `*result` a new text that the
/// caller frees with string_freeA; non-zero if out of memory or if the text contains a lone surrogate, which
/// UTF-8 cannot represent.
int stringCnv_wcsToUTF8Alloc(const corvane::wchar* text, char** result) noexcept;

void string_freeA(char* text) noexcept;

/// Formats into `buffer` of `capacity` units, always terminated. 0, or non-zero if the text was truncated.
int string_safeSprintfW(corvane::wchar* buffer, std::size_t capacity, const corvane::wchar* format,
                        ...) noexcept;

/// The first character of `text` that is not white space (space, tab, line feed, vertical tab, form feed,
/// carriage return), or its end.
const corvane::wchar* string_skipWhiteSpaceW(const corvane::wchar* text) noexcept;

/// Removes trailing white space from a NUL-terminated text in place, overwriting it with NULs.
void string_stripTrailWhiteSpaceA(char* text) noexcept;

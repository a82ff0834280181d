// What the library calls of the string utility library.
#pragma once

#include <corvane/foundations/WideString.h>

#include <cstddef>

/// Converts a NUL-terminated wide text, not null, to UTF-8. Gives 0 and in `*result` a new text that the
/// caller frees with string_freeA; or a non-zero value for lack of memory or a lone surrogate in the text,
/// which UTF-8 could not give back.
int stringCnv_wcsToUTF8Alloc(const corvane::wchar* text, char** result) noexcept;

void string_freeA(char* text) noexcept;

/// Formats into `buffer` of `capacity` units, always terminated. 0, or non-zero when the text was cut to fit.
int string_safeSprintfW(corvane::wchar* buffer, std::size_t capacity, const corvane::wchar* format,
                        ...) noexcept;

/// The first character of `text` that is no white space (space, tab, line feed, vertical tab, form feed,
/// carriage return), or its end.
const corvane::wchar* string_skipWhiteSpaceW(const corvane::wchar* text) noexcept;

/// Cuts white space off the end of a NUL-terminated text, in place: NULs take its place.
void string_stripTrailWhiteSpaceA(char* text) noexcept;

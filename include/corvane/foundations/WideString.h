// The library's string type: UTF-16 in 16-bit code units on every platform.
#pragma once

#include <corvane/detail/Export.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

#ifdef _WIN32
using wchar = wchar_t;
using ulong = unsigned long;
#define CORVANE_TEXT(literal) L##literal
#else
using wchar = char16_t;      ///< a code unit of the library's strings: `wchar_t` on Windows
using ulong = std::uint32_t; ///< `unsigned long` of the platform: 32 bits

/// A literal of the library's string type: `u"..."` here and `L"..."` on Windows.
#define CORVANE_TEXT(literal) u##literal
#endif

static_assert(sizeof(wchar) == 2 && sizeof(ulong) == 4);

using wstring = std::basic_string<wchar>;           ///< `std::wstring` on Windows
using wstring_view = std::basic_string_view<wchar>; ///< a non-owning view of a string

/// Converts UTF-8 to UTF-16, embedded NULs included. Each ill-formed sequence becomes U+FFFD. Throws only
/// std::bad_alloc; thread-safe.
CORVANE_API wstring ToWide(std::string_view utf8);

/// Converts UTF-16 to UTF-8, embedded NULs included. A lone surrogate becomes U+FFFD. Throws only
/// std::bad_alloc; thread-safe.
CORVANE_API std::string ToUtf8(wstring_view wide);

} // namespace corvane

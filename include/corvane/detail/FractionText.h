// Decimal fractions as text, the same in every locale.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#ifndef __cpp_lib_to_chars // such as libc++ 14, which converts integers only
#include <cmath>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#endif

namespace corvane::platform {

#ifdef __cpp_lib_to_chars

template <class T>
std::optional<T> ParseFraction(std::string_view text) noexcept {
    T number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional<T>(number) : std::nullopt;
}

template <class T>
std::string FormatFraction(T number) {
    char text[64];
    const auto result = std::to_chars(text, text + sizeof text, number);
    return {text, result.ptr};
}

#else

template <class T>
std::optional<T> ParseFraction(std::string_view text) {
    if (text.empty() || text.front() == '+' ||
        text.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
        return std::nullopt;
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    T number{};
    stream >> number;
    // Streams report an error for subnormal numbers.
    const bool read = !stream.fail() || std::fpclassify(number) == FP_SUBNORMAL;
    return read && stream.eof() ? std::optional<T>(number) : std::nullopt;
}

template <class T>
std::string FormatFraction(T number) {
    for (int digits = 1;; ++digits) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << std::setprecision(digits) << number;
        if (digits >= std::numeric_limits<T>::max_digits10 || ParseFraction<T>(stream.str()) == number)
            return stream.str();
    }
}

#endif

} // namespace corvane::platform

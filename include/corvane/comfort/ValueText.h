// The text form of typed values in a settings file, the same in every locale.
#pragma once

#include <corvane/detail/FractionText.h>
#include <corvane/foundations/WideString.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>
#include <ratio>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace corvane {

namespace detail {

template <class>
inline constexpr bool never = false;

template <class T>
inline constexpr bool isTextOfOthers = std::is_convertible_v<T, std::string_view>;

} // namespace detail

/// How values of type `T` are written in a file: `static std::optional<T> FromText(std::string_view)`, which
/// parses a whole text, `static std::string ToText(const T&)`, and optionally `static std::string Form()`,
/// which describes the expected form for the log. Programs may specialise it for their own types. Supported
/// are std::string and std::filesystem::path, verbatim; bool (`yes`, `true`, `on`, `1` and their opposites);
/// integers in decimal; finite floating-point numbers; std::chrono durations with a unit (`1500ms`); and
/// std::vector of these, separated by commas.
template <class T, class Enable = void>
struct ValueText {
    static_assert(!detail::isTextOfOthers<T>,
                  "a value that is read needs memory of its own: read a std::string");
    static_assert(detail::isTextOfOthers<T> || detail::never<T>,
                  "values of this type are neither read nor written: specialise corvane::ValueText for it");
    /// The value of the whole text, or nothing if it has another form.
    static std::optional<T> FromText(std::string_view text);
    /// The text of the value.
    static std::string ToText(const T& value);
};

namespace detail {

template <class T>
std::optional<T> ParseNumber(std::string_view text) noexcept {
    T number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional<T>(number) : std::nullopt;
}

// Conversions between a path's native string and UTF-8.
inline std::string TextOf(const std::string& path) {
    return path;
}
inline std::string TextOf(const wstring& path) {
    return ToUtf8(path);
}
inline std::string PathOf(std::string_view text, char) {
    return std::string(text);
}
inline wstring PathOf(std::string_view text, wchar) {
    return ToWide(text);
}

// Compares ignoring ASCII letter case; `word` is in lower case.
inline bool IsWord(std::string_view text, std::string_view word) noexcept {
    if (text.size() != word.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool capital = text[i] >= 'A' && text[i] <= 'Z';
        if ((capital ? text[i] - 'A' + 'a' : text[i]) != word[i])
            return false;
    }
    return true;
}

template <class T>
inline constexpr bool isCharacter = std::is_same_v<T, char> || std::is_same_v<T, wchar_t> ||
                                    std::is_same_v<T, char16_t> || std::is_same_v<T, char32_t>;

} // namespace detail

/// Text in UTF-8, verbatim.
template <>
struct ValueText<std::string> {
    static std::optional<std::string> FromText(std::string_view text) { return std::string(text); }
    static std::string ToText(const std::string& value) { return value; }
};

/// A path in UTF-8, verbatim.
template <>
struct ValueText<std::filesystem::path> {
    using Path = std::filesystem::path;

    static std::optional<Path> FromText(std::string_view text) {
        return Path(detail::PathOf(text, Path::value_type()));
    }
    static std::string ToText(const Path& value) { return detail::TextOf(value.native()); }
};

/// `yes`, `true`, `on` or `1`, and `no`, `false`, `off` or `0`, in any letter case; written as `yes` or `no`.
template <>
struct ValueText<bool> {
    static std::optional<bool> FromText(std::string_view text) noexcept {
        for (const std::string_view word : {"yes", "true", "on", "1"})
            if (detail::IsWord(text, word))
                return true;
        for (const std::string_view word : {"no", "false", "off", "0"})
            if (detail::IsWord(text, word))
                return false;
        return std::nullopt;
    }
    static std::string ToText(bool value) { return value ? "yes" : "no"; }
    static std::string Form() { return "yes or no"; }
};

/// An integer in decimal digits, with an optional minus sign if the type is signed; nothing if it is out of
/// the type's range.
template <class T>
struct ValueText<T, std::enable_if_t<std::is_integral_v<T> && !detail::isCharacter<T>>> {
    static std::optional<T> FromText(std::string_view text) noexcept { return detail::ParseNumber<T>(text); }
    static std::string ToText(T value) { return std::to_string(value); }
    static std::string Form() {
        using Limits = std::numeric_limits<T>;
        return "a whole number from " + ToText(Limits::min()) + " to " + ToText(Limits::max());
    }
};

/// A decimal fraction with a point, with or without an exponent; written in the shortest form that reads back
/// as the same number. Infinities, NaN and numbers out of the type's range are not read.
template <class T>
struct ValueText<T, std::enable_if_t<std::is_floating_point_v<T>>> {
    static std::optional<T> FromText(std::string_view text) {
        const std::optional<T> number = platform::ParseFraction<T>(text);
        return number && std::isfinite(*number) ? number : std::nullopt;
    }
    static std::string ToText(T value) { return platform::FormatFraction(value); }
    static std::string Form() { return "a number such as 0.5"; }
};

/// An integer followed directly by a unit: us, ms, s, min, h or d; nothing if the type cannot represent that
/// time exactly (1500ms is no whole number of seconds). Written in the type's own unit.
template <class Rep, class Period>
struct ValueText<std::chrono::duration<Rep, Period>, std::enable_if_t<std::is_integral_v<Rep>>> {
    using Duration = std::chrono::duration<Rep, Period>;

    static std::optional<Duration> FromText(std::string_view text) {
        const std::size_t unit = text.find_first_not_of("-0123456789");
        const std::optional<Rep> count = detail::ParseNumber<Rep>(text.substr(0, unit));
        if (!count || unit == std::string_view::npos)
            return std::nullopt;
        const std::string_view name = text.substr(unit);
        return name == Unit<std::micro>()          ? In<std::micro>(*count)
               : name == Unit<std::milli>()        ? In<std::milli>(*count)
               : name == Unit<std::ratio<1>>()     ? In<std::ratio<1>>(*count)
               : name == Unit<std::ratio<60>>()    ? In<std::ratio<60>>(*count)
               : name == Unit<std::ratio<3600>>()  ? In<std::ratio<3600>>(*count)
               : name == Unit<std::ratio<86400>>() ? In<std::ratio<86400>>(*count)
                                                   : std::nullopt;
    }
    static std::string ToText(Duration value) {
        return std::to_string(value.count()).append(Unit<typename Period::type>());
    }
    static std::string Form() { return "a time with a unit, such as " + ToText(Duration(15)); }

private:
    template <class Of>
    static constexpr std::string_view Unit() noexcept {
        constexpr bool isMicro = std::is_same_v<Of, std::micro>;
        constexpr bool isMilli = std::is_same_v<Of, std::milli>;
        static_assert(isMicro || isMilli || Of::den == 1, "a duration of a unit that has no name here");
        constexpr auto seconds = Of::num;
        static_assert(seconds == 1 || seconds == 60 || seconds == 3600 || seconds == 86400);
        return isMicro           ? "us"
               : isMilli         ? "ms"
               : seconds == 1    ? "s"
               : seconds == 60   ? "min"
               : seconds == 3600 ? "h"
                                 : "d";
    }

    // Converts `count` from the unit `Of` to the type's.
    template <class Of>
    static std::optional<Duration> In(Rep count) noexcept {
        using Factor = std::ratio_divide<Of, Period>;
        if (count % Factor::den != 0)
            return std::nullopt;
        const auto whole = static_cast<std::intmax_t>(count / Factor::den);
        if (whole > static_cast<std::intmax_t>(std::numeric_limits<Rep>::max()) / Factor::num ||
            whole < static_cast<std::intmax_t>(std::numeric_limits<Rep>::min()) / Factor::num)
            return std::nullopt;
        return Duration(static_cast<Rep>(whole * Factor::num));
    }
};

namespace detail {

inline std::string_view WithoutBlanks(std::string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(" \t") + 1));
    return text;
}

template <class T, class = void>
inline constexpr bool hasForm = false;
template <class T>
inline constexpr bool hasForm<T, std::void_t<decltype(ValueText<T>::Form())>> = true;

template <class T>
std::string FormOf() {
    if constexpr (hasForm<T>)
        return ValueText<T>::Form();
    else
        return "of the expected form";
}

} // namespace detail

/// Values separated by commas; blanks around them are ignored, and an empty text is an empty list. Elements
/// cannot contain commas or have blanks at their ends, and a list of one empty element cannot be written.
template <class T>
struct ValueText<std::vector<T>> {
    static std::optional<std::vector<T>> FromText(std::string_view text) {
        std::vector<T> values;
        if (detail::WithoutBlanks(text).empty())
            return values;
        for (;;) {
            const std::size_t comma = text.find(',');
            std::optional<T> value = ValueText<T>::FromText(detail::WithoutBlanks(text.substr(0, comma)));
            if (!value)
                return std::nullopt;
            values.push_back(*std::move(value));
            if (comma == std::string_view::npos)
                return values;
            text.remove_prefix(comma + 1);
        }
    }
    static std::string ToText(const std::vector<T>& values) {
        std::string text;
        const char* separator = "";
        for (const T& value : values) {
            text.append(separator).append(ValueText<T>::ToText(value));
            separator = ", ";
        }
        return text;
    }
    static std::string Form() {
        return "a comma-separated list in which each element is " + detail::FormOf<T>();
    }
};

} // namespace corvane

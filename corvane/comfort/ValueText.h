// The text of a typed value in a settings file, the same in every locale.
#pragma once

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <ratio>
#include <string>
#include <string_view>
#include <type_traits>

namespace corvane {

/// How values of type `T` stand in a file: a `static std::optional<T> FromText(std::string_view)` for a whole
/// text, and a `static std::string ToText(const T&)`. A program can specialise it for a type of its own.
/// There are std::string, as it is; bool, `yes`, `true`, `on`, `1` and their opposites; whole numbers in
/// decimal digits that the type can hold; finite decimal fractions; and std::chrono durations with a unit,
/// `1500ms`.
template <class T, class Enable = void>
struct ValueText;

namespace detail {

template <class T>
std::optional<T> ParseNumber(std::string_view text) noexcept {
    T number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional<T>(number) : std::nullopt;
}

template <class T>
std::string FormatNumber(T number) {
    std::array<char, 64> text; // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), result.ptr};
}

// `text` in any letter case, `word` in small letters.
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

/// A text as it is, in UTF-8.
template <>
struct ValueText<std::string> {
    static std::optional<std::string> FromText(std::string_view text) { return std::string(text); }
    static std::string ToText(const std::string& value) { return value; }
};

/// yes, true, on or 1, and no, false, off or 0, in any letter case; written as `yes` and `no`.
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
};

/// A whole number in decimal digits, with a minus sign if the type has one; none if the type cannot hold it.
template <class T>
struct ValueText<T, std::enable_if_t<std::is_integral_v<T> && !detail::isCharacter<T>>> {
    static std::optional<T> FromText(std::string_view text) noexcept { return detail::ParseNumber<T>(text); }
    static std::string ToText(T value) { return detail::FormatNumber(value); }
};

/// A decimal fraction with a point, with or without an exponent; the shortest form that gives the same number
/// is written. Neither infinities nor NaN, nor what the type cannot hold, are read.
template <class T>
struct ValueText<T, std::enable_if_t<std::is_floating_point_v<T>>> {
    static std::optional<T> FromText(std::string_view text) noexcept {
        const std::optional<T> number = detail::ParseNumber<T>(text);
        return number && std::isfinite(*number) ? number : std::nullopt;
    }
    static std::string ToText(T value) { return detail::FormatNumber(value); }
};

/// A whole number with a unit, us, ms, s, min, h or d, and nothing between; none if the type cannot hold that
/// time exactly: 1500ms are no whole seconds. Written in the type's own unit.
template <class Rep, class Period>
struct ValueText<std::chrono::duration<Rep, Period>, std::enable_if_t<std::is_integral_v<Rep>>> {
    using Duration = std::chrono::duration<Rep, Period>;

    static std::optional<Duration> FromText(std::string_view text) noexcept {
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
        return detail::FormatNumber(value.count()).append(Unit<typename Period::type>());
    }

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

    // `count` of the unit `Of` in this type's.
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

} // namespace corvane

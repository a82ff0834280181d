// Values of a configuration by key, in UTF-8 and typed. Free functions over a ConfigManager, whose locking,
// logging and thread safety they share.
#pragma once

#include <corvane/comfort/ValueText.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

namespace detail {

CORVANE_API std::optional<std::string> ReadText(const ConfigManager& config, std::string_view key);
CORVANE_API void ReportWrongForm(std::string_view key, std::string_view text, const std::string& form);
CORVANE_API bool RefuseToSet(std::string_view key, const char* refusal);

template <class T>
inline constexpr bool isLiteral = std::is_convertible_v<const T&, const char*>;

template <class T>
bool Same(const T& a, const T& b) {
    return ValueText<T>::ToText(a) == ValueText<T>::ToText(b);
}
inline bool Same(const std::filesystem::path& a, const std::filesystem::path& b) {
    return a.native() == b.native();
}
template <class T>
bool Same(const std::vector<T>& a, const std::vector<T>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const T& x, const T& y) { return Same(x, y); });
}

inline constexpr const char* wouldNotReadBack = "the value would not read back as it is";

// Nothing for a value that would not read back unchanged.
template <class T>
std::optional<std::string> TextOf(const T& value) {
    std::string text = ValueText<T>::ToText(value);
    const std::optional<T> readBack = ValueText<T>::FromText(text);
    return readBack && Same(*readBack, value) ? std::optional(std::move(text)) : std::nullopt;
}

} // namespace detail

/// Whether a value exists for the key or, with an empty tag (`Section:`), whether the section exists.
inline bool Exists(const ConfigManager& config, std::string_view key) {
    return config.Exists(ToWide(key));
}

/// The value of `key` as a `T`: std::string, bool, a number, a duration, a path or a list of these, see
/// ValueText. Nothing if there is no such value, or if its whole text is not a `T`, which is logged.
template <class T>
std::optional<T> Get(const ConfigManager& config, std::string_view key) {
    const std::optional<std::string> text = detail::ReadText(config, key);
    if (!text)
        return std::nullopt;
    std::optional<T> value = ValueText<T>::FromText(*text);
    if (!value)
        detail::ReportWrongForm(key, *text, detail::FormOf<T>());
    return value;
}

/// The same, but returns `fallback` instead of nothing.
template <class T, class = std::enable_if_t<!detail::isLiteral<T>>>
T Get(const ConfigManager& config, std::string_view key, T fallback) {
    if (std::optional<T> value = Get<T>(config, key))
        return *std::move(value);
    return fallback;
}
/// The same for a string view.
inline std::string Get(const ConfigManager& config, std::string_view key, std::string_view fallback) {
    return Get(config, key, std::string(fallback));
}
/// The same for a literal; null means an empty text.
inline std::string Get(const ConfigManager& config, std::string_view key, const char* fallback) {
    return Get(config, key, std::string(fallback ? fallback : ""));
}

/// Why Set would refuse this key and text, as one sentence in UTF-8; empty if it would not.
CORVANE_API std::string Refusal(std::string_view key, std::string_view text);

/// Writes `text` through to the file, quoted if it would otherwise lose blanks or quotes at its ends; this
/// manager and every later load read it back unchanged. An empty text is written too, but a later load treats
/// it as missing. In a cache-only section only the cache changes. Returns false, with nothing written, if the
/// file is busy or cannot represent the text under that key; the log has the error.
[[nodiscard]] CORVANE_API bool Set(ConfigManager& config, std::string_view key, std::string_view text);

/// The same for a literal. Null is refused.
[[nodiscard]] inline bool Set(ConfigManager& config, std::string_view key, const char* text) {
    return text ? Set(config, key, std::string_view(text)) : detail::RefuseToSet(key, "the value is null");
}

/// The same for any type that has a ValueText. Also refuses values that Get would not return, such as NaN or
/// a list with a comma in an element.
template <class T, class = std::enable_if_t<!detail::isLiteral<T>>>
[[nodiscard]] bool Set(ConfigManager& config, std::string_view key, const T& value) {
    const std::optional<std::string> text = detail::TextOf(value);
    return text ? Set(config, key, std::string_view(*text))
                : detail::RefuseToSet(key, detail::wouldNotReadBack);
}

/// Deletes a tag, or with an empty tag the section. True if it existed and has been deleted.
[[nodiscard]] CORVANE_API bool Delete(ConfigManager& config, std::string_view key);

} // namespace corvane

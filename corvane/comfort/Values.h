// A configuration in UTF-8: loads, typed reads and writes. Free functions over a ConfigManager; locks, log
// and thread safety are those of the operations behind them.
#pragma once

#include <corvane/comfort/ValueText.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// Whether there is a value of that key, or with an empty tag, `Section:`, the section.
inline bool Exists(const ConfigManager& config, std::string_view key) {
    return config.Exists(ToWide(key));
}

/// The value of `key` as a `T`: std::string, bool, a number or a duration, see ValueText. Nothing if there is
/// no such value or its text is not one whole `T`.
template <class T>
std::optional<T> Get(ConfigManager& config, std::string_view key) {
    wstring text;
    if (config.GetValue(ToWide(key), text) != 0)
        return std::nullopt;
    return ValueText<T>::FromText(ToUtf8(text));
}

/// The same, with `fallback` in the place of nothing.
template <class T>
T Get(ConfigManager& config, std::string_view key, T fallback) {
    if (std::optional<T> value = Get<T>(config, key))
        return *std::move(value);
    return fallback;
}
/// The same for a literal.
inline std::string Get(ConfigManager& config, std::string_view key, const char* fallback) {
    return Get<std::string>(config, key, fallback);
}

/// Why Set refuses this key and text, as one sentence in UTF-8; empty if it does not. A section that a
/// manager keeps in the cache alone is not known here.
CORVANE_API std::string Refusal(std::string_view key, std::string_view text);

namespace detail {
CORVANE_API bool RefuseToSet(std::string_view key, const char* refusal);
}

/// Writes `text` through to the file, in quotes if blanks at its ends or quotes around it would be lost
/// without them; this manager and every later load read it back as it is. An empty text is written too, and
/// is no value to a later load. False, with nothing written, if the file was not free or could not give the
/// text back by that key; the log says why.
[[nodiscard]] CORVANE_API bool Set(ConfigManager& config, std::string_view key, std::string_view text);

/// The same for a literal. A null text is refused.
[[nodiscard]] inline bool Set(ConfigManager& config, std::string_view key, const char* text) {
    return text ? Set(config, key, std::string_view(text)) : detail::RefuseToSet(key, "the value is null");
}

/// The same for a value of any type that has a ValueText. One that Get would not give back, such as NaN, is
/// refused too.
template <class T, class = std::enable_if_t<!std::is_convertible_v<const T&, const char*>>>
[[nodiscard]] bool Set(ConfigManager& config, std::string_view key, const T& value) {
    const std::string text = ValueText<T>::ToText(value);
    if (!ValueText<T>::FromText(text))
        return detail::RefuseToSet(key, "the value would not be read back");
    return Set(config, key, std::string_view(text));
}

/// Deletes a tag, or with an empty tag the section. True when it is gone and was there before.
[[nodiscard]] CORVANE_API bool Delete(ConfigManager& config, std::string_view key);

} // namespace corvane

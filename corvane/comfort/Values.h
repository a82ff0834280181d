// A configuration in UTF-8: loads, typed reads and writes. Free functions over a ConfigManager; locks, log
// and thread safety are those of the operations behind them.
#pragma once

#include <corvane/comfort/ValueText.h>
#include <corvane/manager/ConfigManager.h>

namespace corvane {

/// Loads the settings file at `path`, unless it is loaded already and was not modified. False if it failed:
/// the manager goes on answering for what it had, and the log says why.
inline bool Load(ConfigManager& config, std::string_view path) {
    return config.Update(ToWide(path).c_str(), 0) == 0;
}

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

/// Writes `value` through to the file. False if that was refused, or if the value is one that Get would not
/// give back, such as NaN; nothing has changed then.
template <class T>
bool Set(ConfigManager& config, std::string_view key, const T& value) {
    const std::string text = ValueText<T>::ToText(value);
    return ValueText<T>::FromText(text) && config.SetValue(ToWide(key), ToWide(text)) == 0;
}
/// The same for a literal.
inline bool Set(ConfigManager& config, std::string_view key, const char* value) {
    return config.SetValue(ToWide(key), ToWide(value)) == 0;
}

/// Deletes a tag, or with an empty tag the section. True when it is gone and was there before.
inline bool Delete(ConfigManager& config, std::string_view key) {
    const wstring wide = ToWide(key);
    return config.Exists(wide) && config.DeleteValue(wide) == 0 && !config.Exists(wide);
}

} // namespace corvane

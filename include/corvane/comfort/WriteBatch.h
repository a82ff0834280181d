// Many changes of a configuration at once, atomically.
#pragma once

#include <corvane/comfort/Values.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Collects changes in order for Write, which can apply them any number of times, to any configuration.
/// Copyable. Nothing is checked before Write. Not thread-safe.
///
///     corvane::WriteBatch batch;
///     batch.Set("Server:Address", address).Set("Server:Port", 9443).Delete("Server:Proxy");
///     const bool done = corvane::Write(config, batch);
class WriteBatch {
public:
    /// Adds the write of a text.
    CORVANE_API WriteBatch& Set(std::string_view key, std::string_view text);

    /// The same for a literal. Write refuses null.
    WriteBatch& Set(std::string_view key, const char* text) {
        return text ? Set(key, std::string_view(text)) : Refuse(key, "the value is null");
    }

    /// The same for a value of any type that has a ValueText. Write refuses one that Get would not return,
    /// such as NaN.
    template <class T, class = std::enable_if_t<!detail::isLiteral<T>>>
    WriteBatch& Set(std::string_view key, const T& value) {
        const std::optional<std::string> text = detail::TextOf(value);
        return text ? Set(key, std::string_view(*text)) : Refuse(key, detail::wouldNotReadBack);
    }

    /// Adds the deletion of a tag, or with an empty tag of the section.
    CORVANE_API WriteBatch& Delete(std::string_view key);

    /// Whether the batch has no changes.
    bool Empty() const noexcept { return m_changes.empty(); }

    /// Removes all changes.
    void Clear() noexcept { m_changes.clear(); }

private:
    friend CORVANE_API bool Write(ConfigManager& config, const WriteBatch& batch);

    struct Change {
        std::string key;
        std::optional<std::string> text; // none for a deletion
        const char* refusal;             // or null
    };

    CORVANE_API WriteBatch& Refuse(std::string_view key, const char* refusal);

    std::vector<Change> m_changes;
};

/// Applies all changes of the batch in order, or none: checks them all as Set and Delete do, changes the file
/// once, durably, and then the cache. Even if the process is killed, the file holds all of them or none
/// (except where it must be written in place, such as a file with several hard links), and changes by other
/// processes are kept. The last change of a tag counts; deleting a missing tag is not an error; an empty
/// batch does nothing. In a cache-only section the cache alone changes. False, with nothing changed, if a
/// change was refused or the file is busy; the log names the key and the error.
[[nodiscard]] CORVANE_API bool Write(ConfigManager& config, const WriteBatch& batch);

} // namespace corvane

// Many changes of a configuration at once: all of them or none.
#pragma once

#include <corvane/comfort/Values.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Changes that are collected in order, to be made by Write: once or again, in one configuration or another.
/// A batch can be copied, and checks nothing before it is written.
///
///     corvane::WriteBatch batch;
///     batch.Set("Server:Address", address).Set("Server:Port", 9443).Delete("Server:Proxy");
///     const bool done = corvane::Write(config, batch);
class WriteBatch {
public:
    /// Collects a text that shall be written.
    CORVANE_API WriteBatch& Set(std::string_view key, std::string_view text);

    /// The same for a literal. A null text will be refused.
    WriteBatch& Set(std::string_view key, const char* text) {
        return text ? Set(key, std::string_view(text)) : Refuse(key, "the value is null");
    }

    /// The same for a value of any type that has a ValueText. One that Get would not give back, such as NaN,
    /// will be refused.
    template <class T, class = std::enable_if_t<!detail::isLiteral<T>>>
    WriteBatch& Set(std::string_view key, const T& value) {
        const std::optional<std::string> text = detail::TextOf(value);
        return text ? Set(key, std::string_view(*text)) : Refuse(key, detail::wouldNotReadBack);
    }

    /// Collects the deletion of a tag, or with an empty tag of the section.
    CORVANE_API WriteBatch& Delete(std::string_view key);

    /// Whether there is nothing to do.
    bool Empty() const noexcept { return m_changes.empty(); }

    /// Forgets all changes.
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

/// Makes all changes of the batch or none, in their order: first come all refusals, as by Set and Delete,
/// then one change of the file, which is on disk when this returns, and then the cache. Whatever stops it on
/// the way, the file holds all of them or none, and nothing that other processes have written is lost. The
/// last change of a tag counts; deleting what is not there is no failure; an empty batch does nothing. In a
/// section that `config` keeps in the cache alone only the cache changes. False, with nothing changed, if a
/// change was refused or the file was not free; the log names the key and the reason.
[[nodiscard]] CORVANE_API bool Write(ConfigManager& config, const WriteBatch& batch);

} // namespace corvane

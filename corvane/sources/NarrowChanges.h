// Changes in the form that the platform takes.
#pragma once

#include <corvane/platform/ProfileChange.h>
#include <corvane/sources/ConfigChange.h>

#include <deque>
#include <vector>

/// Owns a batch of changes and their UTF-8 texts during one write.
class NarrowChanges {
public:
    NarrowChanges() = default;
    NarrowChanges(const NarrowChanges&) = delete;
    NarrowChanges& operator=(const NarrowChanges&) = delete;
    ~NarrowChanges() = default;

    /// Adds the change of a tag, or with an empty tag of the whole section. Leaves out a deletion whose name
    /// no file can contain. Throws std::invalid_argument, with an explanation, for what a file could not give
    /// back.
    void Add(const corvane::wstring& section, const corvane::wstring& tag,
             const std::optional<corvane::wstring>& value);

    const std::vector<corvane::platform::ProfileChange>& Get() const noexcept { return m_changes; }

private:
    const char* Keep(const corvane::wchar* text);

    std::deque<std::string> m_texts; // a deque's elements stay where they are
    std::vector<corvane::platform::ProfileChange> m_changes;
};

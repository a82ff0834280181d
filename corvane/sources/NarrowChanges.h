// Changes as the platform takes them.
#pragma once

#include <corvane/platform/ProfileChange.h>
#include <corvane/sources/ConfigChange.h>

#include <deque>
#include <vector>

/// Holds many changes and their texts in UTF-8 for the length of one write.
class NarrowChanges {
public:
    NarrowChanges() = default;
    NarrowChanges(const NarrowChanges&) = delete;
    NarrowChanges& operator=(const NarrowChanges&) = delete;
    ~NarrowChanges() = default;

    /// Adds the change of a section and its tag, or of the whole section if that is empty; a deletion that no
    /// file can hold the name of is left out. Throws std::invalid_argument, with an explanation as its text,
    /// for what a file could not give back.
    void Add(const corvane::wstring& section, const corvane::wstring& tag,
             const std::optional<corvane::wstring>& value);

    const std::vector<corvane::platform::ProfileChange>& Get() const noexcept { return m_changes; }

private:
    const char* Keep(const corvane::wchar* text);

    std::deque<std::string> m_texts; // in which each stays where it is
    std::vector<corvane::platform::ProfileChange> m_changes;
};

// A file needs a section to be loaded. This gives a new or empty one its first.
#pragma once

#include <cstdint>
#include <string>

class FirstSection {
public:
    /// With `create` makes the file if there is none. Appends the header [section] to a file that has no
    /// section, and leaves any other file alone. Throws Failure, with nothing changed.
    FirstSection(const std::string& path, const std::string& section, bool create);
    FirstSection(const FirstSection&) = delete;
    FirstSection& operator=(const FirstSection&) = delete;
    /// Takes back what the constructor did, unless Keep was called.
    ~FirstSection();

    void Keep() { m_keep = true; }

private:
    void Undo();

    std::string m_path;
    std::uintmax_t m_sizeBefore = 0;
    std::uintmax_t m_sizeAfter = 0;
    bool m_created = false;
    bool m_keep = false;
};

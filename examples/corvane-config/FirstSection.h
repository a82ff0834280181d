// Adds the first section to a new or empty file, which could not be loaded without one.
#pragma once

#include <cstdint>
#include <string>

class FirstSection {
public:
    /// With `create`, creates the file if it does not exist. Appends the header [section] to a file that has
    /// no section; does not change any other file. Throws Failure, with nothing changed.
    FirstSection(const std::string& path, const std::string& section, bool create);
    FirstSection(const FirstSection&) = delete;
    FirstSection& operator=(const FirstSection&) = delete;
    /// Undoes what the constructor did, unless Keep was called.
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

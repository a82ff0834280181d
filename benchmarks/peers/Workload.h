// The settings files of the measurement: the same seed gives the same bytes everywhere.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace peers {

struct Name {
    std::string section;
    std::string tag;
};

class Workload {
public:
    Workload(int sections, int tagsOfSection) : m_sections(sections), m_tags(tagsOfSection) {}

    int Sections() const { return m_sections; }
    int Tags() const { return m_tags; } ///< in each section
    std::size_t Size() const {
        return static_cast<std::size_t>(m_sections) * static_cast<std::size_t>(m_tags);
    }
    std::string Label() const { return std::to_string(m_sections) + "x" + std::to_string(m_tags); }

    std::string Section(int section) const;
    std::string Tag(int section, int tag) const;
    std::string Value(int section, int tag) const; ///< UTF-8

    /// The libraries don't agree on the character that starts a comment: the caller picks it.
    bool Write(const std::string& path, char commentMark) const;

    std::vector<Name> Hits() const; ///< every tag once, shuffled
    std::vector<Name>
    Misses() const; ///< as many names that aren't there: half lack the tag, half the section

private:
    int m_sections;
    int m_tags;
};

} // namespace peers

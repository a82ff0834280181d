// Classifies the lines of a private-profile file, for reading and editing alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane::os {

/// A line: `text` without its ending (CRLF, LF or CR), `whole` with it. Its views are those of the parsed
/// text.
struct ProfileLine {
    enum class Kind {
        Blank,
        Comment, ///< begins with ';'
        Header,  ///< `[name]`; anything after the last ']' is ignored
        Tag,     ///< `name=value` with a name
        Other,   ///< kept in the file and listed in the section's text, but not a tag
    };

    Kind kind = Kind::Blank;
    std::string_view whole;
    std::string_view text;
    std::string_view name;  ///< of a header or a tag, blanks around it trimmed
    std::string_view value; ///< of a tag, blanks around it trimmed, quotes kept
};

/// Iterates over the lines of a profile text. A UTF-8 byte-order mark at the beginning belongs to no line.
class ProfileLines {
public:
    explicit ProfileLines(std::string_view text) noexcept;

    /// False if there are no more lines.
    bool Next(ProfileLine& line) noexcept;

    /// Skips to the next line that may be a header, or to the end, without parsing the lines between.
    void SkipToHeader() noexcept;

private:
    void SplitLine(ProfileLine& line) noexcept;

    std::string_view m_text;
    std::size_t m_at = 0;
    // The next LF, CR and NUL. Each is searched again only when it is passed, so that a text with one kind of
    // line ending takes linear time.
    std::size_t m_feed = 0;
    std::size_t m_return = 0;
    std::size_t m_nul = 0;
};

/// `text` up to its first NUL, where names and values end, as C strings do.
std::string_view UntilNul(std::string_view text) noexcept;

inline bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

/// `text` without the spaces and tabs at its ends.
std::string_view TrimBlanks(std::string_view text) noexcept;

/// `value` without one pair of matching quotes around it, if there is one.
inline std::string_view WithoutQuotes(std::string_view value) noexcept {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// Whether two UTF-8 names are equal for a program, which sees them as UTF-16: letter case is ignored, as by
/// the platform's `_wcsicmp`, and ill-formed bytes compare as the U+FFFD that they read as.
bool SameName(std::string_view a, std::string_view b) noexcept;

/// A seeded hash, equal for all names that SameName finds equal in any locale.
std::uint32_t HashName(std::string_view name) noexcept;

/// Whether the text begins with a UTF-16 byte-order mark: such a file reads as nothing and is never written.
inline bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::os

// What one line of a private-profile file is. Reading and editing both go by this one classification.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane::os {

/// A line of the text that it was taken from: `text` without its ending (CRLF, LF or CR), `whole` with it.
/// The views last as long as that text.
struct ProfileLine {
    enum class Kind {
        Blank,
        Comment, ///< begins with ';'
        Header,  ///< `[name]`; what stands behind the last ']' is ignored
        Tag,     ///< `name=value` with a name
        Other,   ///< stays in the file and in the section's text, and is no tag
    };

    Kind kind = Kind::Blank;
    std::string_view whole;
    std::string_view text;
    std::string_view name;  ///< of a header or a tag, blanks around it trimmed
    std::string_view value; ///< of a tag, blanks around it trimmed, quotes kept
};

/// Takes the lines of a profile text in order. A UTF-8 byte-order mark at the beginning belongs to no line.
class ProfileLines {
public:
    explicit ProfileLines(std::string_view text) noexcept;

    /// False when there are no more lines.
    bool Next(ProfileLine& line) noexcept;

    /// Passes over all lines up to the next that may be a header, or to the end, without a look at each.
    void SkipToHeader() noexcept;

private:
    void SplitLine(ProfileLine& line) noexcept;

    std::string_view m_text;
    std::size_t m_at = 0;
    // The next LF, CR and NUL: each is looked for again only when it is passed, so that a text with one kind
    // of line ending takes time in proportion to its length.
    std::size_t m_feed = 0;
    std::size_t m_return = 0;
    std::size_t m_nul = 0;
};

/// `text` up to its first NUL: a name or a value ends there, as every text does that is handed on as a C
/// string.
std::string_view UntilNul(std::string_view text) noexcept;

inline bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

/// `text` without the spaces and tabs at its ends.
std::string_view TrimBlanks(std::string_view text) noexcept;

/// `value` without one pair of equal quotes around it, if there is one.
inline std::string_view WithoutQuotes(std::string_view value) noexcept {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// Whether two names in UTF-8 are one name to a program, which sees them as UTF-16: letter case does not
/// count, as in the platform's `_wcsicmp`, and ill-formed bytes are the U+FFFD that they read as.
bool SameName(std::string_view a, std::string_view b) noexcept;

/// A seeded hash, equal for every two names that SameName can ever take for one, whatever the locale.
std::uint32_t HashName(std::string_view name) noexcept;

/// Whether the text begins with a UTF-16 byte-order mark: such a file reads as nothing and is never written.
inline bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::os

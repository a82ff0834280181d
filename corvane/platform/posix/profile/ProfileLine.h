// What one line of a private-profile file is. Reading and editing both go by this one classification.
#pragma once

#include <cstddef>
#include <string_view>

namespace corvane::posix {

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

private:
    std::string_view m_rest;
};

/// `text` without the spaces and tabs at its ends.
std::string_view TrimBlanks(std::string_view text) noexcept;

/// `value` without one pair of equal quotes around it, if there is one.
std::string_view WithoutQuotes(std::string_view value) noexcept;

/// Whether two names in UTF-8 are one name to a program, which sees them as UTF-16: letter case does not
/// count, as in the platform's `_wcsicmp`, and ill-formed bytes are the U+FFFD that they read as.
bool SameName(std::string_view a, std::string_view b) noexcept;

/// Whether the text begins with a UTF-16 byte-order mark: such a file reads as nothing and is never written.
bool IsUtf16(std::string_view text) noexcept;

} // namespace corvane::posix

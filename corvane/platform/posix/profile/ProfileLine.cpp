#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <cstring>

namespace corvane::posix {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

// The position of the first `c` from `from` on, or the text's end.
std::size_t Find(std::string_view text, char c, std::size_t from = 0) noexcept {
    if (from == text.size())
        return from;
    const void* hit = std::memchr(text.data() + from, c, text.size() - from);
    return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : text.size();
}

std::string_view TextIn(std::string_view text) noexcept {
    return TrimBlanks(UntilNul(text));
}

void Classify(ProfileLine& line) noexcept {
    line.name = line.value = {};
    const std::string_view text = TrimBlanks(line.text);
    line.kind = ProfileLine::Kind::Other;
    if (text.empty()) {
        line.kind = ProfileLine::Kind::Blank;
        return;
    }
    if (text.front() == ';') {
        line.kind = ProfileLine::Kind::Comment;
        return;
    }
    const std::size_t close = text.front() == '[' ? text.rfind(']') : std::string_view::npos;
    if (close != std::string_view::npos) {
        line.kind = ProfileLine::Kind::Header;
        line.name = TextIn(text.substr(1, close - 1));
        return;
    }
    const std::size_t equals = Find(text, '=');
    if (equals == text.size())
        return;
    line.name = TextIn(text.substr(0, equals));
    if (line.name.empty())
        return;
    line.kind = ProfileLine::Kind::Tag;
    line.value = TextIn(text.substr(equals + 1));
}

bool IsAscii(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x80;
}

char32_t TakeFolded(std::string_view& name) noexcept {
    if (IsAscii(name.front())) {
        const char c = name.front();
        name.remove_prefix(1);
        return FoldCase(static_cast<wchar>(c));
    }
    // A character outside the basic plane has no other letter case here, as in a comparison by code unit.
    const char32_t code = utf::TakeCharacter(name);
    return code <= 0xFFFF ? FoldCase(static_cast<wchar>(code)) : code;
}

// One number for all letter cases that a locale can tell of a character. Outside ASCII only what is plain is
// told apart: the Cyrillic alphabet, and the scripts without letter case.
char32_t WithoutCase(char32_t code) noexcept {
    if (code == 0x212A) // the Kelvin sign, whose lower case is ASCII, and so is that of the dotted I
        return 'k';
    if (code == 0x130)
        return 'i';
    if (code >= 0x410 && code < 0x450)
        return 0x410 + (code & 0x1F);
    const bool caseless =
        (code >= 0x3000 && code < 0xA000) || (code >= 0xAC00 && code < 0xD800) || code > 0xFFFF;
    return caseless ? code : 0xFFFD;
}

} // namespace

ProfileLines::ProfileLines(std::string_view text) noexcept
    : m_text(text), m_at(text.substr(0, utf8Mark.size()) == utf8Mark ? utf8Mark.size() : 0),
      m_feed(Find(text, '\n')), m_return(Find(text, '\r')) {}

bool ProfileLines::Next(ProfileLine& line) noexcept {
    if (m_at == m_text.size())
        return false;
    SplitLine(line);
    Classify(line);
    return true;
}

// A line ends at LF, at CR LF or at a lone CR.
void ProfileLines::SplitLine(ProfileLine& line) noexcept {
    if (m_feed < m_at)
        m_feed = Find(m_text, '\n', m_at);
    if (m_return < m_at)
        m_return = Find(m_text, '\r', m_at);
    const std::size_t end = m_return < m_feed ? m_return : m_feed;
    const std::size_t last = end + 1 == m_feed ? m_feed : end;
    const std::size_t next = last < m_text.size() ? last + 1 : m_text.size();
    line.text = m_text.substr(m_at, end - m_at);
    line.whole = m_text.substr(m_at, next - m_at);
    m_at = next;
}

std::string_view UntilNul(std::string_view text) noexcept {
    return text.substr(0, Find(text, '\0'));
}

std::string_view TrimBlanks(std::string_view text) noexcept {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view WithoutQuotes(std::string_view value) noexcept {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

bool SameName(std::string_view a, std::string_view b) noexcept {
    if (a == b)
        return true;
    while (!a.empty() && !b.empty()) {
        if (TakeFolded(a) != TakeFolded(b))
            return false;
    }
    return a.empty() && b.empty();
}

std::uint64_t HashName(std::string_view name) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325;
    while (!name.empty()) {
        char32_t code = static_cast<unsigned char>(name.front());
        if (code < 0x80)
            name.remove_prefix(1);
        else
            code = WithoutCase(utf::TakeCharacter(name));
        hash = (hash ^ (code | 0x20)) * 0x100000001B3; // the bit that parts the letter cases of ASCII
    }
    return hash;
}

bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::posix

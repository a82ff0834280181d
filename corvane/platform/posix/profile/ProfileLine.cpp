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

std::size_t Find(std::string_view text, char c) noexcept {
    if (text.empty())
        return 0;
    const void* hit = std::memchr(text.data(), c, text.size());
    return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : text.size();
}

// A line ends at LF, at CR LF or at a lone CR.
void SplitLine(std::string_view rest, ProfileLine& line) noexcept {
    const std::size_t feed = Find(rest, '\n');
    const std::size_t end = Find(rest.substr(0, feed), '\r');
    const std::size_t ending = end == rest.size() ? 0 : end + 1 == feed && feed < rest.size() ? 2 : 1;
    line.text = rest.substr(0, end);
    line.whole = rest.substr(0, end + ending);
}

// A name or a value ends at a NUL, as every text does that is handed on as a C string.
std::string_view UntilNul(std::string_view text) noexcept {
    return text.substr(0, Find(text, '\0'));
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
    if (const std::size_t close = text.rfind(']'); text.front() == '[' && close != std::string_view::npos) {
        line.kind = ProfileLine::Kind::Header;
        line.name = UntilNul(TrimBlanks(text.substr(1, close - 1)));
        return;
    }
    const std::size_t equals = Find(text, '=');
    if (equals == text.size())
        return;
    line.name = UntilNul(TrimBlanks(text.substr(0, equals)));
    if (line.name.empty())
        return;
    line.kind = ProfileLine::Kind::Tag;
    line.value = UntilNul(TrimBlanks(text.substr(equals + 1)));
}

// A character outside the basic plane has no other letter case here, as in a comparison by code unit.
char32_t TakeFolded(std::string_view& name) noexcept {
    const char32_t code = utf::TakeCharacter(name);
    return code <= 0xFFFF ? FoldCase(static_cast<wchar>(code)) : code;
}

} // namespace

ProfileLines::ProfileLines(std::string_view text) noexcept : m_rest(text) {
    if (m_rest.substr(0, utf8Mark.size()) == utf8Mark)
        m_rest.remove_prefix(utf8Mark.size());
}

bool ProfileLines::Next(ProfileLine& line) noexcept {
    if (m_rest.empty())
        return false;
    SplitLine(m_rest, line);
    Classify(line);
    m_rest.remove_prefix(line.whole.size());
    return true;
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
    while (!a.empty() && !b.empty()) {
        if (TakeFolded(a) != TakeFolded(b))
            return false;
    }
    return a.empty() && b.empty();
}

bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::posix

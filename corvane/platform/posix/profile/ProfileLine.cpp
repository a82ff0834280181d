#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <algorithm>
#include <cstring>
#include <utility>

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
    line.value = UntilNul(TrimBlanks(text.substr(equals + 1)));
    if (!line.name.empty())
        line.kind = ProfileLine::Kind::Tag;
}

// The code unit at the front of `name` in folded form; `name` moves behind its character. A character outside
// the basic plane has no other letter case, so its units serve as they are.
wchar TakeFolded(std::string_view& name, wchar& pending) noexcept {
    if (pending)
        return std::exchange(pending, wchar());
    const auto first = static_cast<unsigned char>(name.front());
    std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    length = std::min(length, name.size());
    wchar units[4] = {};
    const std::size_t count = utf::ToWide(name.substr(0, length), units);
    if (count > 1 && units[0] == 0xFFFD) { // ill-formed: byte by byte
        name.remove_prefix(1);
        return static_cast<wchar>(0xDC00 + first);
    }
    name.remove_prefix(length);
    pending = units[1];
    return FoldCase(units[0]);
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
    wchar pendingA = 0;
    wchar pendingB = 0;
    while ((!a.empty() || pendingA) && (!b.empty() || pendingB)) {
        if (TakeFolded(a, pendingA) != TakeFolded(b, pendingB))
            return false;
    }
    return a.empty() && !pendingA && b.empty() && !pendingB;
}

bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::posix

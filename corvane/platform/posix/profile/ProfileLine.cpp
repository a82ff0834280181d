#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/KeyedHash.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane::posix {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

// The position of the first `c` from `from` on, or the text's end.
std::size_t Find(std::string_view text, char c, std::size_t from = 0) noexcept {
    if (from == text.size())
        return from;
    const void* hit = std::memchr(text.data() + from, c, text.size() - from);
    return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : text.size();
}

void Classify(ProfileLine& line, bool hasNul) noexcept {
    const auto textIn = [hasNul](std::string_view text) {
        return TrimBlanks(hasNul ? UntilNul(text) : text);
    };
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
        line.name = textIn(text.substr(1, close - 1));
        return;
    }
    const std::size_t equals = Find(text, '=');
    if (equals == text.size())
        return;
    line.name = textIn(text.substr(0, equals));
    if (line.name.empty())
        return;
    line.kind = ProfileLine::Kind::Tag;
    line.value = textIn(text.substr(equals + 1));
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

// One number for all letter cases that a locale can tell of a character.
char32_t WithoutCase(char32_t code) noexcept {
    return code <= 0xFFFF ? FoldInEveryLocale(static_cast<wchar>(code)) : code;
}

// Mixes characters in groups of eight bytes, of which one outside ASCII takes four: so it is one and the same
// whether ASCII is put in one by one or in whole groups.
class NameHash {
public:
    static constexpr std::size_t groupSize = sizeof(std::uint64_t);

    // A whole group at once, or the shorter rest of a name, if that is ASCII.
    bool PutAscii(const char* characters, std::size_t count) noexcept {
        std::uint64_t group = 0;
        std::memcpy(&group, characters, count);
        if ((group & 0x8080808080808080) != 0)
            return false;
        Mix(group);
        return true;
    }

    void Put(char32_t code) noexcept {
        if (code < 0x80)
            return PutByte(code);
        for (int i = 0; i < 4; ++i, code >>= 8)
            PutByte(code);
    }

    std::uint64_t Get() noexcept {
        if (m_size > 0)
            Flush();
        return m_hash;
    }

private:
    void PutByte(char32_t byte) noexcept {
        m_group[m_size++] = static_cast<unsigned char>(byte);
        if (m_size == sizeof m_group)
            Flush();
    }

    void Flush() noexcept {
        std::uint64_t group = 0;
        std::memcpy(&group, m_group, m_size);
        Mix(group);
        m_size = 0;
    }

    void Mix(std::uint64_t group) noexcept {
        // the bit that parts the letter cases of ASCII
        m_hash = (m_hash ^ (group | 0x2020202020202020)) * 0x9E3779B97F4A7C15;
        m_hash ^= m_hash >> 32;
    }

    std::uint64_t m_hash = 0;
    unsigned char m_group[groupSize];
    std::size_t m_size = 0;
};

} // namespace

ProfileLines::ProfileLines(std::string_view text) noexcept
    : m_text(text), m_at(text.substr(0, utf8Mark.size()) == utf8Mark ? utf8Mark.size() : 0),
      m_feed(Find(text, '\n')), m_return(Find(text, '\r')), m_nul(Find(text, '\0')) {}

bool ProfileLines::Next(ProfileLine& line) noexcept {
    if (m_at == m_text.size())
        return false;
    const std::size_t begin = m_at;
    SplitLine(line);
    if (m_nul < begin)
        m_nul = Find(m_text, '\0', begin);
    Classify(line, m_nul < m_at);
    return true;
}

void ProfileLines::SkipToHeader() noexcept {
    for (std::size_t bracket = m_at; bracket < m_text.size(); ++bracket) {
        bracket = Find(m_text, '[', bracket);
        std::size_t begin = bracket;
        while (begin > m_at && IsBlank(m_text[begin - 1]))
            --begin;
        if (begin == m_at || m_text[begin - 1] == '\n' || m_text[begin - 1] == '\r') {
            m_at = begin;
            return;
        }
    }
    m_at = m_text.size();
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
    NameHash hash;
    while (name.size() >= NameHash::groupSize && hash.PutAscii(name.data(), NameHash::groupSize))
        name.remove_prefix(NameHash::groupSize);
    if (name.size() < NameHash::groupSize && (name.empty() || hash.PutAscii(name.data(), name.size())))
        return hash.Get();
    while (!name.empty()) {
        char32_t code = static_cast<unsigned char>(name.front());
        if (code < 0x80)
            name.remove_prefix(1);
        else
            code = WithoutCase(utf::TakeCharacter(name));
        hash.Put(code);
    }
    return hash.Get();
}

std::uint64_t KeyedHashName(std::string_view name) noexcept {
    KeyedHash hash;
    while (!name.empty())
        hash.Put(WithoutCase(utf::TakeCharacter(name)));
    return hash.Get();
}

bool IsUtf16(std::string_view text) noexcept {
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

} // namespace corvane::posix

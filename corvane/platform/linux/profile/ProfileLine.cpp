#include <corvane/detail/CaseFolding.h>
#include <corvane/foundations/SeededHash.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <endian.h>

namespace corvane::os {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

// The position of the first `c` at or after `from`, or the text's size.
std::size_t Find(std::string_view text, char c, std::size_t from = 0) noexcept {
    if (from == text.size())
        return from;
    const void* hit = std::memchr(text.data() + from, c, text.size() - from);
    return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : text.size();
}

std::string_view WithoutLeadingBlanks(std::string_view text) noexcept {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept {
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

inline void Classify(ProfileLine& line, bool hasNul) noexcept {
    const auto textIn = [hasNul](std::string_view text) {
        return hasNul ? TrimBlanks(UntilNul(text)) : text;
    };
    line.name = {};
    line.value = {};
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
        line.name = textIn(TrimBlanks(text.substr(1, close - 1)));
        return;
    }
    const std::size_t equals = Find(text, '=');
    if (equals == text.size())
        return;
    line.name = textIn(WithoutTrailingBlanks({text.data(), equals}));
    if (line.name.empty())
        return;
    line.kind = ProfileLine::Kind::Tag;
    line.value = textIn(WithoutLeadingBlanks({text.data() + equals + 1, text.size() - equals - 1}));
}

bool IsAscii(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x80;
}

char32_t ConsumeFolded(std::string_view& name) noexcept {
    if (IsAscii(name.front())) {
        const char c = name.front();
        name.remove_prefix(1);
        return FoldCase(static_cast<wchar>(c));
    }
    // Characters outside the basic plane keep their letter case, as in a comparison by code unit.
    const char32_t code = utf::ConsumeCharacter(name);
    return code <= 0xFFFF ? FoldCase(static_cast<wchar>(code)) : code;
}

// Folds a character for hashing, to the same for all its letter cases in any locale.
char32_t WithoutCase(char32_t code) noexcept {
    return code <= 0xFFFF ? FoldForHash(static_cast<wchar>(code)) : code;
}

// Names are hashed in groups of eight bytes, in which a character outside ASCII takes four. The first byte is
// the lowest; the last group is padded with zeros.
constexpr std::size_t groupSize = sizeof(std::uint64_t);

std::uint64_t GroupAt(const char* at, std::size_t size = groupSize) noexcept {
    std::uint64_t group = 0;
    std::memcpy(&group, at, size);
    return le64toh(group);
}

// The last bytes of a name, between one and a whole group.
std::uint64_t LastGroup(std::string_view name, std::size_t size) noexcept {
    if (name.size() < groupSize)
        return GroupAt(name.data(), size);
    return GroupAt(name.data() + name.size() - groupSize) >> 8 * (groupSize - size);
}

class NameHash {
public:
    void Put(char32_t code) noexcept {
        if (code < 0x80)
            return PutByte(code);
        for (int i = 0; i < 4; ++i, code >>= 8)
            PutByte(code);
    }

    std::uint32_t Get() noexcept {
        if (m_size > 0)
            m_hash.Put(m_group);
        return m_hash.Get();
    }

private:
    void PutByte(char32_t byte) noexcept {
        m_group |= std::uint64_t{byte & 0xFF} << 8 * m_size;
        if (++m_size < groupSize)
            return;
        m_hash.Put(m_group);
        m_group = 0;
        m_size = 0;
    }

    SeededHash m_hash;
    std::uint64_t m_group = 0;
    std::size_t m_size = 0;
};

[[gnu::noinline]] std::uint32_t HashByCharacter(std::string_view name) noexcept {
    NameHash hash;
    while (!name.empty())
        hash.Put(WithoutCase(utf::ConsumeCharacter(name)));
    return hash.Get();
}

} // namespace

ProfileLines::ProfileLines(std::string_view text) noexcept
    : m_text(text), m_at(text.substr(0, utf8Mark.size()) == utf8Mark ? utf8Mark.size() : 0),
      m_feed(Find(text, '\n')), m_return(Find(text, '\r')), m_nul(Find(text, '\0')) {}

// Lines end with LF, CR LF or a lone CR.
inline void ProfileLines::SplitLine(ProfileLine& line) noexcept {
    if (m_feed < m_at)
        m_feed = Find(m_text, '\n', m_at);
    if (m_return < m_at)
        m_return = Find(m_text, '\r', m_at);
    const char* const begin = m_text.data() + m_at;
    const std::size_t end = std::min(m_return, m_feed);
    const std::size_t next = std::min((end + 1 == m_feed ? m_feed : end) + 1, m_text.size());
    line.text = {begin, end - m_at};
    line.whole = {begin, next - m_at};
    m_at = next;
}

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

std::string_view UntilNul(std::string_view text) noexcept {
    return text.substr(0, Find(text, '\0'));
}

std::string_view TrimBlanks(std::string_view text) noexcept {
    return WithoutTrailingBlanks(WithoutLeadingBlanks(text));
}

bool SameName(std::string_view a, std::string_view b) noexcept {
    if (a == b)
        return true;
    while (!a.empty() && !b.empty()) {
        if (a.front() == b.front() && IsAscii(a.front())) {
            a.remove_prefix(1);
            b.remove_prefix(1);
        } else if (ConsumeFolded(a) != ConsumeFolded(b)) {
            return false;
        }
    }
    return a.empty() && b.empty();
}

std::uint32_t HashName(std::string_view name) noexcept {
    constexpr std::uint64_t each = 0x0101010101010101; // one in each of eight lanes
    SeededHash hash;
    std::uint64_t all = 0;
    const auto put = [&](std::uint64_t group) {
        all |= group;
        hash.Put(FoldAsciiLanes(group, each));
    };
    std::size_t left = name.size();
    for (const char* at = name.data(); left >= groupSize; at += groupSize, left -= groupSize)
        put(GroupAt(at));
    if (left > 0)
        put(LastGroup(name, left));
    return (all & each * 0x80) == 0 ? hash.Get() : HashByCharacter(name);
}

} // namespace corvane::os

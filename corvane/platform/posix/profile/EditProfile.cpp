#include <corvane/platform/posix/profile/EditProfile.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <algorithm>

namespace corvane::posix {
namespace {

using Kind = ProfileLine::Kind;

std::string Join(std::initializer_list<std::string_view> parts) {
    std::size_t size = 0;
    for (const std::string_view part : parts)
        size += part.size();
    std::string text;
    text.reserve(size);
    for (const std::string_view part : parts)
        text += part;
    return text;
}

std::string_view Before(std::string_view content, const char* place) noexcept {
    return content.substr(0, static_cast<std::size_t>(place - content.data()));
}

std::string_view From(std::string_view content, const char* place) noexcept {
    return content.substr(static_cast<std::size_t>(place - content.data()));
}

const char* EndOf(std::string_view text) noexcept {
    return text.data() + text.size();
}

std::string_view EndingOf(const ProfileLine& line) noexcept {
    return line.whole.substr(line.text.size());
}

// The ending for a new line beside `neighbour`, whose own may be missing at the end of the file.
std::string_view EndingBeside(const ProfileLine& neighbour, std::string_view content) noexcept {
    if (!EndingOf(neighbour).empty())
        return EndingOf(neighbour);
    ProfileLine first;
    return ProfileLines(content).Next(first) && !EndingOf(first).empty() ? EndingOf(first) : "\n";
}

bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

std::optional<std::string> ReplaceValue(std::string_view content, const ProfileLine& line,
                                        std::string_view value) {
    const std::string_view behindEquals = line.text.substr(line.text.find('=') + 1);
    const std::size_t blanks = std::min(behindEquals.find_first_not_of(" \t"), behindEquals.size());
    const char* begin = behindEquals.data() + blanks;
    const char* end = begin + line.value.size();
    if (!value.empty() && IsBlank(value.front()))
        begin = behindEquals.data();
    if (!value.empty() && IsBlank(value.back()))
        end = EndOf(line.text);
    if (value == From(Before(content, end), begin))
        return std::nullopt;
    return Join({Before(content, begin), value, From(content, end)});
}

std::string AddTag(std::string_view content, const ProfileLine& last, std::string_view tag,
                   std::string_view value) {
    const std::string_view ending = EndingBeside(last, content);
    const std::string_view missing = EndingOf(last).empty() ? ending : "";
    const char* const place = EndOf(last.whole);
    return Join({Before(content, place), missing, tag, "=", value, ending, From(content, place)});
}

std::string AddSection(std::string_view content, const ProfileLine& last, std::string_view section,
                       std::string_view tag, std::string_view value) {
    const std::string_view ending = EndingBeside(last, content);
    const std::string_view missing = !last.text.empty() && EndingOf(last).empty() ? ending : "";
    return Join({content, missing, "[", section, "]", ending, tag, "=", value, ending});
}

// What is left of a text when pieces are taken out of it from front to back.
class Remainder {
public:
    explicit Remainder(std::string_view content) noexcept : m_content(content), m_from(content.data()) {}

    void TakeOut(const char* begin, const char* end) {
        m_text += From(Before(m_content, begin), m_from);
        m_from = end;
        m_changed = true;
    }

    std::optional<std::string> Text() {
        if (!m_changed)
            return std::nullopt;
        m_text += From(m_content, m_from);
        return std::move(m_text);
    }

private:
    std::string_view m_content;
    const char* m_from;
    std::string m_text;
    bool m_changed = false;
};

} // namespace

std::optional<std::string> SetTag(std::string_view content, std::string_view section, std::string_view tag,
                                  std::string_view value) {
    ProfileLines lines(content);
    ProfileLine line;
    ProfileLine last; // of the section its last tag or its header, before the section the line above
    bool inside = false;
    while (lines.Next(line)) {
        if (line.kind == Kind::Header && inside)
            break;
        if (line.kind == Kind::Tag && inside && SameName(line.name, tag))
            return ReplaceValue(content, line, value);
        if (line.kind == Kind::Header && SameName(line.name, section))
            inside = true;
        if (!inside || line.kind == Kind::Header || line.kind == Kind::Tag)
            last = line;
    }
    return inside ? AddTag(content, last, tag, value) : AddSection(content, last, section, tag, value);
}

std::optional<std::string> RemoveTag(std::string_view content, std::string_view section,
                                     std::string_view tag) {
    ProfileLines lines(content);
    Remainder remainder(content);
    bool inside = false;
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == Kind::Header)
            inside = SameName(line.name, section);
        else if (inside && line.kind == Kind::Tag && SameName(line.name, tag))
            remainder.TakeOut(line.whole.data(), EndOf(line.whole));
    }
    return remainder.Text();
}

std::optional<std::string> RemoveSection(std::string_view content, std::string_view section) {
    ProfileLines lines(content);
    Remainder remainder(content);
    const char* begin = nullptr; // of the section that is going
    const char* end = nullptr;   // of its last line that is no comment
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == Kind::Header) {
            if (begin)
                remainder.TakeOut(begin, end);
            begin = SameName(line.name, section) ? line.whole.data() : nullptr;
        }
        if (line.kind != Kind::Comment)
            end = EndOf(line.whole);
    }
    if (begin)
        remainder.TakeOut(begin, EndOf(content));
    return remainder.Text();
}

} // namespace corvane::posix

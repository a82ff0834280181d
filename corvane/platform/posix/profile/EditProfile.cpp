#include <corvane/platform/posix/profile/EditProfile.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <algorithm>
#include <utility>

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

const char* EndOf(std::string_view text) noexcept {
    return text.data() + text.size();
}

ProfileChange Replace(std::string_view content, const char* begin, const char* end, std::string text = {}) {
    return {static_cast<std::size_t>(begin - content.data()), static_cast<std::size_t>(end - content.data()),
            std::move(text)};
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

ProfileChanges ReplaceValue(std::string_view content, const ProfileLine& line, std::string_view value) {
    const std::string_view behindEquals = line.text.substr(line.text.find('=') + 1);
    const std::size_t blanks = std::min(behindEquals.find_first_not_of(" \t"), behindEquals.size());
    const char* begin = behindEquals.data() + blanks;
    const char* end = begin + line.value.size();
    if (!value.empty() && IsBlank(value.front()))
        begin = behindEquals.data();
    if (!value.empty() && IsBlank(value.back()))
        end = EndOf(line.text);
    if (value == std::string_view(begin, static_cast<std::size_t>(end - begin)))
        return {};
    return {Replace(content, begin, end, std::string(value))};
}

ProfileChanges AddTag(std::string_view content, const ProfileLine& last, std::string_view tag,
                      std::string_view value) {
    const std::string_view ending = EndingBeside(last, content);
    const std::string_view missing = EndingOf(last).empty() ? ending : "";
    const char* const place = EndOf(last.whole);
    return {Replace(content, place, place, Join({missing, tag, "=", value, ending}))};
}

ProfileChanges AddSection(std::string_view content, std::string_view section, std::string_view tag,
                          std::string_view value) {
    ProfileLine last;
    for (ProfileLines lines(content); lines.Next(last);) {
    }
    const std::string_view ending = EndingBeside(last, content);
    const std::string_view missing = !last.text.empty() && EndingOf(last).empty() ? ending : "";
    const char* const place = EndOf(content);
    return {
        Replace(content, place, place, Join({missing, "[", section, "]", ending, tag, "=", value, ending}))};
}

} // namespace

ProfileChanges SetTag(std::string_view content, std::string_view section, std::string_view tag,
                      std::string_view value) {
    ProfileLines lines(content);
    ProfileLine last; // of the section: its last tag, or its header
    bool inside = false;
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == Kind::Header) {
            if (inside)
                break;
            inside = SameName(line.name, section);
        } else if (inside && line.kind == Kind::Tag && SameName(line.name, tag)) {
            return ReplaceValue(content, line, value);
        }
        if (!inside)
            lines.SkipToHeader();
        else if (line.kind == Kind::Header || line.kind == Kind::Tag)
            last = line;
    }
    return inside ? AddTag(content, last, tag, value) : AddSection(content, section, tag, value);
}

ProfileChanges RemoveTag(std::string_view content, std::string_view section, std::string_view tag) {
    ProfileLines lines(content);
    ProfileChanges changes;
    bool inside = false;
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == Kind::Header)
            inside = SameName(line.name, section);
        else if (inside && line.kind == Kind::Tag && SameName(line.name, tag))
            changes.push_back(Replace(content, line.whole.data(), EndOf(line.whole)));
        if (!inside)
            lines.SkipToHeader();
    }
    return changes;
}

ProfileChanges RemoveSection(std::string_view content, std::string_view section) {
    ProfileLines lines(content);
    ProfileChanges changes;
    const char* begin = nullptr; // of the section that is going
    const char* end = nullptr;   // of its last line that is no comment
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == Kind::Header) {
            if (begin)
                changes.push_back(Replace(content, begin, end));
            begin = SameName(line.name, section) ? line.whole.data() : nullptr;
        }
        if (line.kind != Kind::Comment)
            end = EndOf(line.whole);
        if (!begin)
            lines.SkipToHeader();
    }
    if (begin)
        changes.push_back(Replace(content, begin, EndOf(content)));
    return changes;
}

TextPieces Changed(std::string_view content, const ProfileChanges& changes) {
    TextPieces pieces;
    std::size_t from = 0;
    for (const ProfileChange& change : changes) {
        pieces.push_back(content.substr(from, change.begin - from));
        pieces.push_back(change.text);
        from = change.end;
    }
    pieces.push_back(content.substr(from));
    return pieces;
}

} // namespace corvane::posix

#include <corvane/comfort/FileEntry.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/platform/Platform.h>

#include <algorithm>

namespace corvane {
namespace {

constexpr const char* noKey = "a key is a section, a colon and a tag";

// White space that the profile operations of either platform trim from names and values.
constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\x1A';
}

bool HasBlankEnds(std::string_view text) noexcept {
    return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

bool HasQuotesAround(std::string_view text) noexcept {
    return text.size() > 1 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
}

bool HasAnyOf(std::string_view text, std::string_view characters) noexcept {
    return text.find_first_of(characters) != std::string_view::npos;
}

// For names that MakeDeletion accepts. Null if they are valid.
const char* RefusalOf(std::string_view section, std::string_view tag) noexcept {
    if (tag.empty())
        return noKey;
    if (HasAnyOf(section, "\r\n") || HasAnyOf(tag, "\r\n"))
        return "a key cannot contain a line break";
    if (HasBlankEnds(section) || HasBlankEnds(tag))
        return "a section or tag cannot begin or end with a blank";
    if (HasAnyOf(tag, "=") || tag.front() == ';' || tag.front() == '[')
        return "a tag cannot contain '=' or begin with ';' or '['";
    return nullptr;
}

const char* RefusalOf(std::string_view value) noexcept {
    constexpr std::string_view lineBreaksAndNul("\r\n\0", 3);
    return HasAnyOf(value, lineBreaksAndNul) ? "a value cannot contain a line break or a NUL character"
                                             : nullptr;
}

FileEntry Refused(const char* refusal) {
    return {{}, {}, {}, refusal};
}

} // namespace

FileEntry MakeDeletion(std::string_view key) {
    FileEntry entry;
    entry.key = ToWide(key);
    if (ToUtf8(entry.key) != key)
        return Refused("the key is not valid UTF-8");
    if (key.find('\0') != std::string_view::npos)
        return Refused("a key cannot contain a NUL character");
    const std::size_t colon = entry.key.find(':');
    if (colon == wstring::npos || colon == 0)
        return Refused(noKey);
    return entry;
}

FileEntry MakeFileEntry(std::string_view key, std::string_view value) {
    FileEntry entry = MakeDeletion(key);
    if (!entry.refusal.empty())
        return entry;
    const std::string_view section = key.substr(0, key.find(':'));
    const std::string_view tag = key.substr(section.size() + 1);
    if (const char* const refusal = RefusalOf(section, tag))
        return Refused(refusal);
    if (const char* const refusal = RefusalOf(value))
        return Refused(refusal);

    std::string fileText(value);
    if (HasBlankEnds(value) || HasQuotesAround(value))
        fileText = '"' + fileText + '"';
    if (std::max({section.size(), tag.size(), fileText.size()}) > platform::longestProfileText)
        return Refused("the section, tag or value is too long");
    entry.fileText = ToWide(fileText);
    if (ToUtf8(entry.fileText) != fileText)
        return Refused("the value is not valid UTF-8");
    entry.value = ToWide(value);
    return entry;
}

FileEntry ForFile(FileEntry entry) {
    if (wstring_view(entry.key).substr(0, entry.key.find(':')) == reservedSection)
        return Refused("the section _$CACHE$_ is kept in the cache alone");
    return entry;
}

} // namespace corvane

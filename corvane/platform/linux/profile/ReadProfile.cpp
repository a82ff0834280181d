#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/profile/ProfileCursor.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace corvane {

using namespace platform;
using namespace os;

using Section = ProfileIndex::Section;
using Line = ProfileIndex::Line;

namespace {

// A list of texts in the caller's buffer of at least one byte: each text ends with a NUL, the list with
// another.
class ListWriter {
public:
    ListWriter(char* buffer, ulong size) noexcept
        : m_buffer(buffer), m_size(size), m_capacity(size < 2 ? 0 : size - 2) {}

    bool IsCut() const noexcept { return m_cut; }

    void Add(std::string_view text) noexcept {
        Put(text);
        if (m_used < m_capacity)
            m_buffer[m_used++] = '\0';
        else
            m_cut = true;
    }

    void Add(std::string_view name, std::string_view value) noexcept {
        Put(name);
        Put("=");
        Add(value);
    }

    // The result is the number of bytes without the final NUL, at most the buffer size less 2. A list of
    // exactly that length is complete but indistinguishable from a truncated one, so callers double the
    // buffer and read again until the result is smaller.
    ulong Finish() noexcept {
        std::memset(m_buffer + m_used, 0, std::min<std::size_t>(m_size - m_used, 2));
        if (m_cut)
            platform::SetLastError(ERROR_MORE_DATA);
        return static_cast<ulong>(m_used);
    }

private:
    void Put(std::string_view piece) noexcept {
        const std::size_t count = std::min(piece.size(), m_capacity - m_used);
        std::memcpy(m_buffer + m_used, piece.data(), count);
        m_used += count;
        m_cut = m_cut || count < piece.size();
    }

    char* m_buffer;
    std::size_t m_size;
    std::size_t m_capacity; // for the list without its final NUL
    std::size_t m_used = 0;
    bool m_cut = false;
};

// A text that does not fit is truncated at any byte, even inside a character, and the result is size - 1; so
// it is for a text that fits exactly.
ulong CopyText(std::string_view text, char* buffer, ulong size) noexcept {
    const std::size_t count = std::min<std::size_t>(text.size(), size - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    if (count < text.size())
        platform::SetLastError(ERROR_MORE_DATA);
    return static_cast<ulong>(count);
}

ulong ListSections(const ProfileIndex& profile, char* buffer, ulong size) noexcept {
    ListWriter list(buffer, size);
    for (const Section& section : profile.Sections()) {
        if (list.IsCut())
            break;
        if (section.name.size != 0)
            list.Add(profile.Text(section.name));
    }
    return list.Finish();
}

ulong ListTags(const ProfileIndex& profile, const Section& section, char* buffer, ulong size) noexcept {
    ListWriter list(buffer, size);
    for (const Line* line = profile.Begin(section); line != profile.End(section) && !list.IsCut(); ++line) {
        if (line->name.size != 0)
            list.Add(profile.Text(line->name));
    }
    return list.Finish();
}

ulong ListLines(const ProfileIndex& profile, const Section& section, char* buffer, ulong size) noexcept {
    ListWriter list(buffer, size);
    for (const Line* line = profile.Begin(section); line != profile.End(section) && !list.IsCut(); ++line) {
        if (line->name.size != 0)
            list.Add(profile.Text(line->name), profile.Value(*line));
        else if (line->valueSize != 0)
            list.Add(profile.Value(*line));
    }
    return list.Finish();
}

ulong NothingThere(const char* defaultText, bool isList, char* buffer, ulong size) noexcept {
    if (!defaultText && isList)
        return ListWriter(buffer, size).Finish();
    std::string_view text = defaultText ? defaultText : "";
    text = text.substr(0, text.find_last_not_of(" \t") + 1);
    return CopyText(text, buffer, size);
}

} // namespace

ulong platform::GetPrivateProfileStringA(const char* section, const char* tag, const char* defaultText,
                                         char* buffer, ulong size, const char* file) {
    if (!buffer || size == 0)
        return 0;
    ProfileCursor single;
    ProfileCursor* const cursor = ProfileCursor::Open(file, single);
    if (cursor && !section)
        return ListSections(cursor->Profile(), buffer, size);
    const Section* const found = cursor ? cursor->FindSection(section) : nullptr;
    if (found && !tag)
        return ListTags(cursor->Profile(), *found, buffer, size);
    if (const Line* const line = found ? cursor->FindTag(tag) : nullptr)
        return CopyText(WithoutQuotes(cursor->Profile().Value(*line)), buffer, size);
    return NothingThere(defaultText, !section || !tag, buffer, size);
}

ulong platform::GetPrivateProfileSectionA(const char* section, char* buffer, ulong size, const char* file) {
    if (!buffer || size == 0)
        return 0;
    ProfileCursor single;
    ProfileCursor* const cursor = ProfileCursor::Open(file, single);
    const Section* const found = cursor ? cursor->FindSection(section ? section : "") : nullptr;
    return found ? ListLines(cursor->Profile(), *found, buffer, size) : ListWriter(buffer, size).Finish();
}

} // namespace corvane

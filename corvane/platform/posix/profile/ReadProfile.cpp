#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/profile/ProfileCache.h>
#include <corvane/platform/posix/profile/ProfileLine.h>
#include <corvane/platform/posix/profile/ProfileRun.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

namespace corvane {

using namespace platform;
using namespace posix;

namespace {

using Section = ProfileIndex::Section;
using Line = ProfileIndex::Line;

// A list of texts in the caller's buffer of at least one byte: each ends with a NUL, and one more NUL ends
// the list.
class ListWriter {
public:
    ListWriter(char* buffer, ulong size) noexcept
        : m_buffer(buffer), m_size(size), m_room(size < 2 ? 0 : size - 2) {}

    bool IsCut() const noexcept { return m_cut; }

    void Add(std::string_view text) noexcept {
        Put(text);
        if (m_used < m_room)
            m_buffer[m_used++] = '\0';
        else
            m_cut = true;
    }

    void Add(std::string_view name, std::string_view value) noexcept {
        Put(name);
        Put("=");
        Add(value);
    }

    // The result is the count of bytes without the final NUL, at most the size less 2. A list that comes to
    // exactly that is whole, but has the result of one that was cut, and is read again by a caller who
    // doubles the buffer until the result is smaller: so what that caller ends with is whole.
    ulong Finish() noexcept {
        std::memset(m_buffer + m_used, 0, std::min<std::size_t>(m_size - m_used, 2));
        if (m_cut)
            platform::SetLastError(ERROR_MORE_DATA);
        return static_cast<ulong>(m_used);
    }

private:
    void Put(std::string_view piece) noexcept {
        const std::size_t count = std::min(piece.size(), m_room - m_used);
        std::memcpy(m_buffer + m_used, piece.data(), count);
        m_used += count;
        m_cut = m_cut || count < piece.size();
    }

    char* m_buffer;
    std::size_t m_size;
    std::size_t m_room; // for the list without its end
    std::size_t m_used = 0;
    bool m_cut = false;
};

// A text that does not fit is cut between any two bytes, even inside a character, and has the result size -
// 1; so has one that fits exactly.
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

// Null, with the reason in GetLastError, when the file cannot be read.
std::shared_ptr<const ProfileIndex> OpenProfile(const char* file) {
    std::shared_ptr<const ProfileIndex> profile;
    ulong error = file ? ProfileCache::Instance().Load(file, profile) : ERROR_INVALID_PARAMETER;
    if (profile && IsUtf16(profile->Content())) {
        profile.reset();
        error = ERROR_INVALID_DATA;
    }
    platform::SetLastError(error);
    return profile;
}

const Section* SectionOf(const ProfileIndex& profile, const char* name) noexcept {
    const Section* section = name ? profile.FindSection(TrimBlanks(name)) : nullptr;
    if (!section)
        platform::SetLastError(ERROR_FILE_NOT_FOUND);
    return section;
}

// What a run has come to.
ulong Answer(ProfileRun& run, const ProfileIndex& profile, char* buffer, ulong size) {
    platform::SetLastError(ERROR_SUCCESS);
    ulong result = 0;
    if (!run.CurrentSection())
        result = ListSections(profile, buffer, size);
    else if (const Line* const line = run.CurrentLine())
        result = CopyText(WithoutQuotes(profile.Value(*line)), buffer, size);
    else
        result = ListTags(profile, *run.CurrentSection(), buffer, size);
    const bool cut = result + 2 >= size; // to the caller, who asks again with a larger buffer
    run.Answered(profile, cut);
    return result;
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
    ProfileRun* const run = ProfileRun::OfThisThread();
    if (const auto* const profile = run ? run->Continue(file, section, tag) : nullptr)
        return Answer(*run, *profile, buffer, size);
    const bool isList = !section || !tag;
    const auto profile = OpenProfile(file);
    if (!profile)
        return NothingThere(defaultText, isList, buffer, size);
    if (!section && run) {
        run->Begin(file, profile);
        return Answer(*run, *profile, buffer, size);
    }
    if (!section)
        return ListSections(*profile, buffer, size);
    const Section* const found = SectionOf(*profile, section);
    if (!found)
        return NothingThere(defaultText, isList, buffer, size);
    if (!tag)
        return ListTags(*profile, *found, buffer, size);
    if (const Line* const line = profile->FindTag(*found, TrimBlanks(tag)))
        return CopyText(WithoutQuotes(profile->Value(*line)), buffer, size);
    platform::SetLastError(ERROR_FILE_NOT_FOUND);
    return NothingThere(defaultText, isList, buffer, size);
}

ulong platform::GetPrivateProfileSectionA(const char* section, char* buffer, ulong size, const char* file) {
    if (!buffer || size == 0)
        return 0;
    const auto profile = OpenProfile(file);
    const Section* const found = profile ? SectionOf(*profile, section) : nullptr;
    return found ? ListLines(*profile, *found, buffer, size) : ListWriter(buffer, size).Finish();
}

} // namespace corvane

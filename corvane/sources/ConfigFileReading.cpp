// Reading from the configuration file: one platform call per text.
#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/FindUnit.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/ConfigFile.h>
#include <corvane/sources/KeyParts.h>
#include <corvane/sources/NarrowString.h>

#include <limits>
#include <memory>
#include <new>

using corvane::wchar;
using corvane::wstring;
using corvane::wstring_view;

namespace {

// The length of a text is only known once it fits, so the buffer is doubled until it does.
class ReadBuffer {
public:
    char* Data() noexcept { return m_larger ? m_larger.get() : m_first; }
    std::int32_t Size() const noexcept { return m_size; }

    void Double() {
        if (m_size > std::numeric_limits<std::int32_t>::max() / 2)
            throw std::bad_alloc();
        m_size *= 2;
        m_larger.reset(); // before the next, which is larger than all so far together
        m_larger.reset(new char[static_cast<std::size_t>(m_size)]);
    }

private:
    std::int32_t m_size = sizeof m_first;
    std::unique_ptr<char[]> m_larger;
    char m_first[1024]; // not zeroed: each read terminates its text
};

std::int32_t Fail(const char* function, std::int32_t line, const wchar* message = nullptr) {
    return failure_report(FAILURE_GENERAL, message, configChannel, function, line);
}

} // namespace

std::int32_t ConfigFile::ReadValue(const wstring& key, wstring& value) {
    static constexpr const char* function = "ConfigFile::ReadValue";
    corvane::KeyParts parts;
    if (!IsReady() || !parts.Parse(*this, key))
        return Fail(function, __LINE__);

    ReadBuffer buffer;
    value.clear();
    NarrowName section;
    NarrowName tag;
    if (!section.Convert(parts.section) || !tag.Convert(parts.tag) || !HasNarrowFileName())
        return Fail(function, __LINE__);

    for (;;) {
        std::int32_t count = 0;
        try {
            count = static_cast<std::int32_t>(platform::GetPrivateProfileStringA(
                section.Get(), tag.Get(), nullptr, buffer.Data(), static_cast<corvane::ulong>(buffer.Size()),
                m_narrowFileName.Get()));
        } catch (...) {
            return Fail(function, __LINE__);
        }
        if (count < 1)
            return count;
        if (count >= buffer.Size() - 2) {
            buffer.Double();
            continue;
        }
        if (!section.Get() || !tag.Get())
            ++count; // the final NUL of a name list belongs to it
        Utf8ToWide(buffer.Data(), count, value);
        return count;
    }
}

std::int32_t ConfigFile::ReadSection(const wstring& section, wstring& text) {
    static constexpr const char* function = "ConfigFile::ReadSection";
    if (!IsReady() || corvane::IsEmptyName(section))
        return Fail(function, __LINE__);

    ReadBuffer buffer;
    text.clear();
    NarrowString narrowSection;
    if (!narrowSection.Convert(section.c_str()))
        return Fail(function, __LINE__, section.c_str());
    if (!HasNarrowFileName())
        return Fail(function, __LINE__, m_fileName.c_str());

    for (;;) {
        std::int32_t count = 0;
        try {
            count = static_cast<std::int32_t>(platform::GetPrivateProfileSectionA(
                narrowSection.Get(), buffer.Data(), static_cast<corvane::ulong>(buffer.Size()),
                m_narrowFileName.Get()));
        } catch (...) {
            return Fail(function, __LINE__);
        }
        if (count < 1)
            return count;
        if (count == buffer.Size() - 2) {
            buffer.Double();
            continue;
        }
        ++count;
        string_stripTrailWhiteSpaceA(buffer.Data());
        Utf8ToWide(buffer.Data(), count, text);
        return count;
    }
}

void ConfigFile::Utf8ToWide(const char* text, std::int32_t length, wstring& result) {
    using namespace corvane::platform;
    result.resize(static_cast<std::size_t>(length)); // never more units than bytes
    const int units = platform::MultiByteToWideChar(CP_UTF8, 0, text, length, result.data(), length);
    result.resize(static_cast<std::size_t>(units));
}

bool ConfigFile::SplitNameList(const wstring& list, std::vector<wstring>& names) {
    if (list.empty())
        return false;
    constexpr std::size_t unitsOfName = 8; // or more, with the NUL, in most lists
    if (names.empty())
        names.reserve(list.size() / unitsOfName);
    for (wstring_view rest = list;;) {
        const std::size_t length = corvane::FindUnit(rest, wchar());
        if (length == rest.size())
            return true;
        names.emplace_back(rest.substr(0, length));
        rest.remove_prefix(length + 1);
        if (!rest.empty() && rest.front() == 0)
            return true;
    }
}

bool ConfigFile::EnumerateSections(std::vector<wstring>& sections) {
    wstring list;
    if (ReadValue(CORVANE_TEXT(":"), list) > 0 && SplitNameList(list, sections))
        return true;
    sections.clear();
    return false;
}

bool ConfigFile::EnumerateTags(const wstring& section, std::vector<wstring>& tags) {
    wstring key;
    key.reserve(section.size() + 1);
    key += corvane::UpToNul(section);
    if (key.empty())
        return false;
    // A key made from such a name would be split inside it and read something else, maybe the list of all
    // sections.
    if (corvane::FindUnit(key, ':') != key.size())
        return true;
    key += ':';
    wstring list;
    if (ReadValue(key, list) > 0)
        SplitNameList(list, tags);
    return true;
}

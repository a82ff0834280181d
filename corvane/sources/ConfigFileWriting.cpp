// Writing to the configuration file. A refusal is treated as temporary: the file may be busy.
#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/FindUnit.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/ConfigFile.h>
#include <corvane/sources/NarrowChanges.h>
#include <corvane/sources/NarrowString.h>

#include <stdexcept>

using corvane::wstring;

namespace {

template <class Write>
std::int32_t Attempt(bool isFirst, Write write) {
    // Waiting a second and sleeping a second each time would take a minute.
    const platform::BriefWaits scope(!isFirst);
    return write();
}

// Calls `write` at least once and at most `retries` times, until its result is not 0, and returns that
// result. Reads `retries` again after each attempt.
template <class Write>
std::int32_t Retry(const std::uint32_t& retries, Write write) {
    constexpr corvane::ulong pauseSeconds = 1;
    corvane::ulong attempt = 0;
    do {
        if (const std::int32_t written = Attempt(attempt == 0, write))
            return written;
        const corvane::ulong reason = platform::GetLastError();
        ++attempt;
        corvane::wchar line[256];
        string_safeSprintfW(
            line, std::size(line),
            CORVANE_TEXT("attempt #%lu to write to config file fails, will retry in %lu seconds"), attempt,
            pauseSeconds);
        failure_report(static_cast<std::int32_t>(reason), line, configChannel,
                       "ConfigFile::WritePrivateProfileStringWithRetry", __LINE__);
        platform::Sleep(pauseSeconds * 1000);
    } while (attempt < retries);
    return 0;
}

std::int32_t LastError() {
    return static_cast<std::int32_t>(platform::GetLastError());
}

} // namespace

std::int32_t ConfigFile::WritePrivateProfileStringWithRetry(const char* section, const char* tag,
                                                            const char* value, const char* file) const {
    return Retry(m_writeRetries,
                 [&] { return platform::WritePrivateProfileStringA(section, tag, value, file); });
}

std::int32_t ConfigFile::WritePrivateProfileStringWithRetry(const corvane::wchar* section,
                                                            const corvane::wchar* tag,
                                                            const corvane::wchar* value,
                                                            const corvane::wchar* file) const {
    return Retry(m_writeRetries,
                 [&] { return platform::WritePrivateProfileStringW(section, tag, value, file); });
}

std::int32_t ConfigFile::WriteValue(const wstring& key, const wstring& value) {
    const auto fail = [](const corvane::wchar* message, std::int32_t line) {
        return failure_report(FAILURE_GENERAL, message, configChannel, "ConfigFile::WriteValue", line);
    };
    if (!IsReady() || key.empty())
        return fail(nullptr, __LINE__);
    wstring section;
    wstring tag;
    if (!ParseKey(key, section, tag))
        return fail(nullptr, __LINE__);

    NarrowString narrowSection;
    NarrowString narrowTag;
    NarrowString narrowValue;
    NarrowString narrowFileName;
    if (!narrowSection.ConvertName(section) || !narrowTag.ConvertName(tag) ||
        !narrowValue.Convert(string_skipWhiteSpaceW(value.c_str())) ||
        !narrowFileName.Convert(m_fileName.c_str()))
        return fail(section.c_str(), __LINE__);

    std::int32_t written = 0;
    try {
        written = WritePrivateProfileStringWithRetry(narrowSection.Get(), narrowTag.Get(), narrowValue.Get(),
                                                     narrowFileName.Get());
        if (written == 0)
            failure_report(LastError(), CORVANE_TEXT("WritePrivateProfileStringA"), configChannel,
                           "ConfigFile::WriteValue", __LINE__);
    } catch (...) {
        return fail(CORVANE_TEXT("WritePrivateProfileStringA exception caught"), __LINE__);
    }
    UpdateModifyTime();
    return written;
}

bool ConfigFile::DeleteValue(const wstring& key) {
    wstring section;
    wstring tag;
    if (!ParseKey(key, section, tag) || corvane::IsEmptyName(section))
        return false;
    const corvane::wchar* const tagOrNull = corvane::IsEmptyName(tag) ? nullptr : tag.c_str();
    if (WritePrivateProfileStringWithRetry(section.c_str(), tagOrNull, nullptr, m_fileName.c_str()) != 0) {
        UpdateModifyTime();
        return true;
    }
    failure_report(LastError(), CORVANE_TEXT("WritePrivateProfileString"), configChannel,
                   "ConfigFile::DeleteValue", __LINE__);
    return false;
}

std::int32_t ConfigFile::WriteChanges(const std::vector<corvane::ConfigChange>& changes) {
    const auto fail = [](const char* reason, const wstring& key, std::int32_t line) {
        return failure_reportFormatted(FAILURE_GENERAL, CORVANE_TEXT("%S: '%s'"), configChannel,
                                       "ConfigFile::WriteChanges", line, reason, key.c_str());
    };
    if (changes.empty())
        return 1;
    if (!IsReady() || !HasNarrowFileName())
        return fail("not ready", changes.front().key, __LINE__);
    NarrowChanges narrow;
    wstring section;
    wstring tag;
    for (const auto& [key, value] : changes) {
        try {
            if (!ParseKey(key, section, tag))
                section.clear();
            narrow.Add(section, tag, value);
        } catch (const std::invalid_argument& refusal) {
            return fail(refusal.what(), key, __LINE__);
        }
    }

    std::int32_t written = 0;
    try {
        written = Retry(m_writeRetries, [&] {
            return platform::WritePrivateProfileChanges(narrow.Get(), m_narrowFileName.Get());
        });
    } catch (const std::exception& exception) {
        return fail(exception.what(), m_fileName, __LINE__);
    }
    if (written != 0)
        UpdateModifyTime();
    else
        failure_report(LastError(), CORVANE_TEXT("WritePrivateProfileChanges"), configChannel,
                       "ConfigFile::WriteChanges", __LINE__);
    return written;
}

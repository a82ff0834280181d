// Snapshots: copies of the configuration file beside it, named by its path, a dot and the first free number.
#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/StringUtility.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/ConfigFile.h>

#include <cerrno>

using corvane::wstring;

namespace {

constexpr int existence = 0;
constexpr int failIfExists = 1;
constexpr int overwrite = 0;

} // namespace

std::int32_t ConfigFile::CreateSnapshot(wstring& snapshotName) {
    const auto fail = [](const corvane::wchar* message, std::int32_t line) {
        return failure_report(FAILURE_GENERAL, message, configChannel, "ConfigFile::CreateSnapshot", line);
    };
    corvane::wchar name[260] = {};
    corvane::ulong number = 0;
    do {
        if (string_safeSprintfW(name, std::size(name), CORVANE_TEXT("%s.%lu"), m_fileName.c_str(),
                                number++) != 0)
            return fail(nullptr, __LINE__);
    } while (platform::_waccess(name, existence) == 0);

    wstring made = name; // before the copy: no snapshot may exist whose name the caller does not get
    if (!platform::CopyFileW(m_fileName.c_str(), name, failIfExists))
        return fail(CORVANE_TEXT("failed to copy the active configuration to the snapshot"), __LINE__);
    snapshotName = std::move(made);
    return 0;
}

std::int32_t ConfigFile::RestoreSnapshot(const wstring& snapshotName) {
    const auto fail = [](std::int32_t code, const corvane::wchar* message, std::int32_t line) {
        return failure_report(code, message, configChannel, "ConfigFile::RestoreSnapshot", line);
    };
    if (m_fileName.empty())
        return fail(FAILURE_GENERAL, CORVANE_TEXT("invalid configuration file name"), __LINE__);
    if (platform::_waccess(m_fileName.c_str(), existence) != 0)
        return fail(errno, CORVANE_TEXT("cannot access the specified configuration file"), __LINE__);
    if (platform::_waccess(snapshotName.c_str(), existence) != 0)
        return fail(errno, CORVANE_TEXT("cannot access the specified snapshot file"), __LINE__);
    if (!platform::CopyFileW(snapshotName.c_str(), m_fileName.c_str(), overwrite))
        return fail(FAILURE_GENERAL,
                    CORVANE_TEXT("failed to copy snapshot configuration to active configuration"), __LINE__);
    if (platform::_wutime64(m_fileName.c_str(), nullptr) != 0)
        return fail(FAILURE_GENERAL,
                    CORVANE_TEXT("failed to update the configuration file modification time"), __LINE__);
    return 0;
}

#include <corvane/platform/windows/FileHandle.h>

namespace corvane {
namespace {

// From hundreds of nanoseconds since 1601, which the platform counts in.
std::int64_t Nanoseconds(std::int64_t time) noexcept {
    constexpr std::int64_t from1601To1970 = 116'444'736'000'000'000;
    return (time - from1601To1970) * 100;
}

std::int64_t Joined(DWORD high, DWORD low) noexcept {
    return static_cast<std::int64_t>(std::uint64_t{high} << 32 | low);
}

std::int64_t Now() noexcept {
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    return Nanoseconds(Joined(now.dwHighDateTime, now.dwLowDateTime));
}

windows::FileHandle OpenForAttributes(const wchar* path) noexcept {
    return windows::Owned(::CreateFileW(path, FILE_READ_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

FileState Failed() noexcept {
    FileState state;
    state.error = ::GetLastError();
    return state;
}

} // namespace

FileState platform::ExamineFile(const wchar* path) noexcept {
    const std::int64_t now = Now();
    const windows::FileHandle file = OpenForAttributes(path);
    if (!file)
        return Failed();
    BY_HANDLE_FILE_INFORMATION info{};
    FILE_BASIC_INFO times{};
    if (!::GetFileInformationByHandle(file.get(), &info) ||
        !::GetFileInformationByHandleEx(file.get(), FileBasicInfo, &times, sizeof times))
        return Failed();
    FileState state;
    state.volume = info.dwVolumeSerialNumber;
    state.file = static_cast<std::uint64_t>(Joined(info.nFileIndexHigh, info.nFileIndexLow));
    state.size = static_cast<std::uint64_t>(Joined(info.nFileSizeHigh, info.nFileSizeLow));
    state.modified = Nanoseconds(times.LastWriteTime.QuadPart);
    state.changed = Nanoseconds(times.ChangeTime.QuadPart);
    // FAT keeps no time of change; elsewhere the one of modification can be set by anyone.
    state.racy = IsRacy(times.ChangeTime.QuadPart == 0 ? state.modified : state.changed, now);
    return state;
}

// For a file that no other machine serves, the query is an invalid parameter.
bool platform::HasRemoteClock(const wchar* path) noexcept {
    const windows::FileHandle file = OpenForAttributes(path);
    if (!file)
        return true;
    FILE_REMOTE_PROTOCOL_INFO info{};
    return ::GetFileInformationByHandleEx(file.get(), FileRemoteProtocolInfo, &info, sizeof info) != 0 ||
           ::GetLastError() != ERROR_INVALID_PARAMETER;
}

} // namespace corvane

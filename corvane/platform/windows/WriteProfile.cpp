#include <corvane/foundations/Utf.h>
#include <corvane/platform/windows/HeldProfile.h>

#include <algorithm>
#include <cerrno>

namespace corvane {

int platform::WritePrivateProfileStringA(const char* section, const char* tag, const char* value,
                                         const char* file) {
    CheckProfileChange({section, tag, value});
    windows::FileHandle kept;
    return windows::KeepInPlace(file, kept) && ::WritePrivateProfileStringA(section, tag, value, file);
}

int platform::WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value,
                                         const wchar* file) {
    windows::FileHandle kept;
    return windows::KeepInPlace(ToUtf8(file).c_str(), kept) &&
           ::WritePrivateProfileStringW(section, tag, value, file);
}

int platform::_waccess(const wchar* path, int mode) {
    const int result = ::_waccess(path, mode);
    if (result == 0 || errno != ENOENT)
        return result;
    windows::CleanUp(ToUtf8(path).c_str());
    return ::_waccess(path, mode);
}

int platform::WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file) {
    for (const ProfileChange& change : changes)
        CheckProfileChange(change);
    const bool writes = std::any_of(changes.begin(), changes.end(),
                                    [](const ProfileChange& change) { return change.value != nullptr; });
    if (changes.empty())
        return 1;
    windows::HeldProfile profile;
    if (!profile.Acquire(file, writes))
        return !writes && ::GetLastError() == ERROR_FILE_NOT_FOUND;
    if (!profile.MakeCopy())
        return 0;
    const char* const copy = profile.Copy().c_str();
    for (const auto& [section, tag, value] : changes)
        if (!::WritePrivateProfileStringA(section, tag, value, copy))
            return 0;
    ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, copy); // flushes what the system may have cached
    return profile.Commit();
}

} // namespace corvane

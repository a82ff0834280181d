#include <corvane/platform/windows/HeldProfile.h>

#include <memory>
#include <string_view>

namespace corvane::windows {
namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool Refuse(DWORD error) noexcept {
    ::SetLastError(error);
    return false;
}

FileHandle Open(const std::string& path, DWORD access, DWORD share, DWORD how = OPEN_EXISTING,
                SECURITY_ATTRIBUTES* security = nullptr) noexcept {
    return Owned(::CreateFileA(path.c_str(), access, share, security, how, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// The profile operations look for a name without a folder in the Windows folder.
std::string Located(const char* file) {
    const std::string name = file;
    if (name.find_first_of("\\/:") != std::string::npos)
        return name;
    char folder[MAX_PATH] = "";
    ::GetWindowsDirectoryA(folder, MAX_PATH);
    return folder + ('\\' + name);
}

std::string CopyOf(const std::string& path) {
    return path + ".corvane-batch";
}

std::string BackupOf(const std::string& path) {
    return path + ".corvane-before";
}

bool Exists(const std::string& path) noexcept {
    return ::GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// While a file is replaced it is missing for a moment: it has the backup's name, and keeps it if the process
// is killed then. Waits for a living process; false with ERROR_SHARING_VIOLATION if that takes long.
bool PutBack(const std::string& path) {
    const std::string backup = BackupOf(path);
    for (int attempt = 0; attempt < 100 && !Exists(path); ++attempt) {
        if (const FileHandle held = Open(backup, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_DELETE))
            return ::MoveFileExA(backup.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
        const DWORD error = ::GetLastError();
        if (error != ERROR_SHARING_VIOLATION)
            return !Exists(backup) || Refuse(error);
        ::Sleep(1);
    }
    return Exists(path) || Refuse(ERROR_SHARING_VIOLATION);
}

// The full path of an open file, or `given` if the code page cannot represent it.
std::string PathOf(const FileHandle& file, const std::string& given) {
    char text[1024];
    const DWORD size = ::GetFinalPathNameByHandleA(file.get(), text, sizeof text, 0);
    const std::string_view path(text, size < sizeof text ? size : 0);
    constexpr std::string_view local = R"(\\?\)";
    constexpr std::string_view network = R"(\\?\UNC\)";
    std::string result;
    if (path.substr(0, network.size()) == network)
        result = R"(\\)" + std::string(path.substr(network.size()));
    else if (path.substr(0, local.size()) == local)
        result = path.substr(local.size());
    return result.empty() || result.find('?') != std::string::npos ? given : result;
}

bool ReadAll(const FileHandle& file, std::string& content) {
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file.get(), &size))
        return false;
    constexpr LONGLONG maxBytes = 1 << 30;
    if (size.QuadPart > maxBytes)
        return Refuse(ERROR_FILE_TOO_LARGE);
    content.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD count = 0;
    if (!::ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &count, nullptr))
        return false;
    content.resize(count);
    return true;
}

bool WriteAll(const FileHandle& file, const std::string& content) noexcept {
    const auto size = static_cast<DWORD>(content.size());
    DWORD count = 0;
    return ::WriteFile(file.get(), content.data(), size, &count, nullptr) &&
           (count == size || Refuse(ERROR_DISK_FULL));
}

// Batches exclude each other by a lock far beyond the end of the file, where it blocks no reader.
bool LockBeyondEnd(const FileHandle& file) noexcept {
    OVERLAPPED position{};
    position.OffsetHigh = 0x40000000;
    return ::LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                        &position) ||
           Refuse(ERROR_SHARING_VIOLATION);
}

} // namespace

HeldProfile::~HeldProfile() {
    const DWORD error = ::GetLastError();
    if (m_hasCopy)
        ::DeleteFileA(m_copy.c_str());
    if (m_isNew)
        ::DeleteFileA(m_path.c_str());
    ::SetLastError(error);
}

bool HeldProfile::Acquire(const char* file, bool create) {
    const std::string given = Located(file);
    if (!PutBack(given))
        return false;
    // Without write permission on the file itself, it must not be replaced either.
    FileHandle probe = Open(given, GENERIC_READ | GENERIC_WRITE, shareAll);
    bool isNew = false;
    if (!probe && create && ::GetLastError() == ERROR_FILE_NOT_FOUND) {
        if (Exists(BackupOf(given))) // missing only while another process replaces it
            return Refuse(ERROR_SHARING_VIOLATION);
        probe = Open(given, GENERIC_READ | GENERIC_WRITE, shareAll, CREATE_NEW);
        isNew = static_cast<bool>(probe);
    }
    if (!probe)
        return false;
    probe.reset();
    m_file = Open(given, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE);
    if (!m_file || !LockBeyondEnd(m_file))
        return false;
    if (!IsStill(given))
        return false;
    m_path = PathOf(m_file, given);
    m_copy = CopyOf(m_path);
    if (isNew && Exists(BackupOf(m_path))) { // it is the target of a link, and was missing for a moment
        m_file.reset();
        ::DeleteFileA(m_path.c_str());
        PutBack(m_path);
        return Refuse(ERROR_SHARING_VIOLATION);
    }
    if (!ReadAll(m_file, m_content))
        return false;
    m_isNew = isNew && m_content.empty();
    return true;
}

// Another process may have replaced the file before the lock was acquired.
bool HeldProfile::IsStill(const std::string& path) const noexcept {
    BY_HANDLE_FILE_INFORMATION held{};
    BY_HANDLE_FILE_INFORMATION named{};
    const FileHandle other = Open(path, 0, shareAll);
    if (!::GetFileInformationByHandle(m_file.get(), &held))
        return false;
    if (!other || !::GetFileInformationByHandle(other.get(), &named) ||
        held.dwVolumeSerialNumber != named.dwVolumeSerialNumber ||
        held.nFileIndexHigh != named.nFileIndexHigh || held.nFileIndexLow != named.nFileIndexLow)
        return Refuse(ERROR_SHARING_VIOLATION);
    return held.nNumberOfLinks <= 1 || Refuse(ERROR_NOT_SUPPORTED);
}

bool HeldProfile::MakeCopy() {
    ::DeleteFileA(m_copy.c_str());
    DWORD size = 0;
    ::GetFileSecurityA(m_path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    const auto rights = std::make_unique<unsigned char[]>(size);
    if (!::GetFileSecurityA(m_path.c_str(), DACL_SECURITY_INFORMATION, rights.get(), size, &size))
        return false;
    SECURITY_ATTRIBUTES security{sizeof security, rights.get(), FALSE};
    const FileHandle copy = Open(m_copy, GENERIC_WRITE, 0, CREATE_NEW, &security);
    m_hasCopy = static_cast<bool>(copy);
    return m_hasCopy && WriteAll(copy, m_content);
}

bool HeldProfile::Commit() {
    if (const FileHandle copy = Open(m_copy, GENERIC_READ | GENERIC_WRITE, 0)) {
        std::string content;
        if (!ReadAll(copy, content))
            return false;
        if (content == m_content)
            return true;
        if (!::FlushFileBuffers(copy.get()))
            return false;
    } else {
        return false;
    }
    const std::string backup = BackupOf(m_path);
    ::DeleteFileA(backup.c_str());
    // Without a backup, a replacement that stops half-way would have removed the file.
    if (!::ReplaceFileA(m_path.c_str(), m_copy.c_str(), backup.c_str(), 0, nullptr, nullptr)) {
        const DWORD error = ::GetLastError();
        // Also over a file that another program has created meanwhile: this one has all the settings.
        ::MoveFileExA(backup.c_str(), m_path.c_str(), MOVEFILE_WRITE_THROUGH | MOVEFILE_REPLACE_EXISTING);
        return Refuse(error);
    }
    ::DeleteFileA(backup.c_str());
    m_hasCopy = false;
    m_isNew = false;
    return true;
}

bool KeepInPlace(const char* file, FileHandle& kept) {
    if (!CleanUp(file))
        return false;
    const std::string path = Located(file);
    kept = Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    return kept || (::GetLastError() != ERROR_SHARING_VIOLATION && !Exists(BackupOf(path))) ||
           Refuse(ERROR_SHARING_VIOLATION);
}

bool CleanUp(const char* file) {
    const std::string path = Located(file);
    if (!PutBack(path))
        return false;
    for (const std::string& left : {CopyOf(path), BackupOf(path)}) {
        HeldProfile held;
        if (Exists(left) && held.Acquire(file, false))
            ::DeleteFileA(left.c_str());
    }
    return true;
}

} // namespace corvane::windows

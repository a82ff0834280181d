#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/registry/FolderLock.h>
#include <corvane/platform/posix/registry/ValuesFile.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace corvane::posix {

using namespace platform;

namespace {

constexpr const char* fileName = ".values";
constexpr const char* newFileName = ".values.new"; // only the holder of the key's lock uses it
constexpr off_t largestFile = 64 << 20;

bool IsSame(const struct stat& a, const struct stat& b) noexcept {
    const auto isEqual = [](const timespec& x, const timespec& y) {
        return x.tv_sec == y.tv_sec && x.tv_nsec == y.tv_nsec;
    };
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_size == b.st_size &&
           isEqual(a.st_mtim, b.st_mtim) && isEqual(a.st_ctim, b.st_ctim);
}

ulong OpenFile(const KeyFolder& key, FileHandle& file, struct stat& status) {
    file = FileHandle(::openat(key.Get(), fileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file || ::fstat(file.Get(), &status) != 0)
        return KeyError();
    if (!S_ISREG(status.st_mode))
        return ERROR_ACCESS_DENIED;
    return status.st_size > largestFile ? ERROR_FILE_TOO_LARGE : ERROR_SUCCESS;
}

ulong ReadText(const FileHandle& file, const struct stat& status, std::string& text) {
    text.resize(static_cast<std::size_t>(status.st_size));
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t count = ::read(file.Get(), &text[length], text.size() - length);
        if (count < 0 && errno != EINTR)
            return KeyError();
        if (count == 0)
            break;
        if (count > 0)
            length += static_cast<std::size_t>(count);
    }
    text.resize(length);
    return ERROR_SUCCESS;
}

bool WriteText(const FileHandle& file, std::string_view text) noexcept {
    while (!text.empty()) {
        const ssize_t count = ::write(file.Get(), text.data(), text.size());
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// The new file is as readable as the old one was. Where its group can't be kept, the group loses its access.
bool TakeOverAccess(const FileHandle& file, const KeyFolder& key) noexcept {
    struct stat old {};
    if (::fstatat(key.Get(), fileName, &old, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT && ::fchmod(file.Get(), key.isPrivate ? 0600 : 0644) == 0;
    mode_t mode = old.st_mode & 0777;
    if (::fchown(file.Get(), old.st_uid, old.st_gid) != 0 &&
        ::fchown(file.Get(), static_cast<uid_t>(-1), old.st_gid) != 0)
        mode &= ~static_cast<mode_t>(070);
    return ::fchmod(file.Get(), mode) == 0;
}

bool ReplaceFile(const KeyFolder& key, std::string_view text) {
    ::unlinkat(key.Get(), newFileName, 0); // of a writer that was killed
    const FileHandle file(
        ::openat(key.Get(), newFileName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return false;
    if (TakeOverAccess(file, key) && WriteText(file, text) && ::fsync(file.Get()) == 0 &&
        ::renameat(key.Get(), newFileName, key.Get(), fileName) == 0)
        return ::fsync(key.Get()) == 0;
    const int error = errno;
    ::unlinkat(key.Get(), newFileName, 0);
    errno = error;
    return false;
}

// Puts the value in its place; false if it stands there already.
bool Put(RegistryValue value, RegistryValues& content) {
    RegistryValue* const old = content.Find(value.name);
    if (!old) {
        content.values.push_back(std::move(value));
        return true;
    }
    if (old->type == value.type && old->data == value.data)
        return false;
    old->type = value.type;
    old->data = std::move(value.data);
    return true;
}

} // namespace

ulong ValuesFile::Refresh(const KeyFolder& key) {
    struct stat status {};
    if (::fstatat(key.Get(), fileName, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        if (m_file && IsSame(status, m_status))
            return ERROR_SUCCESS;
        return Read(key);
    }
    if (errno != ENOENT)
        return KeyError();
    m_file = FileHandle();
    m_content = RegistryValues();
    return key.IsDeleted() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

ulong ValuesFile::Read(const KeyFolder& key) {
    std::string text;
    FileHandle file;
    m_file = FileHandle();
    m_content = RegistryValues();
    if (const ulong error = OpenFile(key, file, m_status))
        return error;
    if (const ulong error = ReadText(file, m_status, text))
        return error;
    if (!ParseValues(text, m_content))
        return ERROR_BADDB;
    m_file = std::move(file);
    return ERROR_SUCCESS;
}

ulong StoreValue(const KeyFolder& key, RegistryValue value) {
    FolderLock lock;
    if (const ulong error = lock.Take(key))
        return error;
    FileHandle file;
    struct stat status {};
    std::string text;
    RegistryValues content;
    ulong error = OpenFile(key, file, status);
    if (!error) {
        // Who may not write the file may not replace it either, though the folder would allow it.
        if (::faccessat(key.Get(), fileName, W_OK, AT_EACCESS) != 0)
            return KeyError();
        error = ReadText(file, status, text);
    }
    if (error && error != ERROR_FILE_NOT_FOUND)
        return error;
    if (!ParseValues(text, content))
        return ERROR_BADDB;
    if (!Put(std::move(value), content))
        return ERROR_SUCCESS;
    text = PrintValues(content);
    if (text.size() > static_cast<std::size_t>(largestFile))
        return ERROR_FILE_TOO_LARGE;
    return ReplaceFile(key, text) ? ERROR_SUCCESS : KeyError();
}

} // namespace corvane::posix

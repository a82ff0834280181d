#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FileAttributes.h>
#include <corvane/platform/linux/files/ReadFile.h>
#include <corvane/platform/linux/files/TemporaryFile.h>
#include <corvane/platform/linux/files/WriteFile.h>
#include <corvane/platform/linux/registry/FolderLock.h>
#include <corvane/platform/linux/registry/ValuesFile.h>

#include <cerrno>
#include <fcntl.h>

namespace corvane::os {

using namespace platform;

namespace {

constexpr const char* fileName = ".values";
constexpr std::size_t largestFile = std::size_t{64} << 20;

// On failure `errno` is set. Refuses a symbolic link and does not block on a pipe.
FileHandle OpenFile(const KeyFolder& key, int access) noexcept {
    return FileHandle(::openat(key.Get(), fileName, access | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

ulong ParseFile(const FileHandle& file, RegistryValues& content, struct stat& status) {
    FileText text;
    if (::fstat(file.Get(), &status) != 0)
        return ErrorFromErrno(errno);
    if (const ulong error = ReadWholeFile(file.Get(), status, text))
        return error;
    if (text.Size() > largestFile)
        return ERROR_FILE_TOO_LARGE;
    return ParseValues(text.View(), content) ? ERROR_SUCCESS : ERROR_BADDB;
}

// The new file has the permissions of the old one; the first one has those of its tree.
int GiveAccess(const KeyFolder& key, const FileHandle& old, const struct stat& status, int next) {
    if (!old)
        return ::fchmod(next, key.isPrivate ? 0600 : 0644) == 0 ? 0 : errno;
    return CopyMetadataWherePossible(old.Get(), status, next);
}

int Replace(const KeyFolder& key, const FileHandle& old, const struct stat& status, std::string_view text) {
    TemporaryFile next;
    if (const int error = next.Create(key.Get(), fileName))
        return error;
    if (const int error = GiveAccess(key, old, status, next.Get()))
        return error;
    if (const int error = WriteWhole(next.Get(), {text}))
        return error;
    return next.Replace();
}

// Stores the value; false if it is there already.
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
    // A file that was replaced or removed has no link left.
    if (m_file && ::fstat(m_file.Get(), &status) == 0 && status.st_nlink > 0 && FileStamp(status) == m_stamp)
        return ERROR_SUCCESS;
    m_file = FileHandle();
    m_content = RegistryValues();
    FileHandle file = OpenFile(key, O_RDONLY);
    if (!file && errno == ENOENT)
        return key.IsDeleted() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
    if (!file)
        return KeyError(errno);
    if (const ulong error = ParseFile(file, m_content, status))
        return error;
    m_stamp = FileStamp(status);
    m_file = std::move(file);
    return ERROR_SUCCESS;
}

ulong StoreValue(const KeyFolder& key, RegistryValue value) {
    FolderLock lock;
    if (const ulong error = lock.Acquire(key))
        return error;
    // Opened for writing: without write permission on the file, it must not be replaced either, even where
    // the folder would allow it.
    const FileHandle old = OpenFile(key, O_RDWR);
    RegistryValues content;
    struct stat status {};
    if (!old && errno != ENOENT)
        return KeyError(errno);
    if (const ulong error = old ? ParseFile(old, content, status) : ERROR_SUCCESS)
        return error;
    if (!Put(std::move(value), content))
        return ERROR_SUCCESS;
    const std::string text = PrintValues(content);
    return text.size() > largestFile ? ERROR_FILE_TOO_LARGE : KeyError(Replace(key, old, status, text));
}

} // namespace corvane::os

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileAttributes.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/files/FileUpdate.h>
#include <corvane/platform/linux/files/ReadFile.h>
#include <corvane/platform/linux/files/TemporaryFile.h>
#include <corvane/platform/linux/files/WriteFile.h>

#include <cerrno>
#include <fcntl.h>

namespace corvane {

using namespace platform;
using namespace os;

namespace {

struct Source {
    FileHandle file;
    struct stat status {};
    FileText content;
};

ulong Open(const std::string& path, Source& source) {
    TargetPath target;
    if (const ulong error = FindTarget(path, target))
        return error;
    const int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    source.file = FileHandle(::openat(target.folder.Get(), target.name.c_str(), flags));
    if (!source.file || ::fstat(source.file.Get(), &source.status) != 0)
        return ErrorFromErrno(errno);
    ContentLock lock;
    if (const ulong error = lock.Acquire(source.file.Get(), ContentLock::Kind::Shared))
        return error;
    return ReadWholeFile(source.file.Get(), source.content);
}

// Returns an `errno` value.
int MakeCopy(const Source& source, const TargetPath& target) {
    TemporaryFile copy;
    if (const int error = copy.Create(target.folder.Get(), target.name))
        return error;
    if (const int error = CopyMetadataWherePossible(source.file.Get(), source.status, copy.Get()))
        return error;
    if (const int error = WriteWhole(copy.Get(), {source.content.View()}))
        return error;
    SetModificationTime(copy.Get(), source.status);
    return copy.Publish();
}

// A symbolic link counts as an existing file, wherever it leads.
ulong CopyToNew(const Source& source, const std::string& to) {
    TargetPath target;
    if (const ulong error = OpenFolderOf(to, target))
        return error;
    struct stat status {};
    if (::fstatat(target.folder.Get(), target.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return ERROR_FILE_EXISTS;
    return ErrorFromErrno(MakeCopy(source, target));
}

ulong CopyOver(const Source& source, const std::string& to) {
    FileUpdate update;
    if (const ulong error = update.Begin(to, FileUpdate::Missing::Refuse))
        return error;
    return update.Commit({source.content.View()}, &source.status);
}

ulong CopyToMissing(const Source& source, const std::string& to) {
    TargetPath target;
    if (const ulong error = FindTarget(to, target))
        return error;
    return ErrorFromErrno(MakeCopy(source, target));
}

ulong Copy(const std::string& from, const std::string& to, bool failIfExists) {
    Source source;
    if (const ulong error = Open(from, source))
        return error;
    if (failIfExists)
        return CopyToNew(source, to);
    ulong error = CopyOver(source, to);
    if (error == ERROR_FILE_NOT_FOUND)
        error = CopyToMissing(source, to);
    if (error == ERROR_FILE_EXISTS) // created by another process meanwhile
        error = CopyOver(source, to);
    return error;
}

} // namespace

int platform::CopyFileW(const wchar* from, const wchar* to, int failIfExists) noexcept {
    const int error = Guarded([&] {
        return from && to ? Copy(ToUtf8(from), ToUtf8(to), failIfExists != 0) : ERROR_INVALID_PARAMETER;
    });
    if (error != 0)
        SetLastError(static_cast<ulong>(error));
    return error == 0;
}

} // namespace corvane

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/TargetPath.h>

#include <cerrno>
#include <climits>
#include <unistd.h>

namespace corvane::os {

using namespace platform;

namespace {

constexpr int longestChain = 40; // the system's own limit

// Leaves `path` empty if the name is not a symbolic link.
ulong FollowLink(const TargetPath& target, std::string& path) {
    char link[PATH_MAX];
    const ssize_t length = ::readlinkat(target.folder.Get(), target.name.c_str(), link, sizeof link);
    path.assign(link, length > 0 ? static_cast<std::size_t>(length) : 0);
    return length >= 0 || errno == EINVAL || errno == ENOENT ? ERROR_SUCCESS : ErrorFromErrno(errno);
}

} // namespace

ulong OpenFolderOf(const std::string& path, TargetPath& target, int base) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    target.name = path.substr(slash + 1); // npos + 1 is 0
    if (target.name.empty())
        return ERROR_PATH_NOT_FOUND;
    target.folder = FileHandle(::openat(base, folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (target.folder)
        return ERROR_SUCCESS;
    return errno == ENOENT ? ERROR_PATH_NOT_FOUND : ErrorFromErrno(errno);
}

ulong FindTarget(std::string path, TargetPath& target) {
    FileHandle base;
    for (int links = 0; links <= longestChain; ++links) {
        if (const ulong error = OpenFolderOf(path, target, base ? base.Get() : AT_FDCWD))
            return error;
        if (const ulong error = FollowLink(target, path))
            return error;
        if (path.empty())
            return ERROR_SUCCESS;
        base = std::move(target.folder);
    }
    return ERROR_ACCESS_DENIED;
}

} // namespace corvane::os

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/files/TargetPath.h>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace corvane::posix {

using namespace platform;

namespace {

constexpr int longestChain = 40; // as many links as the system itself follows

ulong OpenFolder(const FileHandle& base, const std::string& path, FileHandle& folder) noexcept {
    const int start = base ? base.Get() : AT_FDCWD;
    folder = FileHandle(::openat(start, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        return ERROR_SUCCESS;
    return errno == ENOENT ? ERROR_PATH_NOT_FOUND : ErrorFromErrno(errno);
}

// Leaves `path` empty when the name is no symbolic link.
ulong FollowLink(const TargetPath& target, std::string& path) {
    char link[PATH_MAX];
    const ssize_t length = ::readlinkat(target.folder.Get(), target.name.c_str(), link, sizeof link);
    path.assign(link, length > 0 ? static_cast<std::size_t>(length) : 0);
    return length >= 0 || errno == EINVAL || errno == ENOENT ? ERROR_SUCCESS : ErrorFromErrno(errno);
}

} // namespace

ulong FindTarget(std::string path, TargetPath& target) {
    FileHandle base;
    for (int links = 0; links <= longestChain; ++links) {
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
        target.name = path.substr(slash + 1); // npos + 1 is 0
        if (target.name.empty())
            return ERROR_PATH_NOT_FOUND;
        if (const ulong error = OpenFolder(base, folder, target.folder))
            return error;
        if (const ulong error = FollowLink(target, path))
            return error;
        if (path.empty())
            return ERROR_SUCCESS;
        base = std::move(target.folder);
    }
    return ERROR_ACCESS_DENIED;
}

} // namespace corvane::posix

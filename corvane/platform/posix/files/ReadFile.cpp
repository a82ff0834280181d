#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/ReadFile.h>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::posix {

using namespace platform;

ulong ReadWholeFile(int descriptor, std::string& content) {
    ContentLock lock;
    if (const ulong error = lock.Take(descriptor, ContentLock::Kind::Shared))
        return error;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return ErrorFromErrno(errno);
    const std::size_t expected = static_cast<std::size_t>(status.st_size);
    if (expected > largestFile)
        return ERROR_FILE_TOO_LARGE;
    content.resize(expected + 1); // one more, to see the end without growing
    for (std::size_t length = 0;;) {
        const ssize_t count =
            ::pread(descriptor, content.data() + length, content.size() - length, static_cast<off_t>(length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return ErrorFromErrno(errno);
        length += static_cast<std::size_t>(count);
        if (length > largestFile)
            return ERROR_FILE_TOO_LARGE;
        if (count == 0) {
            content.resize(length);
            return ERROR_SUCCESS;
        }
        if (length == content.size())
            content.resize(std::max<std::size_t>(length * 2, 4096));
    }
}

} // namespace corvane::posix

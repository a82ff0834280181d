#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/ReadFile.h>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

using namespace platform;

ulong os::ReadWholeFile(int descriptor, FileText& content) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return ErrorFromErrno(errno);
    return ReadWholeFile(descriptor, status, content);
}

ulong os::ReadWholeFile(int descriptor, const struct stat& status, FileText& content) {
    if (!S_ISREG(status.st_mode))
        return ERROR_ACCESS_DENIED;
    if (status.st_size > off_t{maximumFileSize})
        return ERROR_FILE_TOO_LARGE;

    // The size is only a hint: the file may shrink or grow meanwhile, or have none, as those under /proc.
    constexpr std::size_t capacityWithoutSize = 4096;
    std::size_t count = 0;
    const auto size = static_cast<std::size_t>(status.st_size);
    content.Resize(size == 0 ? capacityWithoutSize : size + 1);
    while (count != size || size == 0) {
        const ssize_t got =
            ::pread(descriptor, content.Data() + count, content.Size() - count, static_cast<off_t>(count));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return ErrorFromErrno(errno);
        if (got == 0)
            break;
        count += static_cast<std::size_t>(got);
        if (count > maximumFileSize)
            return ERROR_FILE_TOO_LARGE;
        if (count == content.Size())
            content.Resize(std::min(content.Size() * 2, maximumFileSize + 1));
    }
    content.Resize(count);
    return ERROR_SUCCESS;
}

} // namespace corvane

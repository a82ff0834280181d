#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/files/WriteFile.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

namespace corvane::os {

using namespace platform;

namespace {

// Allocates the blocks that the file will need, beyond its end and invisibly. A file system without support
// for that reports a full disk during the write instead.
int Reserve(int descriptor, std::size_t size) noexcept {
    int result = 0;
    do
        result = ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size));
    while (result != 0 && errno == EINTR);
    return result == 0 || (errno != ENOSPC && errno != EDQUOT) ? 0 : errno;
}

int Overwrite(int descriptor, const TextFragments& content) noexcept {
    if (const int error = WriteWhole(descriptor, content))
        return error;
    if (::ftruncate(descriptor, static_cast<off_t>(SizeOf(content))) != 0 || ::fsync(descriptor) != 0)
        return errno;
    return 0;
}

} // namespace

int WriteWhole(int descriptor, const TextFragments& content) noexcept {
    constexpr int maxParts = 256;
    off_t at = 0;
    std::size_t piece = 0;   // the first one that is not completely written
    std::size_t written = 0; // bytes of it
    for (;;) {
        iovec parts[maxParts];
        int count = 0;
        for (std::size_t i = piece; i < content.size() && count < maxParts; ++i) {
            const std::string_view rest = content[i].substr(i == piece ? written : 0);
            if (!rest.empty())
                parts[count++] = {const_cast<char*>(rest.data()), rest.size()};
        }
        if (count == 0)
            return 0;
        const ssize_t size = ::pwritev(descriptor, parts, count, at);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return size == 0 ? EIO : errno;
        at += size;
        for (written += static_cast<std::size_t>(size);
             piece < content.size() && written >= content[piece].size(); ++piece)
            written -= content[piece].size();
    }
}

ulong WriteInPlace(int descriptor, const TextFragments& content, std::string_view old) {
    const TextFragments before{old}; // allocated now: nothing may throw later
    ContentLock lock;
    if (const ulong error = lock.Acquire(descriptor, ContentLock::Kind::Exclusive))
        return error;
    const std::size_t size = SizeOf(content);
    int error = size > old.size() ? Reserve(descriptor, size) : 0;
    if (error == 0)
        error = Overwrite(descriptor, content);
    if (error != 0)
        Overwrite(descriptor, before); // also frees the reserved blocks
    return ErrorFromErrno(error);
}

} // namespace corvane::os

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/WriteFile.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

namespace corvane::posix {

using namespace platform;

namespace {

// Takes the blocks that the file will need, behind its end and out of sight. A file system that cannot is
// asked nothing more: it then says by the write itself that it is full.
int Reserve(int descriptor, std::size_t size) noexcept {
    int result = 0;
    do
        result = ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size));
    while (result != 0 && errno == EINTR);
    return result == 0 || (errno != ENOSPC && errno != EDQUOT) ? 0 : errno;
}

int Overwrite(int descriptor, const TextPieces& content) noexcept {
    if (const int error = WriteWhole(descriptor, content))
        return error;
    if (::ftruncate(descriptor, static_cast<off_t>(SizeOf(content))) != 0 || ::fsync(descriptor) != 0)
        return errno;
    return 0;
}

} // namespace

int WriteWhole(int descriptor, const TextPieces& content) noexcept {
    constexpr int mostParts = 256;
    off_t at = 0;
    std::size_t piece = 0;   // the first that is not all written
    std::size_t written = 0; // of that one
    for (;;) {
        iovec parts[mostParts];
        int count = 0;
        for (std::size_t i = piece; i < content.size() && count < mostParts; ++i) {
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

ulong WriteInPlace(int descriptor, const TextPieces& content, std::string_view old) {
    const TextPieces before{old}; // made now, as nothing may fail later
    ContentLock lock;
    if (const ulong error = lock.Take(descriptor, ContentLock::Kind::Alone))
        return error;
    const std::size_t size = SizeOf(content);
    int error = size > old.size() ? Reserve(descriptor, size) : 0;
    if (error == 0)
        error = Overwrite(descriptor, content);
    if (error != 0)
        Overwrite(descriptor, before); // also gives back what was reserved
    return ErrorFromErrno(error);
}

} // namespace corvane::posix

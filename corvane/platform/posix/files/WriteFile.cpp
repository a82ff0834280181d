#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/WriteFile.h>

#include <cerrno>
#include <fcntl.h>
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
    off_t at = 0;
    for (std::string_view piece : content) {
        while (!piece.empty()) {
            const ssize_t count = ::pwrite(descriptor, piece.data(), piece.size(), at);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return count == 0 ? EIO : errno;
            at += count;
            piece.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    return 0;
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

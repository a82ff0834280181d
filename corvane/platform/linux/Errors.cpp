#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <cerrno>

namespace corvane {

using namespace platform;

ulong os::ErrorFromErrno(int error) noexcept {
    switch (error) {
    case 0: return ERROR_SUCCESS;
    case ENOENT: return ERROR_FILE_NOT_FOUND;
    case ENOTDIR: return ERROR_PATH_NOT_FOUND;
    case EMFILE:
    case ENFILE: return ERROR_TOO_MANY_OPEN_FILES;
    case EACCES:
    case EPERM:
    case EISDIR:
    case ELOOP:
    case ETXTBSY: return ERROR_ACCESS_DENIED;
    case ENOMEM: return ERROR_NOT_ENOUGH_MEMORY;
    case EROFS: return ERROR_WRITE_PROTECT;
    case EAGAIN:
    case EBUSY: return ERROR_SHARING_VIOLATION;
    case EEXIST: return ERROR_FILE_EXISTS;
    case ENOSPC:
    case EDQUOT: return ERROR_DISK_FULL;
    case ENAMETOOLONG: return ERROR_FILENAME_EXCED_RANGE;
    case EFBIG:
    case EOVERFLOW: return ERROR_FILE_TOO_LARGE;
    case EIO: return ERROR_IO_DEVICE;
    default: return ERROR_GEN_FAILURE;
    }
}

namespace {
thread_local ulong lastError = ERROR_SUCCESS;
}

ulong platform::GetLastError() noexcept {
    return lastError;
}

void platform::SetLastError(ulong error) noexcept {
    lastError = error;
}

} // namespace corvane

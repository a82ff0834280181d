#include <corvane/platform/linux/LinuxPlatform.h>

#include <cerrno>
#include <exception>
#include <fcntl.h>

namespace corvane {

int platform::_wutime64(const wchar* path, const __utimbuf64*) noexcept {
    try {
        if (path)
            return ::utimensat(AT_FDCWD, ToUtf8(path).c_str(), nullptr, 0);
        errno = EINVAL;
    } catch (const std::exception&) {
        errno = ENOMEM;
    }
    return -1;
}

} // namespace corvane

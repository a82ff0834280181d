#include <corvane/detail/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

namespace corvane {

using namespace platform;

namespace {

int Refuse(ulong error) noexcept {
    platform::SetLastError(error);
    return 0;
}

int RefuseComparison() noexcept {
    errno = EINVAL;
    return INT_MAX;
}

wstring_view AtMost(const wchar* text, std::size_t count) noexcept {
    std::size_t length = 0;
    while (length < count && text[length] != 0)
        ++length;
    return {text, length};
}

} // namespace

int platform::MultiByteToWideChar(unsigned codePage, ulong flags, const char* text, int length, wchar* buffer,
                                  int capacity) noexcept {
    if (codePage != CP_UTF8 || flags != 0 || !text || length == 0 || capacity < 0 ||
        (capacity > 0 && !buffer))
        return Refuse(ERROR_INVALID_PARAMETER);
    const std::size_t bytes = length < 0 ? std::strlen(text) + 1 : static_cast<std::size_t>(length);
    if (bytes > INT_MAX)
        return Refuse(ERROR_INVALID_PARAMETER);
    const std::string_view utf8(text, bytes);
    if (capacity == 0)
        return static_cast<int>(utf::WideLength(utf8));
    // A buffer with one unit per byte always suffices, which saves counting.
    const auto room = static_cast<std::size_t>(capacity);
    if (room < bytes && room < utf::WideLength(utf8))
        return Refuse(ERROR_INSUFFICIENT_BUFFER);
    return static_cast<int>(utf::ToWide(utf8, buffer));
}

int platform::_wcsicmp(const wchar* a, const wchar* b) noexcept {
    return a && b ? CompareIgnoringCase(a, b) : RefuseComparison();
}

int platform::_wcsnicmp(const wchar* a, const wchar* b, std::size_t count) noexcept {
    if (count == 0)
        return 0;
    return a && b ? CompareIgnoringCase(AtMost(a, count), AtMost(b, count)) : RefuseComparison();
}

} // namespace corvane

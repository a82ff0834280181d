#include <corvane/detail/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstring>
#include <cwctype>

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

// The fallback without a locale: the same for all units but the two letters whose lower case is ASCII.
wchar WithoutLocale(wchar unit) noexcept {
    constexpr wchar kelvinSign = 0x212A;
    constexpr wchar dottedI = 0x130;
    if (unit == kelvinSign)
        return 'k';
    return unit == dottedI ? wchar('i') : wchar(0xFFFD);
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
    const auto units = static_cast<std::size_t>(capacity);
    if (units < bytes && units < utf::WideLength(utf8))
        return Refuse(ERROR_INSUFFICIENT_BUFFER);
    return static_cast<int>(utf::ToWide(utf8, buffer));
}

// Units that any other locale treats as equal are equal in this one; most C libraries include it.
wchar platform::LowerInvariant(wchar unit) noexcept {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!unicode)
        return WithoutLocale(unit);
    const std::wint_t lower = ::towlower_l(unit, unicode);
    return lower <= 0xFFFF ? static_cast<wchar>(lower) : unit;
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

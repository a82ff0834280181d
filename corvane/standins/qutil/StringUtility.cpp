#include <corvane/foundations/StringUtility.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/WideFormat.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

template <class Character>
bool IsWhiteSpace(Character c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

int stringCnv_wcsToUTF8Alloc(const corvane::wchar* text, char** result) noexcept {
    const corvane::wstring_view wide = text;
    if (corvane::utf::HasLoneSurrogate(wide))
        return 1;
    auto* const utf8 = new (std::nothrow) char[wide.size() * 3 + 1];
    if (!utf8)
        return 1;
    utf8[corvane::utf::ToUtf8(wide, utf8)] = '\0';
    *result = utf8;
    return 0;
}

void string_freeA(char* text) noexcept {
    delete[] text;
}

int string_safeSprintfW(corvane::wchar* buffer, std::size_t capacity, const corvane::wchar* format,
                        ...) noexcept {
    if (capacity == 0)
        return 1;
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = corvane::FormatWide(buffer, capacity - 1, format, arguments);
    va_end(arguments);
    buffer[std::min(length, capacity - 1)] = 0;
    return length < capacity ? 0 : 1;
}

const corvane::wchar* string_skipWhiteSpaceW(const corvane::wchar* text) noexcept {
    while (IsWhiteSpace(*text))
        ++text;
    return text;
}

void string_stripTrailWhiteSpaceA(char* text) noexcept {
    for (std::size_t length = std::strlen(text); length > 0 && IsWhiteSpace(text[length - 1]);)
        text[--length] = '\0';
}

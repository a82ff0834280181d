#include <corvane/foundations/Utf.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool IsTrail(unsigned char byte) noexcept {
    return (byte & 0xC0) == 0x80;
}

// The second byte of a sequence is bounded more tightly than the others (Unicode, table 3-7): that keeps out
// overlong forms, surrogates and what lies above U+10FFFF.
bool IsSecond(unsigned char lead, unsigned char second) noexcept {
    switch (lead) {
    case 0xE0: return second >= 0xA0 && second <= 0xBF;
    case 0xED: return second >= 0x80 && second <= 0x9F;
    case 0xF0: return second >= 0x90 && second <= 0xBF;
    case 0xF4: return second >= 0x80 && second <= 0x8F;
    default: return IsTrail(second);
    }
}

int TrailCount(unsigned char lead) noexcept {
    if (lead < 0xC2)
        return 0;
    if (lead < 0xE0)
        return 1;
    if (lead < 0xF0)
        return 2;
    return lead < 0xF5 ? 3 : 0;
}

// Decodes the character that begins at `at`, which is not ASCII, and moves `at` behind it. What is ill-formed
// gives U+FFFD for the longest piece that could still have begun a character.
char32_t DecodeUtf8(const unsigned char*& at, const unsigned char* end) noexcept {
    const unsigned char lead = *at++;
    const int trails = TrailCount(lead);
    if (trails == 0 || at == end || !IsSecond(lead, *at))
        return replacement;
    char32_t code = lead & (0x3FU >> trails);
    for (int i = 0; i < trails; ++i) {
        if (at == end || !IsTrail(*at))
            return replacement;
        code = code << 6 | (*at++ & 0x3FU);
    }
    return code;
}

char32_t DecodeUtf16(const wchar*& at, const wchar* end) noexcept {
    const char32_t unit = *at++;
    if (unit < 0xD800 || unit > 0xDFFF)
        return unit;
    if (unit > 0xDBFF || at == end || *at < 0xDC00 || *at > 0xDFFF)
        return replacement;
    return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
}

std::size_t UnitsOf(char32_t code) noexcept {
    return code < 0x10000 ? 1 : 2;
}

std::size_t BytesOf(char32_t code) noexcept {
    if (code < 0x80)
        return 1;
    if (code < 0x800)
        return 2;
    return code < 0x10000 ? 3 : 4;
}

wchar* Append(wchar* out, char32_t code) noexcept {
    if (code >= 0x10000) {
        *out++ = static_cast<wchar>(0xD7C0 + (code >> 10));
        code = 0xDC00 + (code & 0x3FF);
    }
    *out++ = static_cast<wchar>(code);
    return out;
}

char* Append(char* out, char32_t code) noexcept {
    static constexpr unsigned char leads[] = {0, 0, 0xC0, 0xE0, 0xF0};
    const std::size_t bytes = BytesOf(code);
    for (std::size_t i = bytes; i-- > 1; code >>= 6)
        out[i] = static_cast<char>(0x80 | (code & 0x3F));
    out[0] = static_cast<char>(leads[bytes] | code);
    return out + bytes;
}

// Whether the eight bytes at `at` are ASCII, as bytes or as UTF-16.
template <typename Unit>
bool IsAsciiBlock(const Unit* at) noexcept {
    constexpr std::uint64_t beyondAscii = sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    std::uint64_t block = 0;
    std::memcpy(&block, at, sizeof block);
    return (block & beyondAscii) == 0;
}

template <typename Unit>
constexpr std::ptrdiff_t blockUnits = 8 / sizeof(Unit);

// Moves `at` behind the run of ASCII there and returns its length.
template <typename Unit>
std::size_t SkipAscii(const Unit*& at, const Unit* end) noexcept {
    const Unit* const begin = at;
    while (end - at >= blockUnits<Unit> && IsAsciiBlock(at))
        at += blockUnits<Unit>;
    while (at != end && *at < 0x80)
        ++at;
    return static_cast<std::size_t>(at - begin);
}

template <typename From, typename To>
void CopyAscii(const From*& at, const From* end, To*& out) noexcept {
    for (; end - at >= blockUnits<From> && IsAsciiBlock(at);
         at += blockUnits<From>, out += blockUnits<From>) {
        for (std::ptrdiff_t i = 0; i < blockUnits<From>; ++i)
            out[i] = static_cast<To>(at[i]);
    }
    while (at != end && *at < 0x80)
        *out++ = static_cast<To>(*at++);
}

} // namespace

char32_t utf::TakeCharacter(std::string_view& utf8) noexcept {
    const auto* const begin = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* at = begin;
    const char32_t code = *at < 0x80 ? *at++ : DecodeUtf8(at, begin + utf8.size());
    utf8.remove_prefix(static_cast<std::size_t>(at - begin));
    return code;
}

std::size_t utf::ToWide(std::string_view utf8, wchar* out) noexcept {
    const auto* at = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* const end = at + utf8.size();
    wchar* const begin = out;
    while (at != end) {
        if (*at < 0x80)
            CopyAscii(at, end, out);
        else
            out = Append(out, DecodeUtf8(at, end));
    }
    return static_cast<std::size_t>(out - begin);
}

std::size_t utf::WideLength(std::string_view utf8) noexcept {
    const auto* at = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* const end = at + utf8.size();
    std::size_t units = 0;
    while (at != end)
        units += *at < 0x80 ? SkipAscii(at, end) : UnitsOf(DecodeUtf8(at, end));
    return units;
}

std::size_t utf::ToUtf8(wstring_view wide, char* out) noexcept {
    const wchar* at = wide.data();
    const wchar* const end = at + wide.size();
    char* const begin = out;
    while (at != end) {
        if (*at < 0x80)
            CopyAscii(at, end, out);
        else
            out = Append(out, DecodeUtf16(at, end));
    }
    return static_cast<std::size_t>(out - begin);
}

std::size_t utf::Utf8Length(wstring_view wide) noexcept {
    const wchar* at = wide.data();
    const wchar* const end = at + wide.size();
    std::size_t bytes = 0;
    while (at != end)
        bytes += *at < 0x80 ? SkipAscii(at, end) : BytesOf(DecodeUtf16(at, end));
    return bytes;
}

wstring ToWide(std::string_view utf8) {
    wstring wide(utf::WideLength(utf8), wchar());
    utf::ToWide(utf8, wide.data());
    return wide;
}

std::string ToUtf8(wstring_view wide) {
    std::string utf8(utf::Utf8Length(wide), '\0');
    utf::ToUtf8(wide, utf8.data());
    return utf8;
}

} // namespace corvane

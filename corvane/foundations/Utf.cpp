#include <corvane/foundations/Utf.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

struct Decoded {
    char32_t code;
    const unsigned char* next;
};

// Each maximal subpart of an ill-formed sequence gives one U+FFFD.
Decoded DecodeAnyUtf8(const unsigned char* at, const unsigned char* end) noexcept {
    const unsigned char lead = *at++;
    const int trails = TrailCount(lead);
    if (trails == 0 || at == end || !IsSecond(lead, *at))
        return {replacement, at};
    char32_t code = lead & (0x3FU >> trails);
    for (int i = 0; i < trails; ++i) {
        if (at == end || !IsTrail(*at))
            return {replacement, at};
        code = code << 6 | (*at++ & 0x3FU);
    }
    return {code, at};
}

// Decodes the non-ASCII character at `at`.
inline Decoded DecodeUtf8(const unsigned char* at, const unsigned char* end) noexcept {
    const unsigned char lead = *at;
    if (lead >= 0xC2 && lead < 0xE0 && end - at >= 2 && IsTrail(at[1]))
        return {static_cast<char32_t>((lead & 0x1F) << 6 | (at[1] & 0x3F)), at + 2};
    if (lead > 0xE0 && lead < 0xED && end - at >= 3 && IsTrail(at[1]) && IsTrail(at[2]))
        return {static_cast<char32_t>((lead & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F)), at + 3};
    return DecodeAnyUtf8(at, end);
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

// Whether `count` units are ASCII. The fixed block size lets compilers vectorize the loop.
template <std::size_t count, typename Unit>
bool IsAsciiBlock(const Unit* at) noexcept {
    constexpr std::size_t bytes = count * sizeof(Unit);
    using Number = std::conditional_t<bytes % sizeof(std::uint64_t) == 0, std::uint64_t, std::uint32_t>;
    constexpr std::uint64_t beyondAscii = sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    Number all = 0;
    for (std::size_t i = 0; i < count; i += sizeof(Number) / sizeof(Unit)) {
        Number number = 0;
        std::memcpy(&number, at + i, sizeof number);
        all |= number;
    }
    return (all & static_cast<Number>(beyondAscii)) == 0;
}

// Copies `count` units if they are ASCII.
template <std::size_t count, typename From, typename To>
bool CopyBlock(const From* at, To* out) noexcept {
    if (!IsAsciiBlock<count>(at))
        return false;
    To to[count]; // cannot alias `at`
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<To>(at[i]);
    std::memcpy(out, to, sizeof to);
    return true;
}

// Copies from `count` to twice `count` units if they are ASCII, in two blocks that may overlap.
template <std::size_t count, typename From, typename To>
bool CopyEnds(const From* at, std::size_t length, To* out) noexcept {
    return CopyBlock<count>(at, out) && CopyBlock<count>(at + length - count, out + length - count);
}

// Copies from 4 to 16 units if they are ASCII: most names, which are faster outside a loop.
template <typename From, typename To>
bool CopyShortAscii(const From* at, std::size_t length, To* out) noexcept {
    if (length > 16)
        return false;
    if (length >= 8)
        return CopyEnds<8>(at, length, out);
    if (length >= 4)
        return CopyEnds<4>(at, length, out);
    return false;
}

constexpr std::size_t blockUnits = 16;

// Copies the run of ASCII at `at` and advances both pointers past it.
template <typename From, typename To>
void CopyAscii(const From*& at, const From* end, To*& out) noexcept {
    auto length = static_cast<std::size_t>(end - at);
    const bool reachesBack = length >= blockUnits; // then one block, overlapping the last, copies the rest
    for (; length >= blockUnits && CopyBlock<blockUnits>(at, out); length -= blockUnits) {
        at += blockUnits;
        out += blockUnits;
    }
    if (length < blockUnits &&
        (reachesBack ? CopyBlock<blockUnits>(end - blockUnits, out + length - blockUnits)
                     : CopyShortAscii(at, length, out))) {
        at = end;
        out += length;
    }
    while (at != end && *at < 0x80)
        *out++ = static_cast<To>(*at++);
}

// The same without copying: returns the length of the run.
template <typename Unit>
std::size_t SkipAscii(const Unit*& at, const Unit* end) noexcept {
    const Unit* const begin = at;
    while (static_cast<std::size_t>(end - at) >= blockUnits && IsAsciiBlock<blockUnits>(at))
        at += blockUnits;
    while (at != end && *at < 0x80)
        ++at;
    return static_cast<std::size_t>(at - begin);
}

} // namespace

char32_t utf::ConsumeCharacter(std::string_view& utf8) noexcept {
    const auto* const at = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto [code, next] = *at < 0x80 ? Decoded{*at, at + 1} : DecodeUtf8(at, at + utf8.size());
    utf8.remove_prefix(static_cast<std::size_t>(next - at));
    return code;
}

std::size_t utf::ToWide(std::string_view utf8, wchar* out) noexcept {
    const auto* at = reinterpret_cast<const unsigned char*>(utf8.data());
    if (CopyShortAscii(at, utf8.size(), out))
        return utf8.size();
    const unsigned char* const end = at + utf8.size();
    wchar* const begin = out;
    while (at != end) {
        if (*at < 0x80) {
            CopyAscii(at, end, out);
        } else {
            const auto [code, next] = DecodeUtf8(at, end);
            out = Append(out, code);
            at = next;
        }
    }
    return static_cast<std::size_t>(out - begin);
}

std::size_t utf::WideLength(std::string_view utf8) noexcept {
    const auto* at = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* const end = at + utf8.size();
    std::size_t units = 0;
    while (at != end) {
        if (*at < 0x80) {
            units += SkipAscii(at, end);
        } else {
            const auto [code, next] = DecodeUtf8(at, end);
            units += UnitsOf(code);
            at = next;
        }
    }
    return units;
}

std::size_t utf::ToUtf8(wstring_view wide, char* out) noexcept {
    const wchar* at = wide.data();
    if (CopyShortAscii(at, wide.size(), out))
        return wide.size();
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

bool utf::HasLoneSurrogate(wstring_view wide) noexcept {
    const wchar* at = wide.data();
    const wchar* const end = at + wide.size();
    while (at != end) {
        const wchar unit = *at;
        if (unit < 0x80)
            SkipAscii(at, end);
        else if (DecodeUtf16(at, end) == replacement && unit != replacement)
            return true;
    }
    return false;
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

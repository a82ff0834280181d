// The conversions between UTF-8 and UTF-16 and the wide formatter, against those of the C library.
#include "Fuzz.h"

#include <corvane/foundations/StringUtility.h>
#include <corvane/foundations/Utf.h>

#include <climits>
#include <clocale>
#include <cstring>
#include <cwchar>

using namespace fuzz;

namespace {

constexpr wchar_t replacement = 0xFFFD;

std::string Encoded(wchar_t code) {
    char bytes[MB_LEN_MAX];
    std::mbstate_t state{};
    return {bytes, std::wcrtomb(bytes, code, &state)};
}

/// Whether the bytes are one character in full, with its code.
bool IsCharacter(const std::string& bytes, wchar_t& code) {
    std::mbstate_t state{};
    const std::size_t count = std::mbrtowc(&code, bytes.data(), bytes.size(), &state);
    return std::max<std::size_t>(count, 1) == bytes.size() && code <= 0x10FFFF;
}

/// Takes the first character, or the longest piece that could have begun one.
wchar_t Take(std::string& bytes) {
    wchar_t code = 0;
    for (std::size_t piece = std::min<std::size_t>(4, bytes.size()); piece > 0; --piece) {
        for (std::size_t missing = 0; piece + missing <= 4; ++missing) {
            for (const char filler : {'\x80', '\xBF'}) {
                if (IsCharacter(bytes.substr(0, piece) + std::string(missing, filler), code)) {
                    bytes.erase(0, piece);
                    return missing == 0 ? code : replacement;
                }
            }
        }
    }
    bytes.erase(0, 1);
    return replacement;
}

wstring CheckedWide(const std::string& bytes) {
    wstring wide = corvane::ToWide(bytes);
    Require(corvane::utf::WideLength(bytes) == wide.size(), "the length is known beforehand");
    wstring expected;
    std::string left = bytes;
    for (std::string_view rest = bytes; !rest.empty();) {
        const auto code = static_cast<wchar_t>(corvane::utf::ConsumeCharacter(rest));
        Require(code == Take(left) && left == rest, "UTF-8 is decoded");
        if (code >= 0x10000)
            expected += static_cast<corvane::wchar>(0xD800 + ((code - 0x10000) >> 10));
        expected += static_cast<corvane::wchar>(code < 0x10000 ? code : 0xDC00 + (code & 0x3FF));
    }
    Require(wide == expected, "a text is the sum of its characters");
    return wide;
}

void CheckUnits(const wstring& units) {
    std::string expected;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto kind = [&units](std::size_t at) { return at < units.size() ? units[at] >> 10U : 0U; };
        const bool isPair = kind(i) == 0x36 && kind(i + 1) == 0x37;
        if (isPair)
            expected += Encoded(
                static_cast<wchar_t>(0x10000 + (units[i] - 0xD800) * 0x400 + (units[i + 1] - 0xDC00)));
        else
            expected += Encoded(kind(i) == 0x36 || kind(i) == 0x37 ? replacement : units[i]);
        i += isPair ? 1 : 0;
    }
    Require(corvane::ToUtf8(units) == expected, "UTF-16 is encoded");
    Require(corvane::utf::Utf8Length(units) == expected.size(), "the length is known beforehand");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");
    Require(locale != nullptr, "the C library knows UTF-8");
    Input input(data, size);
    const std::size_t capacity = 1 + input.Below(255);
    const auto magnitude = static_cast<std::uint32_t>(input.Below(256) << 24 | input.Below(256));
    const auto number = static_cast<std::int32_t>(magnitude);
    std::string narrow = input.Until('|');
    narrow.resize(std::strlen(narrow.c_str())); // what follows a NUL is not formatted
    const std::string bytes(input.Rest());
    wstring wide = CheckedWide(bytes);
    wide.resize(std::min(wide.find(u'\0'), wide.size()));
    wstring units(bytes.size() / sizeof(corvane::wchar), 0);
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(corvane::wchar));
    CheckUnits(units);

    wstring literal;
    for (const auto unit : wide)
        literal.append(unit == u'%' ? 2U : 1U, unit);
    const auto forC = [](const wstring& text) { return std::wstring(text.begin(), text.end()); };
    const std::wstring format = forC(literal) + L"%ls|%ls|%d|%lu";
    std::wstring expected(4 * size + 64, L'\0');
    const int length = std::swprintf(expected.data(), expected.size(), format.c_str(), forC(wide).c_str(),
                                     forC(CheckedWide(narrow)).c_str(), number, std::uint64_t{magnitude});
    expected.resize(static_cast<std::size_t>(length));
    std::vector<corvane::wchar> buffer(capacity + 1, 0xABCD);
    const int isCut = string_safeSprintfW(buffer.data(), capacity, (literal + u"%s|%S|%d|%lu").c_str(),
                                          wide.c_str(), narrow.c_str(), number, magnitude);
    Require((isCut != 0) == (expected.size() >= capacity), "a cut is reported");
    Require(forC(buffer.data()) == expected.substr(0, capacity - 1), "the text is formatted");
    Require(buffer[capacity] == 0xABCD, "nothing is written after the buffer");
    return 0;
}

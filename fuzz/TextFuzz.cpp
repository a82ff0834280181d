// The conversions between UTF-8 and UTF-16 against iconv, and the wide formatter against plain joining.
#include "Fuzz.h"

#include <corvane/foundations/Utf.h>
#include <corvane/platform/Platform.h>

#include <cstring>
#include <iconv.h>

using namespace fuzz;

namespace {

/// What iconv makes of a text that is well-formed; false for any other.
template <class To, class From>
bool Converted(const char* to, const char* from, const From& text, To& result) {
    const iconv_t converter = ::iconv_open(to, from);
    auto* in = const_cast<char*>(reinterpret_cast<const char*>(text.data()));
    std::size_t left = text.size() * sizeof(text[0]);
    result.resize(left + 1);
    auto* out = reinterpret_cast<char*>(result.data());
    std::size_t room = result.size() * sizeof(result[0]);
    const bool isWhole = ::iconv(converter, &in, &left, &out, &room) == 0 && left == 0;
    ::iconv_close(converter);
    result.resize(result.size() - room / sizeof(result[0]));
    return isWhole;
}

bool FromUtf8(const std::string& bytes, wstring& wide) {
    return Converted("UTF-16LE", "UTF-8", bytes, wide);
}

/// Whether a character can begin with these bytes.
bool Begins(const std::string& bytes) {
    wstring ignored;
    for (const char second : {'\x80', '\x90', '\xA0', '\xBF'}) {
        for (std::size_t more = 1; more + bytes.size() <= 4; ++more) {
            if (FromUtf8(bytes + second + std::string(more - 1, '\x80'), ignored))
                return true;
        }
    }
    return false;
}

wstring WideReference(const std::string& bytes) {
    wstring wide;
    for (std::size_t at = 0; at < bytes.size();) {
        wstring character;
        std::size_t count = 1;
        while (count <= 4 && !FromUtf8(bytes.substr(at, count), character))
            ++count;
        if (count <= 4) {
            at += std::min(count, bytes.size() - at);
            wide += character;
            continue;
        }
        count = 3;
        while (count > 1 && (at + count > bytes.size() || !Begins(bytes.substr(at, count))))
            --count;
        at += count;
        wide += u'\xFFFD';
    }
    return wide;
}

std::string Utf8Reference(const wstring& wide) {
    std::string bytes;
    for (std::size_t at = 0; at < wide.size();) {
        std::string character;
        std::size_t count = 1;
        while (count <= 2 && !Converted("UTF-8", "UTF-16LE", wide.substr(at, count), character))
            ++count;
        bytes += count <= 2 ? character : "\xEF\xBF\xBD";
        at += count <= 2 ? count : 1;
    }
    return bytes;
}

void CheckText(const std::string& bytes) {
    const wstring wide = corvane::ToWide(bytes);
    Require(wide == WideReference(bytes) && corvane::utf::WideLength(bytes) == wide.size(),
            "UTF-8 is decoded");
    wstring units(bytes.size() / sizeof(corvane::wchar), 0);
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(corvane::wchar));
    const std::string utf8 = corvane::ToUtf8(units);
    Require(utf8 == Utf8Reference(units) && corvane::utf::Utf8Length(units) == utf8.size(),
            "UTF-16 is encoded");
    std::string_view rest = bytes;
    wstring piecewise;
    while (!rest.empty()) {
        const char32_t code = corvane::utf::TakeCharacter(rest);
        if (code >= 0x10000)
            piecewise += static_cast<corvane::wchar>(0xD7C0 + (code >> 10));
        piecewise += static_cast<corvane::wchar>(code < 0x10000 ? code : 0xDC00 + (code & 0x3FF));
    }
    Require(piecewise == wide, "a text is the sum of its characters");
}

int Format(corvane::wchar* buffer, std::size_t size, const corvane::wchar* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = corvane::platform::_vsnwprintf(buffer, size, format, arguments);
    va_end(arguments);
    return result;
}

wstring Literal(const wstring& text) {
    wstring doubled;
    for (const auto unit : text)
        doubled.append(unit == u'%' ? 2U : 1U, unit);
    return doubled;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::size_t room = input.Below(256);
    const auto number = static_cast<std::int32_t>((input.Below(256) << 24) + input.Below(256));
    const auto text = [&input] {
        const std::string whole = input.Until('|');
        return whole.substr(0, whole.find('\0'));
    };
    const std::string narrow = text();
    const wstring wide = corvane::ToWide(text());
    const wstring literal = corvane::ToWide(text());
    CheckText(std::string(input.Rest()));

    const wstring format = Literal(literal) + u"%s" + Literal(wide) + u"%S%d" + u"%lu" + u"%x%s" + literal;
    const auto magnitude = static_cast<std::uint32_t>(number);
    const wstring expected = literal + wide + wide + corvane::ToWide(narrow) +
                             corvane::ToWide(std::to_string(number)) +
                             corvane::ToWide(std::to_string(magnitude)) + u"%x%s" + literal;
    const std::vector<corvane::wchar> untouched(room + 1, 0xABCD);
    std::vector<corvane::wchar> buffer = untouched;
    const int result =
        Format(buffer.data(), room, format.c_str(), wide.c_str(), narrow.c_str(), number, magnitude);
    Require(result == (expected.size() <= room ? static_cast<int>(expected.size()) : -1),
            "the length is told, or the cut");
    const std::size_t stored = std::min(expected.size(), room);
    Require(expected.compare(0, stored, buffer.data(), stored) == 0, "the text is formatted");
    Require(stored == room || buffer[stored] == 0, "a NUL ends it where there is room");
    Require(buffer[room] == untouched[room], "nothing is written behind the buffer");
    return 0;
}

#include <corvane/platform/posix/PosixRegistry.h>
#include <corvane/platform/posix/registry/KeyName.h>
#include <corvane/platform/posix/registry/ValuesText.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace corvane::posix {

using namespace platform;

namespace {

bool TakeWord(std::string_view& text, std::string_view word) noexcept {
    if (text.substr(0, word.size()) != word)
        return false;
    text.remove_prefix(word.size());
    return true;
}

std::string_view TakeLine(std::string_view& text) noexcept {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    const std::string_view line = text.substr(0, end + 1);
    text.remove_prefix(line.size());
    return line;
}

bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string_view WithoutBlanks(std::string_view text) noexcept {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

template <typename Number>
bool TakeHex(std::string_view& text, std::size_t longest, Number& number) noexcept {
    const char* const end = text.data() + std::min(longest, text.size());
    const auto result = std::from_chars(text.data(), end, number, 16);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return result.ec == std::errc();
}

// False for what isn't UTF-8: it would come back as something else when the file is written again.
bool AppendWide(std::string_view text, wstring& wide) {
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(text.begin(), text.end(), isAscii)) {
        wide.append(text.begin(), text.end());
        return true;
    }
    const wstring part = ToWide(text);
    wide += part;
    return ToUtf8(part) == text;
}

// A quoted text; `\uXXXX` is a code unit that UTF-8 or a line can't hold.
bool TakeQuoted(std::string_view& text, wstring& wide) {
    if (!TakeWord(text, "\""))
        return false;
    const auto isMark = [](char c) { return c == '"' || c == '\\'; };
    for (;;) {
        const auto* const mark = std::find_if(text.begin(), text.end(), isMark);
        const auto size = static_cast<std::size_t>(mark - text.begin());
        if (!AppendWide(text.substr(0, size), wide))
            return false;
        text.remove_prefix(size);
        if (TakeWord(text, "\""))
            return true;
        if (!TakeWord(text, "\\") || text.empty())
            return false;
        if (TakeWord(text, "u")) {
            std::uint16_t unit = 0;
            const std::size_t before = text.size();
            if (!TakeHex(text, 4, unit) || before - text.size() != 4)
                return false;
            wide += static_cast<wchar>(unit);
            continue;
        }
        if (!isMark(text.front()))
            return false;
        wide += static_cast<wchar>(text.front());
        text.remove_prefix(1);
    }
}

// Bytes between commas. A backslash at the end of a line goes on in the next one.
bool TakeBytes(std::string_view line, std::string_view& following, std::string& data) {
    for (;;) {
        line = WithoutBlanks(line);
        if (line.empty())
            return true;
        if (line == "\\" && !following.empty()) {
            line = TakeLine(following);
            continue;
        }
        std::uint8_t byte = 0;
        if (!TakeHex(line, 2, byte))
            return false;
        data += static_cast<char>(byte);
        line = WithoutBlanks(line);
        if (!line.empty() && !TakeWord(line, ","))
            return false;
    }
}

void SetText(RegistryValue& value, wstring_view text) {
    value.type = REG_SZ;
    value.data.assign(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar));
    value.data.append(sizeof(wchar), '\0');
}

bool ParseData(std::string_view line, std::string_view& following, RegistryValue& value) {
    if (line.substr(0, 1) == "\"") {
        wstring text;
        if (!TakeQuoted(line, text))
            return false;
        SetText(value, text);
        return WithoutBlanks(line).empty();
    }
    if (TakeWord(line, "dword:")) {
        std::uint32_t number = 0;
        if (!TakeHex(line, 8, number))
            return false;
        value.type = REG_DWORD;
        value.data.assign(reinterpret_cast<const char*>(&number), sizeof number);
        return WithoutBlanks(line).empty();
    }
    value.type = REG_BINARY;
    if (!TakeWord(line, "hex"))
        return false;
    if (TakeWord(line, "(") && !(TakeHex(line, 8, value.type) && TakeWord(line, ")")))
        return false;
    return TakeWord(line, ":") && TakeBytes(line, following, value.data);
}

bool ParseValue(std::string_view line, std::string_view& following, RegistryValue& value) {
    if (!TakeWord(line, "@") && !TakeQuoted(line, value.name))
        return false;
    if (value.name.find(wchar()) != wstring::npos)
        return false;
    line = WithoutBlanks(line);
    return TakeWord(line, "=") && ParseData(WithoutBlanks(line), following, value);
}

bool IsLoneSurrogate(wstring_view text, std::size_t at) noexcept {
    const auto isBetween = [&](std::size_t i, wchar low, wchar high) {
        return i < text.size() && text[i] >= low && text[i] <= high;
    };
    if (isBetween(at, 0xD800, 0xDBFF))
        return !isBetween(at + 1, 0xDC00, 0xDFFF);
    return isBetween(at, 0xDC00, 0xDFFF) && (at == 0 || !isBetween(at - 1, 0xD800, 0xDBFF));
}

bool FitsNoLine(wstring_view text, std::size_t at) noexcept {
    return text[at] == '\r' || text[at] == '\n' || text[at] == 0 || IsLoneSurrogate(text, at);
}

void PrintHex(std::string& out, std::uint32_t number, int digits) {
    static constexpr char digit[] = "0123456789abcdef";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        out += digit[number >> shift & 0xF];
}

void PrintQuoted(wstring_view text, std::string& out) {
    out += '"';
    std::size_t printed = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isQuoted = text[i] == '"' || text[i] == '\\';
        if (!isQuoted && !FitsNoLine(text, i))
            continue;
        out += ToUtf8(text.substr(printed, i - printed));
        printed = i + 1;
        out += '\\';
        if (isQuoted) {
            out += static_cast<char>(text[i]);
        } else {
            out += 'u';
            PrintHex(out, text[i], 4);
        }
    }
    out += ToUtf8(text.substr(printed));
    out += '"';
}

// The data as a text without its terminator, if it can stand between quotes.
bool AsText(const RegistryValue& value, wstring& text) {
    if (value.type != REG_SZ || value.data.size() < sizeof(wchar) || value.data.size() % sizeof(wchar) != 0)
        return false;
    text.resize(value.data.size() / sizeof(wchar));
    std::memcpy(text.data(), value.data.data(), value.data.size());
    if (text.back() != 0)
        return false;
    text.pop_back();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (FitsNoLine(text, i))
            return false;
    }
    return true;
}

void PrintBytes(const RegistryValue& value, std::string& out) {
    out += "hex";
    if (value.type != REG_BINARY) {
        char digits[8];
        out += '(';
        out.append(digits, std::to_chars(digits, digits + sizeof digits, value.type, 16).ptr);
        out += ')';
    }
    char separator = ':';
    for (const char byte : value.data) {
        out += separator;
        PrintHex(out, static_cast<unsigned char>(byte), 2);
        separator = ',';
    }
    if (value.data.empty())
        out += separator;
}

void PrintData(const RegistryValue& value, std::string& out) {
    if (wstring text; AsText(value, text))
        return PrintQuoted(text, out);
    std::uint32_t number = 0;
    if (value.type != REG_DWORD || value.data.size() != sizeof number)
        return PrintBytes(value, out);
    std::memcpy(&number, value.data.data(), sizeof number);
    out += "dword:";
    PrintHex(out, number, 8);
}

} // namespace

RegistryValue* RegistryValues::Find(wstring_view name) noexcept {
    const auto found = std::find_if(values.begin(), values.end(), [&](const RegistryValue& value) {
        return CompareKeyNames(value.name, name) == 0;
    });
    return found == values.end() ? nullptr : &*found;
}

bool ParseValues(std::string_view text, RegistryValues& values) {
    values = RegistryValues();
    TakeWord(text, "\xEF\xBB\xBF");
    if (text.find('\0') != std::string_view::npos) // blocks of zeros are what a crash of the machine leaves
        return false;
    values.values.reserve(std::min<std::size_t>(text.size() / 16, 1024)); // most lines are longer
    RegistryValue value;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        const std::string_view content = WithoutBlanks(line);
        if (content.empty() || content.front() == ';') {
            value.comment += line;
            continue;
        }
        if (!ParseValue(content, text, value))
            return false;
        values.values.push_back(std::move(value));
        value = RegistryValue();
    }
    values.comment = std::move(value.comment);
    return true;
}

std::string PrintValues(const RegistryValues& values) {
    std::string out;
    for (const RegistryValue& value : values.values) {
        out += value.comment;
        if (value.name.empty())
            out += '@';
        else
            PrintQuoted(value.name, out);
        out += '=';
        PrintData(value, out);
        out += '\n';
    }
    return out += values.comment;
}

} // namespace corvane::posix

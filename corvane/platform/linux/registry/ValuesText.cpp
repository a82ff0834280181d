#include <corvane/foundations/LittleEndian.h>
#include <corvane/platform/linux/LinuxRegistry.h>
#include <corvane/platform/linux/registry/KeyName.h>
#include <corvane/platform/linux/registry/ValuesText.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace corvane::os {

using namespace platform;

namespace {

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
    std::string data = value.data;
    if (value.IsText())
        SwitchByteOrder(data);
    for (const char byte : data) {
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
    NumberBytes bytes{};
    if (value.type != REG_DWORD || value.data.size() != bytes.size())
        return PrintBytes(value, out);
    std::copy(value.data.begin(), value.data.end(), bytes.begin());
    out += "dword:";
    PrintHex(out, FromLittleEndian(bytes), 8);
}

} // namespace

bool RegistryValue::IsText() const noexcept {
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

void SwitchByteOrder(std::string& data) noexcept {
    for (std::size_t at = 0; at + sizeof(wchar) <= data.size(); at += sizeof(wchar)) {
        wchar unit = 0;
        std::memcpy(&unit, &data[at], sizeof unit);
        data[at] = static_cast<char>(unit & 0xFF);
        data[at + 1] = static_cast<char>(unit >> 8);
    }
}

RegistryValue* RegistryValues::Find(wstring_view name) noexcept {
    const auto found = std::find_if(values.begin(), values.end(), [&](const RegistryValue& value) {
        return CompareKeyNames(value.name, name) == 0;
    });
    return found == values.end() ? nullptr : &*found;
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

} // namespace corvane::os

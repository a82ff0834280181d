#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/LittleEndian.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/LinuxRegistry.h>
#include <corvane/platform/linux/registry/ValuesText.h>

#include <algorithm>
#include <charconv>

namespace corvane::os {

using namespace platform;

namespace {

bool Consume(std::string_view& text, char c) noexcept {
    if (text.empty() || text.front() != c)
        return false;
    text.remove_prefix(1);
    return true;
}

bool ConsumeWord(std::string_view& text, std::string_view word) noexcept {
    if (text.substr(0, word.size()) != word)
        return false;
    text.remove_prefix(word.size());
    return true;
}

std::string_view ConsumeLine(std::string_view& text) noexcept {
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
bool ConsumeHex(std::string_view& text, std::size_t longest, Number& number) noexcept {
    const char* const end = text.data() + std::min(longest, text.size());
    const auto result = std::from_chars(text.data(), end, number, 16);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return result.ec == std::errc();
}

bool IsMark(char c) noexcept {
    return c == '"' || c == '\\';
}

bool IsPlain(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x80 && !IsMark(c);
}

// Parses the text line by line. The text must outlive the parser.
class ValuesParser {
public:
    explicit ValuesParser(std::string_view text) noexcept : m_rest(text) {}

    bool Parse(RegistryValues& values) {
        while (!m_rest.empty()) {
            const std::string_view line = ConsumeLine(m_rest);
            const std::string_view content = WithoutBlanks(line);
            if (content.empty() || content.front() == ';') {
                values.comment += line;
                continue;
            }
            if (!ParseValue(content, values))
                return false;
        }
        return true;
    }

private:
    // The line is already trimmed.
    bool ParseValue(std::string_view line, RegistryValues& values) {
        wstring_view name;
        if (!Consume(line, '@') && !ConsumeQuoted(line, name))
            return false;
        if (FindUnit(name, wchar()) != name.size())
            return false;
        RegistryValue& value = values.values.emplace_back(name);
        if (!values.comment.empty())
            value.comment.swap(values.comment);
        line = WithoutBlanks(line);
        return Consume(line, '=') && ParseData(WithoutBlanks(line), value);
    }

    bool ParseData(std::string_view line, RegistryValue& value) {
        if (line.substr(0, 1) == "\"") {
            wstring_view text;
            if (!ConsumeQuoted(line, text))
                return false;
            value.type = REG_SZ;
            value.data.append(reinterpret_cast<const char*>(text.data()), (text.size() + 1) * sizeof(wchar));
            return line.empty();
        }
        if (ConsumeWord(line, "dword:")) {
            std::uint32_t number = 0;
            if (!ConsumeHex(line, 8, number))
                return false;
            value.type = REG_DWORD;
            const NumberBytes bytes = LittleEndian(number);
            value.data.assign(bytes.begin(), bytes.end());
            return line.empty();
        }
        value.type = REG_BINARY;
        if (!ConsumeWord(line, "hex"))
            return false;
        if (Consume(line, '(') && !(ConsumeHex(line, 8, value.type) && Consume(line, ')')))
            return false;
        if (!Consume(line, ':') || !ConsumeBytes(line, value.data))
            return false;
        if (value.IsText())
            SwitchByteOrder(value.data);
        return true;
    }

    // Bytes separated by commas. A backslash at the end of a line continues it on the next one.
    bool ConsumeBytes(std::string_view line, std::string& data) {
        for (;;) {
            line = WithoutBlanks(line);
            if (line.empty())
                return true;
            if (line == "\\" && !m_rest.empty()) {
                line = ConsumeLine(m_rest);
                continue;
            }
            std::uint8_t byte = 0;
            if (!ConsumeHex(line, 2, byte))
                return false;
            data += static_cast<char>(byte);
            line = WithoutBlanks(line);
            if (!line.empty() && !Consume(line, ','))
                return false;
        }
    }

    // `decoded` is a view of `m_decoded`, NUL-terminated and valid until the next text is decoded.
    bool ConsumeQuoted(std::string_view& text, wstring_view& decoded) {
        if (!Consume(text, '"'))
            return false;
        if (m_decoded.size() < text.size()) // no text has more code units than bytes
            m_decoded.resize(text.size());
        wchar* out = m_decoded.data();
        for (;;) {
            const auto* const end = std::find_if_not(text.begin(), text.end(), IsPlain);
            out = std::copy(text.begin(), end, out);
            text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
            if (Consume(text, '"'))
                break;
            if (!(Consume(text, '\\') ? ConsumeEscaped(text, *out++) : ConsumeOutsideAscii(text, out)))
                return false;
        }
        *out = 0;
        decoded = wstring_view(m_decoded.data(), static_cast<std::size_t>(out - m_decoded.data()));
        return true;
    }

    // A quote, a backslash, or as `uXXXX` a code unit that cannot be written as UTF-8 on one line.
    static bool ConsumeEscaped(std::string_view& text, wchar& unit) noexcept {
        if (Consume(text, 'u')) {
            std::uint16_t value = 0;
            const std::size_t before = text.size();
            const bool isNumber = ConsumeHex(text, 4, value);
            unit = static_cast<wchar>(value);
            return isNumber && before - text.size() == 4;
        }
        if (text.empty() || !IsMark(text.front()))
            return false;
        unit = static_cast<wchar>(text.front());
        text.remove_prefix(1);
        return true;
    }

    // False for ill-formed UTF-8: it would change when the file is written again.
    static bool ConsumeOutsideAscii(std::string_view& text, wchar*& out) {
        const auto* const end = std::find_if(text.begin(), text.end(), IsMark);
        const std::string_view piece = text.substr(0, static_cast<std::size_t>(end - text.begin()));
        const std::size_t units = utf::ToWide(piece, out);
        if (piece.empty() || ToUtf8({out, units}) != piece)
            return false;
        out += units;
        text.remove_prefix(piece.size());
        return true;
    }

    std::string_view m_rest;
    wstring m_decoded; // scratch buffer; the last text is at its beginning
};

} // namespace

bool ParseValues(std::string_view text, RegistryValues& values) {
    values = RegistryValues();
    ConsumeWord(text, "\xEF\xBB\xBF");
    if (text.find('\0') != std::string_view::npos) // a power failure can leave blocks of zeros
        return false;
    values.values.reserve(std::min<std::size_t>(text.size() / 16, 1024)); // most lines are longer
    return ValuesParser(text).Parse(values);
}

} // namespace corvane::os

#include <corvane/foundations/Utf.h>
#include <corvane/platform/Platform.h>
#include <corvane/platform/WideFormat.h>

#include <algorithm>

namespace corvane {
namespace {

// Stores what fits and counts all units.
class Output {
public:
    Output(wchar* buffer, std::size_t capacity) noexcept : m_buffer(buffer), m_capacity(capacity) {}

    std::size_t Length() const noexcept { return m_length; }

    void Put(wchar unit) noexcept {
        if (m_length < m_capacity)
            m_buffer[m_length] = unit;
        ++m_length;
    }

    void PutWide(const wchar* text) noexcept {
        for (text = text ? text : CORVANE_TEXT("(null)"); *text; ++text)
            Put(*text);
    }

    void PutNarrow(const char* text) noexcept {
        for (std::string_view rest = text ? text : "(null)"; !rest.empty();) {
            const std::string_view before = rest;
            utf::ConsumeCharacter(rest);
            wchar units[4];
            const std::size_t count = utf::ToWide(before.substr(0, before.size() - rest.size()), units);
            std::for_each(units, units + count, [this](wchar unit) { Put(unit); });
        }
    }

    void PutNumber(std::uint32_t magnitude, bool negative) noexcept {
        wchar digits[10];
        int count = 0;
        do
            digits[count++] = static_cast<wchar>('0' + magnitude % 10);
        while (magnitude /= 10);
        if (negative)
            Put('-');
        while (count > 0)
            Put(digits[--count]);
    }

private:
    wchar* m_buffer;
    std::size_t m_capacity;
    std::size_t m_length = 0;
};

} // namespace

std::size_t FormatWide(wchar* buffer, std::size_t capacity, const wchar* format,
                       std::va_list arguments) noexcept {
    Output output(buffer, capacity);
    for (; *format; ++format) {
        if (*format != '%') {
            output.Put(*format);
        } else if (format[1] == '%') {
            output.Put(*++format);
        } else if (format[1] == 's') {
            output.PutWide(va_arg(arguments, const wchar*));
            ++format;
        } else if (format[1] == 'S') {
            output.PutNarrow(va_arg(arguments, const char*));
            ++format;
        } else if (format[1] == 'd') {
            const auto number = va_arg(arguments, std::int32_t);
            const auto bits = static_cast<std::uint32_t>(number);
            output.PutNumber(number < 0 ? 0 - bits : bits, number < 0);
            ++format;
        } else if (format[1] == 'l' && format[2] == 'u') {
            output.PutNumber(va_arg(arguments, ulong), false);
            format += 2;
        } else { // the type of its argument is unknown, and so are all later arguments
            output.PutWide(format);
            break;
        }
    }
    return output.Length();
}

int platform::_vsnwprintf(wchar* buffer, std::size_t count, const wchar* format,
                          std::va_list arguments) noexcept {
    const std::size_t length = FormatWide(buffer, count, format, arguments);
    if (length < count)
        buffer[length] = 0;
    return length <= count ? static_cast<int>(length) : -1;
}

} // namespace corvane

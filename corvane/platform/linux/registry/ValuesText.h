// The text form of a key's values, one per line, as registry editors export them:
//
//     "Name"="text"
//     @="the default value"
//     "Number"=dword:0000002a
//     "Path"=hex(2):25,00,...
//
// UTF-8 throughout; backslash and quote are escaped with a backslash. Data that is not a text is written as
// `hex(type):`.
#pragma once

#include <corvane/foundations/WideString.h>

#include <vector>

namespace corvane::os {

struct RegistryValue {
    explicit RegistryValue(wstring_view valueName) : name(valueName) {}

    std::string comment; ///< the lines before it that hold no value, kept as they are
    wstring name;        ///< empty for the default value
    ulong type = 0;
    std::string data; ///< the bytes: of a text in the machine's order, of a number with the lowest first

    bool IsText() const noexcept;
};

struct RegistryValues {
    std::vector<RegistryValue> values;
    std::string comment; ///< the lines after the last value

    /// The value with that name, ignoring letter case, or null.
    RegistryValue* Find(wstring_view name) noexcept;
};

/// False for a damaged text: a line that is neither a value nor empty nor a comment (`;`), a NUL, or a name
/// or text that is not well-formed UTF-8.
bool ParseValues(std::string_view text, RegistryValues& values);

/// Converts the code units of a text's data between the machine's byte order and that of `hex(type):`, in
/// which the lower byte comes first.
void SwitchByteOrder(std::string& data) noexcept;

std::string PrintValues(const RegistryValues& values);

} // namespace corvane::os

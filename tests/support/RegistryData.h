#pragma once

#include <corvane/foundations/WideString.h>

#include <string>

/// The data of a registry value that is this text, without more of a terminator than the text has.
inline std::string TextData(corvane::wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(corvane::wchar)};
}

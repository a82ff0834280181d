#pragma once

#include <corvane/platform/Platform.h>

#include <string>

namespace corvane {

/// The data of a registry value that is this text, without more of a terminator than the text has.
inline std::string TextData(wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar)};
}

inline platform::LSTATUS SetData(platform::HKEY key, const wchar* name, ulong type, const std::string& data) {
    return platform::RegSetValueExW(key, name, 0, type, reinterpret_cast<const unsigned char*>(data.data()),
                                    static_cast<ulong>(data.size()));
}

/// The user's key, made if it is not there.
inline platform::HKEY CreateKey(const wchar* path) {
    using namespace platform;
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
}

} // namespace corvane

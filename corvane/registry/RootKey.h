// Parses the address of a key: a handle and a path, or a full path.
#pragma once

#include <corvane/platform/Platform.h>

/// The predefined key named by the first component of `path`, or null; see registry.h. `remainder`, if not
/// null, receives the text after the first backslash, null if there is none, or all of `path` if it has no
/// root; it is unchanged for a null or empty path.
platform::HKEY registry_parseRootKey(const corvane::wchar* path, const corvane::wchar** remainder) noexcept;

namespace corvane {

/// A key and the path below it, which is null (never empty) for the key itself.
struct KeyAddress {
    platform::HKEY key = nullptr;
    const wchar* subKey = nullptr;

    /// Resolves the pair of arguments that every registry function takes; `key` is null if there is no root.
    static KeyAddress Of(void* key, const wchar* subKey) noexcept;
};

} // namespace corvane

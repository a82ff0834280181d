// Open registry keys.
#pragma once

#include <corvane/registry/RootKey.h>

#include <memory>
#include <type_traits>

namespace corvane {

struct KeyDeleter {
    void operator()(platform::HKEY key) const noexcept { platform::RegCloseKey(key); }
};

/// Owns an open key, or none.
using RegistryKey = std::unique_ptr<std::remove_pointer_t<platform::HKEY>, KeyDeleter>;

/// Opens the key for reading, with `flags` added to the access bits. Empty if there is no root or it cannot
/// be opened.
inline RegistryKey OpenForReading(const KeyAddress& address, ulong flags) noexcept {
    using namespace platform;
    HKEY opened = nullptr;
    if (!address.key ||
        platform::RegOpenKeyExW(address.key, address.subKey, 0, flags | KEY_READ, &opened) != ERROR_SUCCESS)
        return nullptr;
    return RegistryKey(opened);
}

} // namespace corvane

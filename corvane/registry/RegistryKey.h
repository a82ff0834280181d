// Owns an open registry key.
#pragma once

#include <corvane/registry/RootKey.h>

#include <utility>

namespace corvane {

class RegistryKey {
public:
    RegistryKey() = default;
    explicit RegistryKey(platform::HKEY key) noexcept : m_key(key) {}
    RegistryKey(RegistryKey&& other) noexcept : m_key(std::exchange(other.m_key, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept {
        std::swap(m_key, other.m_key);
        return *this;
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (m_key)
            platform::RegCloseKey(m_key);
    }

    explicit operator bool() const noexcept { return m_key != nullptr; }
    platform::HKEY Get() const noexcept { return m_key; }

    /// Opens the key for reading, with `flags` added to the access bits. Empty if there is no root or it
    /// cannot be opened.
    static RegistryKey OpenForReading(const KeyAddress& address, ulong flags) noexcept {
        using namespace platform;
        HKEY opened = nullptr;
        if (!address.key || platform::RegOpenKeyExW(address.key, address.subKey, 0, flags | KEY_READ,
                                                    &opened) != ERROR_SUCCESS)
            return RegistryKey();
        return RegistryKey(opened);
    }

private:
    platform::HKEY m_key = nullptr;
};

} // namespace corvane

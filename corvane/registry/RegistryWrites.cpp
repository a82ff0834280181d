#include <corvane/foundations/LittleEndian.h>
#include <corvane/registry/RegistryKey.h>
#include <corvane/registry/registry.h>

using namespace corvane::platform;

namespace corvane {
namespace {

constexpr int noUsableKey = -1;

int WriteValue(void* key, const wchar* subKey, const wchar* name, ulong type, const void* data,
               std::size_t size) noexcept {
    const KeyAddress address = KeyAddress::Of(key, subKey);
    if (!address.key)
        return noUsableKey;
    RegistryKey created;
    if (address.subKey) {
        HKEY handle = nullptr;
        ulong disposition = 0;
        const auto status =
            platform::RegCreateKeyExW(address.key, address.subKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                      KEY_ALL_ACCESS, nullptr, &handle, &disposition);
        if (status != ERROR_SUCCESS)
            return static_cast<int>(status);
        if (!handle)
            return noUsableKey;
        created.reset(handle);
    }
    return static_cast<int>(platform::RegSetValueExW(created ? created.get() : address.key, name, 0, type,
                                                     static_cast<const unsigned char*>(data),
                                                     static_cast<ulong>(size)));
}

} // namespace
} // namespace corvane

using namespace corvane;

int registry_writeString(void* key, const wchar* subKey, const wchar* name, const wchar* data) noexcept {
    const std::size_t length = std::char_traits<wchar>::length(data);
    return WriteValue(key, subKey, name, REG_SZ, data, (length + 1) * sizeof(wchar));
}

int registry_writeNumber(void* key, const wchar* subKey, const wchar* name, corvane::ulong number) noexcept {
    const NumberBytes bytes = LittleEndian(number);
    return WriteValue(key, subKey, name, REG_DWORD, bytes.data(), bytes.size());
}

#include <corvane/registry/RootKey.h>

using namespace corvane::platform;

namespace {

struct Root {
    const corvane::wchar* name;
    platform::HKEY key;
};

// The order decides which root a shortened name means.
const Root roots[] = {
    {CORVANE_TEXT("HKEY_CURRENT_USER"), HKEY_CURRENT_USER},
    {CORVANE_TEXT("HKEY_LOCAL_MACHINE"), HKEY_LOCAL_MACHINE},
    {CORVANE_TEXT("HKEY_USERS"), HKEY_USERS},
    {CORVANE_TEXT("HKEY_CLASSES_ROOT"), HKEY_CLASSES_ROOT},
    {CORVANE_TEXT("HKEY_CURRENT_CONFIG"), HKEY_CURRENT_CONFIG},
    {CORVANE_TEXT("HKEY_DYN_DATA"), HKEY_DYN_DATA},
    {CORVANE_TEXT("HKEY_PERFORMANCE_DATA"), HKEY_PERFORMANCE_DATA},
};

} // namespace

platform::HKEY registry_parseRootKey(const corvane::wchar* path, const corvane::wchar** remainder) noexcept {
    if (!path || !*path)
        return nullptr;
    std::size_t length = 0;
    while (path[length] && path[length] != '\\')
        ++length;
    for (const Root& root : roots) {
        if (platform::_wcsnicmp(path, root.name, length) != 0)
            continue;
        if (remainder)
            *remainder = path[length] ? path + length + 1 : nullptr;
        return root.key;
    }
    if (remainder)
        *remainder = path;
    return nullptr;
}

corvane::KeyAddress corvane::KeyAddress::Of(void* key, const wchar* subKey) noexcept {
    KeyAddress address{static_cast<platform::HKEY>(key), subKey};
    if (!key)
        address.key = registry_parseRootKey(subKey, &address.subKey);
    if (address.subKey && !*address.subKey)
        address.subKey = nullptr;
    return address;
}

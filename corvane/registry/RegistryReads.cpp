#include <corvane/foundations/LittleEndian.h>
#include <corvane/registry/RegistryKey.h>
#include <corvane/registry/registry.h>

#include <algorithm>
#include <memory>
#include <new>

using namespace corvane::platform;

namespace corvane {
namespace {

struct FoundValue {
    std::unique_ptr<unsigned char[]> data; // null if nothing was found
    ulong type = 0;
    ulong size = 0;
};

// Finds the value with that name and one of two types. The buffers have the sizes reported by the query: a
// value that has grown since then does not fit and is skipped.
FoundValue FindValue(const RegistryKey& key, const wchar* name, ulong type, ulong otherType) noexcept {
    ulong count = 0;
    ulong longestName = 0;
    ulong largestSize = 0;
    if (platform::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                                   &longestName, &largestSize, nullptr, nullptr) != ERROR_SUCCESS)
        return {};
    if (count == 0 || largestSize == 0)
        return {};
    const std::size_t nameSize = std::size_t{longestName} + 1;
    FoundValue found;
    found.data.reset(new (std::nothrow) unsigned char[largestSize]());
    const std::unique_ptr<wchar[]> foundName(new (std::nothrow) wchar[nameSize]());
    if (!found.data || !foundName)
        return {};
    const platform::ValueWalk consistentView(key.get());
    for (ulong index = 0; index < count; ++index) {
        auto nameLength = static_cast<ulong>(nameSize);
        found.size = largestSize;
        foundName[0] = 0;
        if (platform::RegEnumValueW(key.get(), index, foundName.get(), &nameLength, nullptr, &found.type,
                                    found.data.get(), &found.size) != ERROR_SUCCESS)
            continue;
        if (found.type != type && found.type != otherType)
            continue;
        if (platform::_wcsicmp(foundName.get(), name) == 0)
            return found;
    }
    return {};
}

// The text in the data, which may lack its terminator and end in an incomplete code unit.
wstring_view TextOf(const FoundValue& value) noexcept {
    const wstring_view units(reinterpret_cast<const wchar*>(value.data.get()), value.size / sizeof(wchar));
    return units.substr(0, units.find(wchar()));
}

ulong Store(wstring_view text, wchar* buffer, ulong bufferSize) noexcept {
    if (buffer) {
        const std::size_t kept = std::min(text.size(), std::size_t{bufferSize} - 1);
        std::copy_n(text.data(), kept, buffer);
        buffer[kept] = 0;
    }
    return static_cast<ulong>(text.size());
}

ulong NumberOf(const FoundValue& value) noexcept {
    NumberBytes bytes{};
    std::copy_n(value.data.get(), std::min<std::size_t>(value.size, bytes.size()), bytes.begin());
    if (value.type == REG_DWORD_BIG_ENDIAN)
        std::reverse(bytes.begin(), bytes.end());
    return FromLittleEndian(bytes);
}

bool ReadNumberUnder(const wchar* root, const wchar* path, const wchar* valueName, ulong flags,
                     ulong& number) {
    wstring whole = root;
    if (*path != '\\')
        whole += wchar('\\');
    whole += path;
    int found = 0;
    number = registry_readNumber(nullptr, whole.c_str(), valueName, 0, &found, flags);
    return found != 0;
}

} // namespace
} // namespace corvane

using namespace corvane;

corvane::ulong registry_readString(void* key, const wchar* subKey, const wchar* valueName,
                                   const wchar* defaultValue, wchar* buffer, corvane::ulong bufferSize,
                                   corvane::ulong flags) noexcept {
    if (bufferSize == 0)
        buffer = nullptr;
    const KeyAddress address = valueName ? KeyAddress::Of(key, subKey) : KeyAddress();
    if (address.key) {
        if (buffer)
            *buffer = 0;
        if (const RegistryKey opened = OpenForReading(address, flags)) {
            const FoundValue value = FindValue(opened, valueName, REG_SZ, REG_EXPAND_SZ);
            if (value.data)
                return Store(TextOf(value), buffer, bufferSize);
        }
    }
    return defaultValue ? Store(defaultValue, buffer, bufferSize) : 0;
}

corvane::ulong registry_readNumber(void* key, const wchar* subKey, const wchar* valueName,
                                   corvane::ulong defaultValue, int* found, corvane::ulong flags) noexcept {
    FoundValue value;
    if (valueName) {
        if (const RegistryKey opened = OpenForReading(KeyAddress::Of(key, subKey), flags))
            value = FindValue(opened, valueName, REG_DWORD, REG_DWORD_BIG_ENDIAN);
    }
    if (found)
        *found = value.data ? 1 : 0;
    return value.data ? NumberOf(value) : defaultValue;
}

bool registry_readUserNumericValue(const wchar* path, const wchar* valueName, corvane::ulong* value,
                                   corvane::ulong flags) {
    corvane::ulong number = 0;
    if (!ReadNumberUnder(CORVANE_TEXT("HKEY_LOCAL_MACHINE"), path, valueName, flags, number) &&
        !ReadNumberUnder(CORVANE_TEXT("HKEY_CURRENT_USER"), path, valueName, 0, number))
        return false;
    *value = number;
    return true;
}

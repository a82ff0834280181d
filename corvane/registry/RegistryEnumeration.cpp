#include <corvane/registry/RegistryKey.h>
#include <corvane/registry/registry.h>

#include <cstdlib>
#include <exception>

using namespace corvane::platform;

namespace corvane {
namespace {

// A copy that the caller frees with `free`, with two NULs at its end; null if out of memory.
wchar* BlockOf(const wstring& names) noexcept {
    auto* const block = static_cast<wchar*>(std::calloc(names.size() + 2, sizeof(wchar)));
    if (block)
        names.copy(block, names.size());
    return block;
}

// The names of the first `count` subkeys, of which none is longer than `longestName`.
wstring JoinedNames(platform::HKEY key, ulong count, ulong longestName, wchar delimiter) {
    wstring joined;
    wstring name(std::size_t{longestName} + 1, wchar());
    for (ulong index = 0; index < count; ++index) {
        auto length = static_cast<ulong>(name.size());
        name[0] = 0;
        if (platform::RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS ||
            length == 0)
            continue;
        if (!joined.empty())
            joined += delimiter;
        joined.append(name, 0, length);
    }
    return joined;
}

} // namespace
} // namespace corvane

using namespace corvane;

wchar* registry_loadSubSectionNames(void* key, const wchar* subKey, wchar delimiter,
                                    corvane::ulong flags) noexcept {
    const RegistryKey opened = OpenForReading(KeyAddress::Of(key, subKey), flags);
    if (!opened)
        return nullptr;
    corvane::ulong count = 0;
    corvane::ulong longestName = 0;
    corvane::ulong valueCount = 0;
    if (platform::RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &count, &longestName, nullptr,
                                   &valueCount, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS ||
        count == 0)
        return nullptr;
    try {
        const wstring names = JoinedNames(opened.get(), count, longestName, delimiter);
        return names.empty() ? nullptr : BlockOf(names);
    } catch (const std::exception&) {
        return nullptr; // out of memory
    }
}

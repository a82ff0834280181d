#include <corvane/platform/linux/registry/OpenKeys.h>

#include <algorithm>
#include <utility>

namespace corvane {

using namespace platform;
using namespace os;

namespace {

constexpr std::size_t longestValueName = 16383;

template <typename Number>
void Give(ulong* out, Number number) noexcept {
    if (out)
        *out = static_cast<ulong>(number);
}

ulong CountSubkeys(OpenKey& key, ulong* count, ulong* longest) CORVANE_REQUIRES(key.mutex) {
    if (!count && !longest)
        return ERROR_SUCCESS;
    if (const ulong error = ListSubkeys(key.folder, key.subkeys))
        return error;
    std::size_t longestSize = 0;
    for (const wstring& name : key.subkeys)
        longestSize = std::max(longestSize, name.size());
    Give(count, key.subkeys.size());
    Give(longest, longestSize);
    return ERROR_SUCCESS;
}

// Needed even if no values are requested: this detects that the key was deleted.
ulong CountValues(OpenKey& key, ulong* count, ulong* longestName, ulong* largestData)
    CORVANE_REQUIRES(key.mutex) {
    if (const ulong error = key.values.Refresh(key.folder))
        return error;
    std::size_t longest = 0;
    std::size_t largest = 0;
    for (const RegistryValue& value : key.values.Values()) {
        longest = std::max(longest, value.name.size());
        largest = std::max(largest, value.data.size());
    }
    Give(count, key.values.Values().size());
    Give(longestName, longest);
    Give(largestData, largest);
    return ERROR_SUCCESS;
}

// Copies a name with its terminator; `length` includes the terminator on input and not on output.
ulong GiveName(const wstring& from, wchar* name, ulong* length) noexcept {
    if (*length <= from.size())
        return ERROR_MORE_DATA;
    std::copy_n(from.c_str(), from.size() + 1, name);
    *length = static_cast<ulong>(from.size());
    return ERROR_SUCCESS;
}

ulong GiveData(const std::string& from, unsigned char* data, ulong* size) noexcept {
    if (!size)
        return ERROR_SUCCESS;
    const ulong capacity = *size;
    *size = static_cast<ulong>(from.size());
    if (!data)
        return ERROR_SUCCESS;
    if (capacity < from.size())
        return ERROR_MORE_DATA;
    std::copy(from.begin(), from.end(), data);
    return ERROR_SUCCESS;
}

void Terminate(ulong type, std::string& data) {
    const bool isText = (type == REG_SZ || type == REG_EXPAND_SZ) && data.size() >= sizeof(wchar);
    if (isText && data.size() % sizeof(wchar) == 0 && (data.back() != 0 || data[data.size() - 2] != 0))
        data.append(sizeof(wchar), '\0');
}

} // namespace

LSTATUS platform::RegQueryInfoKeyW(HKEY key, wchar* className, ulong* classLength, ulong* reserved,
                                   ulong* subKeys, ulong* longestSubKey, ulong* longestClass, ulong* values,
                                   ulong* longestName, ulong* largestValue, ulong* security,
                                   FILETIME* lastWrite) noexcept {
    return Guarded([&]() -> ulong {
        std::shared_ptr<OpenKey> open;
        if (className || reserved || lastWrite)
            return ERROR_INVALID_PARAMETER;
        if (const ulong error = UseKey(key, KEY_QUERY_VALUE, false, open))
            return error;
        const MutexGuard guard(open->mutex);
        if (const ulong error = CountValues(*open, values, longestName, largestValue))
            return error;
        Give(classLength, 0);
        Give(longestClass, 0);
        Give(security, 0);
        return CountSubkeys(*open, subKeys, longestSubKey);
    });
}

thread_local const platform::ValueWalk* platform::ValueWalk::s_innermost = nullptr;

platform::ValueWalk::ValueWalk(HKEY key) noexcept : m_outer(std::exchange(s_innermost, this)), m_handle(key) {
    Guarded([this] { return UseKey(m_handle, KEY_QUERY_VALUE, false, m_key); });
}

platform::ValueWalk::~ValueWalk() {
    s_innermost = m_outer;
}

OpenKey* platform::ValueWalk::Held(HKEY key) noexcept {
    return s_innermost && s_innermost->m_handle == key ? s_innermost->m_key.get() : nullptr;
}

LSTATUS platform::RegEnumValueW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved,
                                ulong* type, unsigned char* data, ulong* size) noexcept {
    return Guarded([&]() -> ulong {
        if (!name || !nameLength || reserved || (data && !size))
            return ERROR_INVALID_PARAMETER;
        std::shared_ptr<OpenKey> found;
        OpenKey* open = ValueWalk::Held(key);
        const bool isWalk = open != nullptr;
        if (!isWalk) {
            if (const ulong error = UseKey(key, KEY_QUERY_VALUE, false, found))
                return error;
            open = found.get();
        }
        const MutexGuard guard(open->mutex);
        if (!isWalk || !open->values.WasRead()) {
            if (const ulong error = open->values.Refresh(open->folder))
                return error;
        }
        if (index >= open->values.Values().size())
            return ERROR_NO_MORE_ITEMS;
        const RegistryValue& value = open->values.Values()[index];
        Give(type, value.type);
        const ulong nameError = GiveName(value.name, name, nameLength);
        const ulong dataError = GiveData(value.data, data, size);
        return nameError ? nameError : dataError;
    });
}

LSTATUS platform::RegEnumKeyExW(HKEY key, ulong index, wchar* name, ulong* nameLength, ulong* reserved,
                                wchar*, ulong* classLength, FILETIME* lastWrite) noexcept {
    return Guarded([&]() -> ulong {
        std::shared_ptr<OpenKey> open;
        if (!name || !nameLength || reserved || lastWrite)
            return ERROR_INVALID_PARAMETER;
        if (const ulong error = UseKey(key, KEY_ENUMERATE_SUB_KEYS, false, open))
            return error;
        const MutexGuard guard(open->mutex);
        // A walk sees the subkeys as they were at its first index.
        if (index == 0 || open->subkeys.empty()) {
            if (open->folder.IsDeleted())
                return ERROR_KEY_DELETED;
            if (const ulong error = ListSubkeys(open->folder, open->subkeys))
                return error;
        }
        if (index >= open->subkeys.size())
            return ERROR_NO_MORE_ITEMS;
        Give(classLength, 0);
        return GiveName(open->subkeys[index], name, nameLength);
    });
}

LSTATUS platform::RegSetValueExW(HKEY key, const wchar* name, ulong reserved, ulong type,
                                 const unsigned char* data, ulong size) noexcept {
    return Guarded([&]() -> ulong {
        std::shared_ptr<OpenKey> open;
        const wstring_view valueName = name ? wstring_view(name) : wstring_view();
        if (reserved != 0 || (!data && size > 0) || valueName.size() > longestValueName)
            return ERROR_INVALID_PARAMETER;
        if (const ulong error = UseKey(key, KEY_SET_VALUE, true, open))
            return error;
        RegistryValue value(valueName);
        value.type = type;
        if (size > 0)
            value.data.assign(reinterpret_cast<const char*>(data), size);
        Terminate(type, value.data);
        return StoreValue(open->folder, std::move(value));
    });
}

} // namespace corvane

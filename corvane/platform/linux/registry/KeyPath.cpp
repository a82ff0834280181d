#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/registry/KeyPath.h>

#include <algorithm>

namespace corvane::os {

using namespace platform;

namespace {

template <typename Step>
ulong Walk(KeyFolder& key, wstring_view path, Step step) {
    if (!path.empty() && path.front() == '\\')
        return ERROR_BAD_PATHNAME;
    while (!path.empty()) {
        const wstring_view name = path.substr(0, path.find(u'\\'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.empty())
            continue;
        if (name.size() > longestKeyName)
            return ERROR_INVALID_PARAMETER;
        KeyFolder next;
        if (const ulong error = step(key, name, next))
            return error;
        key = std::move(next);
    }
    return ERROR_SUCCESS;
}

} // namespace

ulong FindPath(KeyFolder& key, wstring_view path) {
    return Walk(key, path, FindSubkey);
}

ulong CreatePath(KeyFolder& key, wstring_view path, bool& created) {
    return Walk(key, path, [&](const KeyFolder& above, wstring_view name, KeyFolder& subkey) {
        created = false;
        return CreateSubkey(above, name, subkey, created);
    });
}

} // namespace corvane::os

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/registry/OpenKeys.h>
#include <corvane/platform/linux/registry/RegistryRoots.h>

#include <unordered_map>

namespace corvane::os {

using namespace platform;

namespace {

struct Table {
    Mutex mutex;
    std::unordered_map<HKEY, std::shared_ptr<OpenKey>> keys CORVANE_GUARDED_BY(mutex);
    std::uintptr_t last CORVANE_GUARDED_BY(mutex) = 0;
};

Table& Keys() {
    static auto* const table = new Table; // never destroyed: keys may be read by destructors of statics
    return *table;
}

// Null for a handle that is not from AddOpenKey or was closed.
std::shared_ptr<OpenKey> FindOpenKey(HKEY handle) {
    Table& table = Keys();
    const MutexGuard guard(table.mutex);
    const auto found = table.keys.find(handle);
    return found == table.keys.end() ? nullptr : found->second;
}

} // namespace

HKEY AddOpenKey(const std::shared_ptr<OpenKey>& key) {
    Table& table = Keys();
    const MutexGuard guard(table.mutex);
    for (;;) {
        table.last += 4;
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle points to nothing
        auto* const handle = reinterpret_cast<HKEY>(table.last);
        if (handle && !IsRoot(handle) && table.keys.try_emplace(handle, key).second)
            return handle;
    }
}

bool CloseOpenKey(HKEY handle) {
    Table& table = Keys();
    decltype(table.keys)::node_type closed; // destroyed, with its files, after the lock is released
    const MutexGuard guard(table.mutex);
    closed = table.keys.extract(handle);
    return !closed.empty();
}

ulong UseKey(HKEY handle, ulong needed, bool create, std::shared_ptr<OpenKey>& key) {
    if (!IsRoot(handle)) {
        key = FindOpenKey(handle);
        if (!key)
            return ERROR_INVALID_HANDLE;
        return (key->access & needed) == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
    }
    key = std::make_shared<OpenKey>();
    key->access = KEY_ALL_ACCESS;
    return OpenRoot(handle, create, key->folder);
}

} // namespace corvane::os

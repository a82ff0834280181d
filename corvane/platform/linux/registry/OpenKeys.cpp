#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/registry/OpenKeys.h>
#include <corvane/platform/linux/registry/RegistryRoots.h>

#include <unordered_map>

namespace corvane::os {

using namespace platform;

namespace {

struct Table {
    Mutex mutex;
    std::unordered_map<std::uintptr_t, std::shared_ptr<OpenKey>> keys CORVANE_GUARDED_BY(mutex);
    std::uintptr_t last CORVANE_GUARDED_BY(mutex) = 0;
};

Table& Keys() {
    static auto* const table = new Table; // never destroyed: keys may be read by destructors of statics
    return *table;
}

std::uintptr_t NumberOf(HKEY handle) noexcept {
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

HKEY AddOpenKey(const std::shared_ptr<OpenKey>& key) {
    Table& table = Keys();
    const MutexGuard guard(table.mutex);
    for (;;) {
        table.last += 4;
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle points to nothing
        auto* const handle = reinterpret_cast<HKEY>(table.last);
        if (handle && !IsRoot(handle) && table.keys.try_emplace(table.last, key).second)
            return handle;
    }
}

std::shared_ptr<OpenKey> FindOpenKey(HKEY handle) {
    Table& table = Keys();
    const MutexGuard guard(table.mutex);
    const auto found = table.keys.find(NumberOf(handle));
    return found == table.keys.end() ? nullptr : found->second;
}

bool CloseOpenKey(HKEY handle) {
    Table& table = Keys();
    decltype(table.keys)::node_type closed; // destroyed, with its files, after the lock is released
    const MutexGuard guard(table.mutex);
    closed = table.keys.extract(NumberOf(handle));
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

#include <corvane/registry/RootKey.h>
#include <corvane/registry/registry.h>

#include <atomic>

using namespace corvane::platform;

namespace corvane {
namespace {

using DeleteKeyEx = decltype(&platform::RegDeleteKeyExW);

constexpr int nothingToDelete = 32768;

DeleteKeyEx LookUpDeleteKeyEx() noexcept {
    const auto module = platform::GetModuleHandleW(CORVANE_TEXT("Advapi32.dll"));
    if (!module)
        return nullptr;
    const auto address = platform::GetProcAddress(module, "RegDeleteKeyExW");
    return reinterpret_cast<DeleteKeyEx>(reinterpret_cast<void*>(address));
}

// Looked up once per process, even if it is missing. Two threads may both look it up at first, with the same
// result.
DeleteKeyEx FindDeleteKeyEx() noexcept {
    static std::atomic<bool> wasLookedUp{false};
    static std::atomic<DeleteKeyEx> deleteKeyEx{nullptr};
    if (!wasLookedUp.load(std::memory_order_acquire)) {
        deleteKeyEx.store(LookUpDeleteKeyEx(), std::memory_order_relaxed);
        wasLookedUp.store(true, std::memory_order_release);
    }
    return deleteKeyEx.load(std::memory_order_relaxed);
}

} // namespace
} // namespace corvane

using namespace corvane;

int registry_deleteKey(void* key, const wchar* subKey) noexcept {
    if (!subKey)
        return nothingToDelete;
    auto parent = static_cast<HKEY>(key);
    if (!parent)
        parent = registry_parseRootKey(subKey, &subKey);
    if (!parent || !subKey)
        return nothingToDelete;
    const DeleteKeyEx deleteKeyEx = FindDeleteKeyEx();
    const auto status =
        deleteKeyEx ? deleteKeyEx(parent, subKey, 0, 0) : platform::RegDeleteKeyW(parent, subKey);
    platform::RegCloseKey(parent);
    return static_cast<int>(status);
}

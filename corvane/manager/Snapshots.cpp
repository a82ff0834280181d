// Snapshots: the source copies the store; the manager adds the lock and the load after a restore.
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/manager/StillLoaded.h>

using corvane::Fail;
using corvane::Log;
using corvane::wstring;

int ConfigManager::CreateSnapshot(wstring& snapshotName) {
    const ThreadLockGuard guard(m_lock);
    if (!m_source)
        return Fail("ConfigManager::CreateSnapshot", __LINE__);
    const auto source = m_source; // kept alive even if a log sink makes the program load
    return source->CreateSnapshot(snapshotName);
}

int ConfigManager::RestoreSnapshot(const wstring& snapshotName) {
    static constexpr const char* function = "ConfigManager::RestoreSnapshot";
    const ThreadLockGuard guard(m_lock);
    const auto source = m_source; // kept alive even if a log sink makes the program load
    if (!source)
        return Fail(function, __LINE__);
    const corvane::wchar* const name = source->GetConfigName();
    Log().logProgress(CORVANE_TEXT("Restoring snapshot file '%s' to active config '%s'"),
                      snapshotName.c_str(), name);
    if (const std::int32_t code = source->RestoreSnapshot(snapshotName))
        return failure_report(code, CORVANE_TEXT("failed to restore config snapshot"), configChannel,
                              function, __LINE__);
    Log().logProgress(CORVANE_TEXT("Snapshot restored, updating configuration from '%s'"), name);
    if (!corvane::StillLoaded(m_source.get(), *source))
        return 0; // keep what the program has loaded meanwhile
    constexpr int reload = -1;
    if (const int code = Update(name, reload))
        return failure_report(code, CORVANE_TEXT("failed to update active configuration"), configChannel,
                              function, __LINE__);
    return 0;
}

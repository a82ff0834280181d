// Back to the file as it was, unless told otherwise.
#pragma once

#include <corvane/manager/ConfigManager.h>

#include <filesystem>

namespace corvane {

/// Takes a snapshot of the file and restores it at the end of its scope, on whatever way out, unless Keep was
/// called: for trying settings out, in a file that only this program writes. It is not for saving several
/// values: changes that others make to the file meanwhile are undone too, and a process that is killed
/// restores nothing; WriteBatch is for that. The snapshot is removed with the guard; it stays beside the file
/// if it could not be restored, and the log says why.
class SnapshotGuard {
public:
    /// `config`, which has a file loaded, has to outlive the guard.
    explicit SnapshotGuard(ConfigManager& config)
        : m_config(config), m_made(config.CreateSnapshot(m_snapshot) == 0) {}
    SnapshotGuard(const SnapshotGuard&) = delete;
    SnapshotGuard& operator=(const SnapshotGuard&) = delete;
    ~SnapshotGuard() {
        try {
            if (m_made && (m_keep || m_config.RestoreSnapshot(m_snapshot) == 0))
                Remove();
        } catch (...) { // NOLINT(bugprone-empty-catch): no memory to restore with; the snapshot stays
        }
    }

    /// Whether the snapshot was made. Without one nothing will be restored.
    explicit operator bool() const noexcept { return m_made; }

    /// The changes shall stay.
    void Keep() noexcept { m_keep = true; }

private:
    void Remove() {
        std::error_code ignored;
        std::filesystem::remove(std::filesystem::path(m_snapshot), ignored);
    }

    ConfigManager& m_config;
    wstring m_snapshot;
    bool m_made;
    bool m_keep = false;
};

} // namespace corvane

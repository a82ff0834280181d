// Restores a file unless its changes are kept.
#pragma once

#include <corvane/manager/ConfigManager.h>

#include <filesystem>

namespace corvane {

/// Takes a snapshot of the file and restores it at the end of the scope, however it is left, unless Keep was
/// called: for trying out settings in a file that only this program writes. Not for saving several values:
/// changes that others make to the file meanwhile are undone too, and a killed process restores nothing; use
/// WriteBatch. The snapshot is removed with the guard; if it could not be restored, it stays beside the file
/// and the log has the error. Not thread-safe.
class SnapshotGuard {
public:
    /// `config`, which must have a file loaded, must outlive the guard.
    explicit SnapshotGuard(ConfigManager& config)
        : m_config(config), m_made(config.CreateSnapshot(m_snapshot) == 0) {}
    SnapshotGuard(const SnapshotGuard&) = delete;
    SnapshotGuard& operator=(const SnapshotGuard&) = delete;
    ~SnapshotGuard() {
        try {
            std::error_code ignored;
            if (m_made && (m_keep || m_config.RestoreSnapshot(m_snapshot) == 0))
                std::filesystem::remove(std::filesystem::path(m_snapshot), ignored);
        } catch (...) { // NOLINT(bugprone-empty-catch): no memory to restore with; the snapshot stays
        }
    }

    /// Whether the snapshot was taken. Without one, nothing will be restored.
    explicit operator bool() const noexcept { return m_made; }

    /// Keeps the changes.
    void Keep() noexcept { m_keep = true; }

private:
    ConfigManager& m_config;
    wstring m_snapshot;
    bool m_made;
    bool m_keep = false;
};

} // namespace corvane

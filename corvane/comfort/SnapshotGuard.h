// All or nothing for a series of changes: back to the file as it was, unless told otherwise.
#pragma once

#include <corvane/manager/ConfigManager.h>

#include <filesystem>

namespace corvane {

/// Takes a snapshot of the file and restores it at the end of its scope, on whatever way out, unless Keep was
/// called. The snapshot goes with the guard; it stays beside the file if it could not be restored, and the
/// log says why. Changes that others make to the file meanwhile go back too.
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

// A changed copy that replaces a settings file, unless the file has changed since it was copied.
#pragma once

#include "SettingsFile.h"

class Replacement {
public:
    /// Copies the file to its folder. Throws Failure.
    explicit Replacement(SettingsFile& file);
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    /// Removes the copy, unless it is kept.
    ~Replacement();

    const std::string& Path() const { return m_copy; }
    /// The text as it was copied.
    const std::string& Original() const { return m_original; }

    /// Replaces the file with the copy. Throws Failure, and keeps the copy, if it cannot be loaded or the
    /// file has changed in the meantime.
    void Commit();

private:
    [[noreturn]] void Refuse(const std::string& reason);

    SettingsFile& m_file;
    std::string m_copy;
    std::string m_original;
    bool m_keep = false;
};

/// Copies the file and returns the name of the copy. Throws Failure.
std::string Snapshot(ConfigManager& config);

/// Replaces the file with a copy that can be loaded. Throws Failure.
void Restore(ConfigManager& config, const std::string& snapshot);

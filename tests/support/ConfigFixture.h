// A settings file in a folder of its own, a manager, and the log.
#pragma once

#include "LogCapture.h"

#include <corvane/config.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

/// A folder that goes with its owner.
class TemporaryFolder {
public:
    TemporaryFolder()
        : m_path(fs::temp_directory_path() / ("corvane-" + std::to_string(std::random_device()()))) {
        fs::create_directory(m_path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    const fs::path& Path() const { return m_path; }

private:
    fs::path m_path;
};

inline void WriteFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

inline std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Moves the file's modification time by whole seconds, as a change by another program would.
inline void MoveTime(const fs::path& path, int seconds) {
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(seconds));
}

inline corvane::wstring Wide(const std::string& text) {
    return corvane::ToWide(text);
}

inline corvane::wstring WidePath(const fs::path& path) {
    return Wide(path.u8string());
}

class ConfigFixture : public testing::Test {
protected:
    /// Replaces the file's content, in a later second than before.
    void Put(const std::string& content) {
        const bool existed = fs::exists(file);
        const auto before = existed ? fs::last_write_time(file) : fs::file_time_type();
        WriteFile(file, content);
        if (existed)
            fs::last_write_time(file, before + std::chrono::seconds(2));
    }

    int Load(int reloadPolicy = 0) { return manager.Update(WidePath(file).c_str(), reloadPolicy); }

    /// Loads `content`, which has to work, and forgets the log.
    void Start(const std::string& content) {
        Put(content);
        ASSERT_EQ(Load(-1), 0);
        log.Take();
    }

    int Set(const std::string& key, const std::string& value, bool cacheOnly = false) {
        return manager.SetValue(Wide(key), Wide(value), cacheOnly);
    }
    int Delete(const std::string& key) { return manager.DeleteValue(Wide(key)); }
    bool Exists(const std::string& key) const { return manager.Exists(Wide(key)); }

    /// The value of the key, or "<none>".
    std::string Get(const std::string& key) {
        corvane::wstring value = CORVANE_TEXT("untouched");
        if (manager.GetValue(Wide(key), value) == 0)
            return corvane::ToUtf8(value);
        EXPECT_EQ(corvane::ToUtf8(value), "untouched");
        return "<none>";
    }

    /// The sections, or with a key the tags of its section, joined by commas.
    std::string List() const {
        std::vector<corvane::wstring> names;
        manager.EnumerateSubKeys(names);
        return Join(names);
    }
    std::string List(const std::string& key) const {
        std::vector<corvane::wstring> names;
        manager.EnumerateTags(Wide(key), names);
        return Join(names);
    }

    static std::string Join(const std::vector<corvane::wstring>& names) {
        std::string joined;
        for (const auto& name : names)
            joined += (joined.empty() ? "" : ",") + corvane::ToUtf8(name);
        return joined;
    }

    TemporaryFolder folder;
    fs::path file = folder.Path() / "settings.cfg";
    LogCapture log;
    ConfigManager manager;
};

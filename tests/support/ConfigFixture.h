// A settings file in a folder of its own, a manager, and the log.
#pragma once

#include "Differences.h"
#include "LogCapture.h"
#include "TemporaryFolder.h"

#include <corvane/comfort.h>
#include <corvane/sources/IConfigSource.h>

#include <chrono>
#include <gtest/gtest.h>

using namespace corvane::test;

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
        std::error_code isNew;
        const auto before = fs::last_write_time(file, isNew);
        WriteFile(file, content);
        if (!isNew)
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
    std::string List(const std::optional<std::string>& key = {}) const {
        std::vector<corvane::wstring> names;
        key ? manager.EnumerateTags(Wide(*key), names) : manager.EnumerateSubKeys(names);
        return Join(names);
    }

    static std::string Join(const std::vector<corvane::wstring>& names) {
        std::string joined;
        for (const auto& name : names)
            joined.append(joined.empty() ? 0 : 1, ',').append(corvane::ToUtf8(name));
        return joined;
    }

    auto FilesInFolder() const { return std::distance(fs::directory_iterator(folder.Path()), {}); }

    TemporaryFolder folder;
    fs::path file = folder.Path() / "settings.cfg";
    LogCapture log;
    ConfigManager manager;
};

// What becomes of cache-only values and of the file at snapshots and restores. At reloads, the fuzz target
// `manager` shows it.
#include "support/ConfigFixture.h"

#include <cerrno>

namespace {

class Survival : public ConfigFixture {};

TEST_F(Survival, OfTheFileInASnapshot) {
    Start("; kept\n[Mail]\nPort=25\n");
    const std::string name = file.u8string();
    corvane::wstring first;
    corvane::wstring second;
    ASSERT_EQ(manager.CreateSnapshot(first), 0);
    ASSERT_EQ(manager.CreateSnapshot(second), 0);
    EXPECT_EQ(second, Wide(name + ".1"));
    fs::remove(name + ".0");
    ASSERT_EQ(manager.CreateSnapshot(first), 0);
    EXPECT_EQ(first, Wide(name + ".0")) << "the lowest free number again";

    ASSERT_EQ(Set("Mail:Port", "26"), 0);
    ASSERT_EQ(Set("_$CACHE$_:t", "kept"), 0);
    log.Take();
    MoveTime(name + ".1", -1000);
    EXPECT_EQ(manager.RestoreSnapshot(second), 0);
    EXPECT_GT(fs::last_write_time(file), fs::last_write_time(name + ".1"));
    EXPECT_EQ(log.Take(), (Lines{"Restoring snapshot file '" + name + ".1' to active config '" + name + "'",
                                 "Snapshot restored, updating configuration from '" + name + "'",
                                 "loading config from '" + name + "'"}));
    EXPECT_EQ(Get("Mail:Port") + Get("_$CACHE$_:t"), "25kept");
    EXPECT_EQ(Bytes(file), "; kept\n[Mail]\nPort=25\n");
}

TEST_F(Survival, OfAFailedRestore) {
    const std::string byManager = " at func: ConfigManager::RestoreSnapshot";
    corvane::wstring name = CORVANE_TEXT("before");
    EXPECT_EQ(manager.CreateSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(manager.RestoreSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(log.Take(),
              (Lines{"Error 32768 at func: ConfigManager::CreateSnapshot", "Error 32768" + byManager}));

    Start("[Mail]\nPort=25\n");
    const fs::path snapshot = folder.Path() / "snapshot";
    const auto refuses = [&](const fs::path& path, int code, const std::string& reason) {
        EXPECT_EQ(manager.RestoreSnapshot(WidePath(path)), code) << path;
        const std::string error = "Error " + std::to_string(code) + " \"";
        Lines lines = log.Take();
        lines.erase(lines.begin());
        EXPECT_EQ(lines, (Lines{error + reason + "\" at func: ConfigFile::RestoreSnapshot",
                                error + "failed to restore config snapshot\"" + byManager}));
    };
    refuses(snapshot, ENOENT, "cannot access the specified snapshot file");
    fs::create_hard_link(file, folder.Path() / "hard");
    for (const fs::path& itself : {file, folder.Path() / "." / "settings.cfg", folder.Path() / "hard"})
        refuses(itself, FAILURE_GENERAL, "failed to copy snapshot configuration to active configuration");
    fs::remove(folder.Path() / "hard");
    WriteFile(snapshot, "no section\n");
    EXPECT_EQ(manager.RestoreSnapshot(WidePath(snapshot)), FAILURE_GENERAL);
    EXPECT_EQ(log.Take().back(), "Error 32768 \"failed to update active configuration\"" + byManager);
    EXPECT_EQ(Get("Mail:Port"), "25");
    EXPECT_EQ(Bytes(file), "no section\n"); // no way back is taken

    fs::remove(file);
    EXPECT_EQ(manager.CreateSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(log.Take(), Lines{"Error 32768 \"failed to copy the active configuration to the snapshot\" at "
                                "func: ConfigFile::CreateSnapshot"});
    EXPECT_EQ(name, CORVANE_TEXT("before"));
}

} // namespace

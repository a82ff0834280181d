// What becomes of cache-only values and of the file at reloads, snapshots and restores.
#include "support/ConfigFixture.h"

#include <cerrno>

namespace {

class Survival : public ConfigFixture {
protected:
    /// Cache-only values in a section that the file may gain or not.
    void Prepare(bool reserved) {
        Start("[Mail]\nPort=25\n");
        ASSERT_EQ(Set("Extra:lone", "1", true), 0);
        ASSERT_EQ(Set("Extra:met", "2"), 0);
        ASSERT_EQ(Set("Gone:tag", "3", true), 0);
        ASSERT_TRUE(!reserved || Set("_$CACHE$_:t", "4", true) == 0);
    }
    std::string State() { return List() + " " + Get("extra:lone") + " " + Get("extra:met"); }
};

TEST_F(Survival, FollowsNameAndReservedSection) {
    const struct {
        bool sameName, reserved;
        const char* state;
    } rows[] = {{true, true, "_$CACHE$_,EXTRA,Mail 1 file"},
                {true, false, "EXTRA,Mail 1 file"},
                {false, true, "_$CACHE$_,EXTRA,Mail <none> file"},
                {false, false, "EXTRA,Mail 1 file"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.state);
        manager = ConfigManager();
        Prepare(row.reserved);
        if (!row.sameName)
            file = folder.Path() / (row.reserved ? "with.cfg" : "without.cfg");
        Put("[Mail]\nPort=26\n[EXTRA]\nmet=file\n");
        for (int reloads = 0; reloads < 2; ++reloads) {
            EXPECT_EQ(Load(-1), 0);
            EXPECT_EQ(State(), row.state);
        }
        EXPECT_EQ(Get("_$CACHE$_:t"), row.reserved ? "4" : "<none>");
        file = folder.Path() / "settings.cfg";
    }
    manager = ConfigManager(); // and where a source takes the place of the reserved section
    Prepare(true);
    Put("[_$Cache$_]\nother=file\n");
    EXPECT_EQ(Load(), 0);
    EXPECT_EQ(List("_$CACHE$_:"), "other");
}

TEST_F(Survival, OfTheFileInASnapshot) {
    Start("; kept\n[Mail]\nPort=25\n");
    corvane::wstring first;
    corvane::wstring second;
    ASSERT_EQ(manager.CreateSnapshot(first), 0);
    ASSERT_EQ(manager.CreateSnapshot(second), 0);
    EXPECT_EQ(first, WidePath(file) + CORVANE_TEXT(".0"));
    EXPECT_EQ(second, WidePath(file) + CORVANE_TEXT(".1"));
    ASSERT_EQ(Set("Mail:Port", "26"), 0);
    ASSERT_EQ(Set("Mail:New", "x"), 0);
    ASSERT_EQ(Set("Temp:a", "x", true), 0);
    ASSERT_EQ(Set("_$CACHE$_:t", "kept"), 0);
    fs::remove(file.u8string() + ".0");
    ASSERT_EQ(manager.CreateSnapshot(first), 0); // the lowest free number again
    EXPECT_EQ(first, WidePath(file) + CORVANE_TEXT(".0"));

    log.Take();
    for (int restores = 0; restores < 2; ++restores) {
        EXPECT_EQ(manager.RestoreSnapshot(second), 0);
        const std::string name = file.u8string();
        EXPECT_EQ(log.Take(),
                  (Lines{"Restoring snapshot file '" + name + ".1' to active config '" + name + "'",
                         "Snapshot restored, updating configuration from '" + name + "'",
                         "loading config from '" + name + "'"}));
        EXPECT_EQ(List() + " " + List("Mail:"), "_$CACHE$_,Mail Port");
        EXPECT_EQ(Get("Mail:Port") + Get("_$CACHE$_:t"), "25kept");
        EXPECT_EQ(Bytes(file), "; kept\n[Mail]\nPort=25\n");
        ASSERT_EQ(Set("Mail:Port", "27"), 0);
    }
}

TEST_F(Survival, OfAFailedRestore) {
    const std::string manages = " at func: ConfigManager::RestoreSnapshot";
    const std::string file2 = "Error 2 \"cannot access the specified ";
    corvane::wstring name = CORVANE_TEXT("before");
    EXPECT_EQ(manager.CreateSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(manager.RestoreSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(name, CORVANE_TEXT("before"));
    EXPECT_EQ(log.Take(),
              (Lines{"Error 32768 at func: ConfigManager::CreateSnapshot", "Error 32768" + manages}));

    Start("[Mail]\nPort=25\n");
    const fs::path snapshot = folder.Path() / "snapshot";
    const auto restore = [&] {
        const int result = manager.RestoreSnapshot(WidePath(snapshot));
        Lines lines = log.Take();
        EXPECT_FALSE(lines.empty());
        lines.erase(lines.begin());
        EXPECT_EQ(Get("Mail:Port"), "25");
        return std::pair(result, lines);
    };
    EXPECT_EQ(restore(),
              std::pair(ENOENT, Lines{file2 + "snapshot file\" at func: ConfigFile::RestoreSnapshot",
                                      "Error 2 \"failed to restore config snapshot\"" + manages}));
    WriteFile(snapshot, "no section\n");
    const auto [result, lines] = restore();
    EXPECT_EQ(result, FAILURE_GENERAL);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[2], "failed to get sections from new config source");
    EXPECT_EQ(lines[5], "Error 32768 \"failed to update active configuration\"" + manages);
    EXPECT_EQ(Bytes(file), "no section\n"); // no way back is taken

    fs::remove(file);
    EXPECT_EQ(manager.CreateSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(log.Take(), Lines{"Error 32768 \"failed to copy the active configuration to the snapshot\" at "
                                "func: ConfigFile::CreateSnapshot"});
    EXPECT_EQ(name, CORVANE_TEXT("before"));
}

} // namespace

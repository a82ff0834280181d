// Copies of files that somebody else may not read, in places that somebody else may have prepared.
#include <corvane/config.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <fcntl.h>
#include <linux/TestFolder.h>

namespace {

using namespace corvane::platform;
using namespace corvane::test;
using corvane::ToWide;
using corvane::wstring;

class Snapshot : public TestFolder {
protected:
    Snapshot() : m_umask(::umask(0)) {}
    ~Snapshot() override { ::umask(m_umask); }

    const mode_t m_umask;
};

TEST_F(Snapshot, OfAPrivateFileIsPrivateAndGoesThroughNoLink) {
    Make("f", "[s]\na=secret\n", 0600);
    ConfigManager manager;
    wstring snapshot;
    ASSERT_EQ(manager.Update(ToWide(Path("f")).c_str(), 0), 0);
    ASSERT_EQ(manager.CreateSnapshot(snapshot), 0);
    EXPECT_EQ(ModeOf(Path("f.0")), 0600U);
    ASSERT_EQ(::chmod(Path("f.0").c_str(), 0666), 0);
    ASSERT_EQ(manager.RestoreSnapshot(snapshot), 0);
    EXPECT_EQ(ModeOf(Path("f")), 0600U);

    fs::create_symlink(Make("victim", "untouched"), Path("f.1"));
    fs::create_hard_link(Path("victim"), Path("f.2"));
    ASSERT_EQ(manager.CreateSnapshot(snapshot), 0);
    EXPECT_EQ(corvane::ToUtf8(snapshot), Path("f.3"));
    fs::create_symlink("nowhere", Path("f.4"));
    EXPECT_EQ(manager.CreateSnapshot(snapshot), FAILURE_GENERAL);
    EXPECT_FALSE(fs::exists(Path("nowhere")));
    EXPECT_EQ(Bytes(Path("victim")), "untouched");
}

TEST_F(Snapshot, KeepsTheTimeAndOpensNoPrivateFile) {
    struct Row {
        mode_t source, target; // a target without rights is not there, and gets those of the source
        bool hardLink;
    };
    for (const Row& row : {Row{0600, 0, false}, Row{0666, 0, false}, Row{0444, 0644, false},
                           Row{0644, 0600, false}, Row{0640, 0604, true}}) {
        const timespec times[] = {{1'000'000'000, 0}, {1'000'000'000, 5}};
        ::utimensat(AT_FDCWD, Make("f", std::string("a\0b\r\n", 5), row.source).c_str(), times, 0);
        if (row.target)
            fs::create_symlink(Make("g", "old", row.target), Path("l"));
        if (row.hardLink)
            fs::create_hard_link(Path("g"), Path("h"));
        const wstring to = ToWide(Path(row.target ? "l" : "g"));
        EXPECT_TRUE(CopyFileW(ToWide(Path("f")).c_str(), to.c_str(), row.target == 0));
        EXPECT_EQ(Bytes(Path(row.hardLink ? "h" : "g")), std::string("a\0b\r\n", 5));
        EXPECT_EQ(ModeOf(Path("g")), row.target ? row.target : row.source);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_sec, 1'000'000'000);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_nsec, 5);
        EXPECT_EQ(fs::is_symlink(Path("l")), row.target != 0);
        for (const char* name : {"f", "g", "l", "h"})
            fs::remove(Path(name));
        EXPECT_EQ(EntryCount(), 0U) << "a temporary file was left";
    }
}

} // namespace

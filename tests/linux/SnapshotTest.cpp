// Copies of files that somebody else may not read, in places that somebody else may have prepared.
#include <corvane/config.h>

#include <fcntl.h>
#include <linux/TestFolder.h>

namespace corvane::test {
namespace {

using namespace platform;

class Snapshot : public TestFolder {};

TEST_F(Snapshot, GoesThroughNoLink) {
    ConfigManager manager;
    wstring snapshot;
    ASSERT_EQ(manager.Update(ToWide(Make("f", "[s]\n")).c_str(), 0), 0);
    fs::create_symlink(Make("victim", "untouched"), Path("f.0"));
    fs::create_hard_link(Path("victim"), Path("f.1"));
    ASSERT_EQ(manager.CreateSnapshot(snapshot), 0);
    EXPECT_EQ(ToUtf8(snapshot), Path("f.2"));
    fs::create_symlink("nowhere", Path("f.3"));
    EXPECT_EQ(manager.CreateSnapshot(snapshot), FAILURE_GENERAL);
    EXPECT_FALSE(fs::exists(Path("nowhere")));
    EXPECT_EQ(Bytes(Path("victim")), "untouched");
}

TEST_F(Snapshot, KeepsTheTimeAndOpensNoPrivateFile) {
    const mode_t mask = ::umask(0);
    using Row = std::tuple<mode_t, mode_t, bool>;
    // A target without rights is not there, and gets those of the source.
    for (const auto& [source, target, hardLink] :
         {Row(0600, 0, false), Row(0666, 0, false), Row(0444, 0644, false), Row(0644, 0600, false),
          Row(0640, 0604, true)}) {
        const timespec times[] = {{1'000'000'000, 0}, {1'000'000'000, 5}};
        ::utimensat(AT_FDCWD, Make("f", std::string("a\0b\r\n", 5), source).c_str(), times, 0);
        if (target)
            fs::create_symlink(Make("g", "old", target), Path("l"));
        if (hardLink)
            fs::create_hard_link(Path("g"), Path("h"));
        const wstring to = ToWide(Path(target ? "l" : "g"));
        EXPECT_TRUE(CopyFileW(ToWide(Path("f")).c_str(), to.c_str(), target == 0));
        EXPECT_EQ(Bytes(Path(hardLink ? "h" : "g")), std::string("a\0b\r\n", 5));
        EXPECT_EQ(ModeOf(Path("g")), target ? target : source);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_sec, 1'000'000'000);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_nsec, 5);
        EXPECT_EQ(fs::is_symlink(Path("l")), target != 0);
        for (const char* name : {"f", "g", "l", "h"})
            fs::remove(Path(name));
        EXPECT_EQ(EntryCount(), 0U) << "a temporary file was left";
    }
    ::umask(mask);
}

} // namespace
} // namespace corvane::test

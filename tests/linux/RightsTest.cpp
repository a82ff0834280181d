// What a user without privileges may do to files of others and of their own; copies of files that somebody
// else may not read, in places that somebody else may have prepared.
#include "TestFolder.h"

#include <corvane/comfort.h>

#include <fcntl.h>
#include <sys/xattr.h>

namespace corvane::test {
namespace {

class Rights : public TestFolder {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "only root can become another user";
        ASSERT_EQ(::chmod(Path(".").c_str(), 0755), 0);
    }
};

TEST_F(Rights, ThatAreMissingAreNamedByALoad) {
    ASSERT_EQ(::mkdir(Path("closed").c_str(), 0700), 0);
    const std::pair<std::string, const char*> rows[] = {
        {Make("a", "[s]\n", 0222), "it may not be read: Permission denied"},
        {Make("b", "[s]\n", 0444),
         "it can be read but not written, and loading needs both: Permission denied"},
        {Make("closed/c", "[s]\n", 0666), "it cannot be reached: Permission denied"},
        {"/dev/null", "it is no regular file"}};
    AsNobody([&rows] {
        for (const auto& [path, cause] : rows) {
            ConfigManager config;
            EXPECT_EQ(Load(config, path).reason, "cannot load '" + path + "': " + cause);
        }
    });
}

// Files that everyone may write, in folders that only some may, are written in place. One of the caller's own
// that is read-only is not written through the folder behind its back.
TEST_F(Rights, OfTheFileDecideAboutAWrite) {
    ASSERT_EQ(::mkdir(Path("sticky").c_str(), 0) + ::chmod(Path("sticky").c_str(), 01777), 0);
    const std::string readOnly = Make("sticky/own", "[s]\n", 0444);
    ASSERT_EQ(::chown(readOnly.c_str(), nobody, nobody), 0);
    for (const auto& [file, error] : {std::pair(Make("open", "[s]\n", 0666), 0U),
                                      {Make("sticky/f", "[s]\n", 0666), 0U},
                                      {Make("closed", "[s]\n", 0644), 5U},
                                      {readOnly, 5U},
                                      {Path("new"), 5U}}) {
        const std::string before = Bytes(file);
        AsNobody([&file = file, &error = error] { EXPECT_EQ(WriteError("a", "1", file), error) << file; });
        EXPECT_EQ(Bytes(file), error ? before : "[s]\na=1\n") << file;
    }
    EXPECT_EQ(StatusOf(Path("sticky/f")).st_uid, 0U);
}

TEST_F(Rights, OfTheFileStayInARestore) {
    ASSERT_EQ(::chmod(Path(".").c_str(), 0777), 0);
    // The file's group is none of its owner's.
    for (const auto& [mode, ofSnapshot] :
         {std::pair(0640U, 0600U), {0664U, 0644U}, {0604U, 0600U}, {0666U, 0666U}}) {
        const std::string file = Make("f", "[s]\na=1\n", mode);
        ASSERT_EQ(::chown(file.c_str(), nobody, 4321), 0);
        const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
        const mode_t mask = ::umask(0);
        AsNobody([&file, ofSnapshot = ofSnapshot] {
            ConfigManager manager;
            wstring snapshot;
            EXPECT_EQ(manager.Update(ToWide(file).c_str(), 0) + manager.CreateSnapshot(snapshot), 0);
            EXPECT_EQ(ModeOf(file + ".0"), ofSnapshot);
            EXPECT_EQ(manager.SetValue(u"s:a", u"2") + ::chmod((file + ".0").c_str(), 0444), 0);
            EXPECT_EQ(manager.RestoreSnapshot(snapshot), 0);
        });
        ::umask(mask);
        const struct stat after = StatusOf(file);
        EXPECT_EQ(ModeOf(file), mode);
        EXPECT_EQ(after.st_uid + after.st_gid, nobody + 4321);
        EXPECT_TRUE(!attributes || ::getxattr(file.c_str(), "user.note", nullptr, 0) == 4);
        EXPECT_EQ(Bytes(file), "[s]\na=1\n");
        fs::remove(file);
        fs::remove(file + ".0");
    }
}

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
        EXPECT_TRUE(platform::CopyFileW(ToWide(Path("f")).c_str(), to.c_str(), target == 0));
        EXPECT_EQ(Bytes(Path(hardLink ? "h" : "g")), std::string("a\0b\r\n", 5));
        EXPECT_EQ(ModeOf(Path("g")), target ? target : source);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_sec, 1'000'000'000);
        EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_nsec, 5);
        EXPECT_EQ(fs::is_symlink(Path("l")), target != 0);
        for (const char* name : {"f", "g", "l", "h"})
            fs::remove(Path(name));
        EXPECT_EQ(EntryCount(), 0) << "a temporary file was left";
    }
    ::umask(mask);
}

} // namespace
} // namespace corvane::test

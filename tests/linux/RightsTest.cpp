// What a user without privileges may do to files of others and of their own.
#include "TestFolder.h"

#include <corvane/comfort.h>
#include <corvane/platform/linux/LinuxPlatform.h>

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
        AsNobody([&file = file, &error = error] {
            const int done = platform::WritePrivateProfileStringA("s", "a", "1", file.c_str());
            EXPECT_EQ(done ? 0U : platform::GetLastError(), error) << file;
        });
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

} // namespace
} // namespace corvane::test

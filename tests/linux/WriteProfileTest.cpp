#include <corvane/platform/linux/files/FileUpdate.h>

#include <linux/TestFolder.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class WriteProfile : public TestFolder {};

TEST_F(WriteProfile, SaysWhyItIsRefusedAsAReadDoes) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", Path("loop"));
    fs::create_symlink("/dev/zero", Path("device"));
    ASSERT_EQ(::truncate(Make("huge", "").c_str(), (1L << 30) + 1), 0);
    ASSERT_EQ(::truncate(Make("more than 32 bits", "").c_str(), (1LL << 32) + 1), 0);
    const std::string longest(255, 'x');
    using Row = std::pair<std::string, ulong>;
    char buffer[8];
    for (const auto& [name, error] :
         {Row("none/f", ERROR_PATH_NOT_FOUND), Row("huge/f", ERROR_PATH_NOT_FOUND),
          Row(".", ERROR_ACCESS_DENIED), Row("pipe", ERROR_ACCESS_DENIED), Row("device", ERROR_ACCESS_DENIED),
          Row("loop", ERROR_ACCESS_DENIED), Row("huge", ERROR_FILE_TOO_LARGE),
          Row("more than 32 bits", ERROR_FILE_TOO_LARGE), Row(longest + "x", ERROR_FILENAME_EXCED_RANGE),
          Row(longest, 0)}) {
        EXPECT_EQ(WriteError("a", "1", Path(name)), error) << name;
        GetPrivateProfileStringA(nullptr, nullptr, nullptr, buffer, 8, Path(name).c_str());
        EXPECT_EQ(GetLastError(), error) << name;
    }
}

TEST_F(WriteProfile, MakesNoFileThatIsTooLargeToRead) {
    const std::string file = Make("f", "[s]\n");
    const std::string part(1 << 20, 'x');
    os::FileUpdate update;
    ASSERT_EQ(update.Begin(file, os::FileUpdate::Missing::Refuse), ERROR_SUCCESS);
    os::TextFragments text(1024, part);
    text.emplace_back("x");
    EXPECT_EQ(update.Commit(text), ERROR_FILE_TOO_LARGE);
    EXPECT_EQ(fs::file_size(file), 4U);
}

TEST_F(WriteProfile, KeepsModeOwnerAndAttributes) {
    const bool root = ::geteuid() == 0;
    const std::string file = Make("f", "[s]\n", 0642);
    ASSERT_TRUE(!root || ::chown(file.c_str(), 1234, 4321) == 0);
    const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
    const ino_t inode = StatusOf(file).st_ino;
    EXPECT_EQ(WriteError("a", "1", file), ERROR_SUCCESS);
    const struct stat after = StatusOf(file);
    EXPECT_NE(after.st_ino, inode) << "replaced, not overwritten";
    EXPECT_EQ(ModeOf(file), 0642U);
    EXPECT_TRUE(!root || (after.st_uid == 1234 && after.st_gid == 4321));
    EXPECT_TRUE(!attributes || ::getxattr(file.c_str(), "user.note", nullptr, 0) == 4);
    EXPECT_EQ(WriteError(" A ", "1", file), ERROR_SUCCESS);
    EXPECT_EQ(StatusOf(file).st_ino, after.st_ino) << "an unchanged file is left alone";
    const mode_t old = ::umask(027);
    EXPECT_EQ(WriteError("a", "1", Path("new")), ERROR_SUCCESS);
    ::umask(old);
    EXPECT_EQ(ModeOf(Path("new")), 0640U);
    EXPECT_EQ(EntryCount(), 2) << "a temporary file was left";
}

TEST_F(WriteProfile, LeavesWhatHasNoUtf8Alone) {
    const std::string text = "[\uFFFD]\na=1\n[s]\n\uFFFD=2\n";
    const std::string file = Make("f", text);
    const char16_t half[] = {0xD83D, 0};
    EXPECT_TRUE(WritePrivateProfileStringW(half, nullptr, nullptr, ToWide(file).c_str()));
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", half, nullptr, ToWide(file).c_str()));
    EXPECT_EQ(Bytes(file), text);

    const std::string inUtf16 = "\xFF\xFE\n[s]\na=1\n";
    Make("f", inUtf16);
    EXPECT_THROW(WriteError("a", "2", file), std::invalid_argument);
    EXPECT_EQ(WriteError("a", nullptr, file), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(file), inUtf16);
}

TEST_F(WriteProfile, KeepsSymbolicLinks) {
    fs::create_directory(Path("d"));
    Make("d/f", "[s]\n");
    fs::create_symlink("d/middle", Path("l"));
    fs::create_symlink("f", Path("d/middle"));
    fs::create_symlink("d/new", Path("dangling"));
    EXPECT_EQ(WriteError("a", "1", Path("l")) + WriteError("a", "1", Path("dangling")), 0U);
    EXPECT_EQ(Bytes(Path("d/f")) + Bytes(Path("d/new")), "[s]\na=1\n[s]\na=1\n");
    EXPECT_TRUE(fs::is_symlink(Path("l")) && fs::is_symlink(Path("d/middle")));
}

// Full disks, read-only file systems and files that are mount points, in a mount namespace of the test's own:
// "small" in the test's folder is a small empty file system.
class WriteMounts : public TestFolder {
protected:
    void SetUp() override {
        fs::create_directory(Path("small"));
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", Path("small").c_str(), "tmpfs", 0, "size=64k") != 0)
            GTEST_SKIP() << "mounting is not permitted here";
    }
    void TearDown() override { ::umount2(Path("small").c_str(), MNT_DETACH); }

    const std::string m_old = "[s]\na=old\n";
};

TEST_F(WriteMounts, FullDiskRefusesAndKeepsTheOldContent) {
    Make("small/f", m_old);
    fs::create_hard_link(Make("small/hard", m_old), Path("small/hard2"));
    const std::string tooLong(70'000, 'v');
    for (const char* file : {"small/f", "small/hard", "small/new"})
        EXPECT_EQ(WriteError("a", tooLong.c_str(), Path(file)), ERROR_DISK_FULL) << file;
    EXPECT_EQ(Bytes(Path("small/f")) + Bytes(Path("small/hard2")), m_old + m_old);
    EXPECT_EQ(EntryCount("small"), 3); // f, hard, hard2
    EXPECT_EQ(WriteError("a", "new", Path("small/f")), ERROR_SUCCESS)
        << "something stayed reserved or locked";
}

TEST_F(WriteMounts, OnlyAFileThatIsAMountPointIsWrittenInAReadOnlyFolder) {
    const std::string outside = Make("outside", m_old);
    const std::string file = Make("small/f", "");
    Make("small/g", m_old);
    ASSERT_EQ(::mount(outside.c_str(), file.c_str(), "none", MS_BIND, nullptr), 0);
    EXPECT_EQ(WriteError("a", "new", Path("small/f")), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(outside), "[s]\na=new\n");
    ASSERT_EQ(::mount("none", Path("small").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(WriteError("a", "newer", Path("small/f")), ERROR_SUCCESS) << "only the folder is read-only";
    EXPECT_EQ(Bytes(outside), "[s]\na=newer\n");
    ::umount(file.c_str());
    for (const char* refused : {"small/f", "small/g", "small/new"})
        EXPECT_EQ(WriteError("a", "new", Path(refused)), ERROR_WRITE_PROTECT) << refused;
    EXPECT_FALSE(CopyFileW(ToWide(outside).c_str(), ToWide(Path("small/new")).c_str(), 0));
    EXPECT_EQ(GetLastError(), ERROR_WRITE_PROTECT);
}

} // namespace
} // namespace corvane

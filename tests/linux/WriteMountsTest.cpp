// Full disks, read-only file systems and files that are mount points, in a mount namespace of the test's own.

#include <linux/TestFolder.h>
#include <sched.h>
#include <sys/mount.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

/// "small" in the test's folder is a small empty file system.
class WriteMounts : public TestFolder {
protected:
    void SetUp() override {
        fs::create_directory(Path("small"));
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", Path("small").c_str(), "tmpfs", 0, "size=64k") != 0)
            GTEST_SKIP() << "mounting is not permitted here";
    }
    void TearDown() override { ::umount2(Path("small").c_str(), MNT_DETACH); }

    ulong Write(const std::string& value, const std::string& file) const {
        return WritePrivateProfileStringA("s", "a", value.c_str(), Path(file).c_str()) ? 0 : GetLastError();
    }
    ulong Copy(const std::string& from, const std::string& to) const {
        return CopyFileW(ToWide(Path(from)).c_str(), ToWide(Path(to)).c_str(), 0) ? 0 : GetLastError();
    }

    const std::string m_old = "[s]\na=old\n";
};

TEST_F(WriteMounts, FullDiskRefusesAndKeepsTheOldContent) {
    Make("big", std::string(50'000, 'x'));
    Make("small/f", m_old);
    fs::create_hard_link(Make("small/hard", m_old), Path("small/hard2"));
    const std::string tooLong(70'000, 'v');
    for (const char* file : {"small/f", "small/hard", "small/new"})
        EXPECT_EQ(Write(tooLong, file), ERROR_DISK_FULL) << file;
    EXPECT_EQ(Copy("big", "small/copy"), ERROR_SUCCESS);
    EXPECT_EQ(Copy("big", "small/copy2"), ERROR_DISK_FULL);
    EXPECT_EQ(Copy("big", "small/f"), ERROR_DISK_FULL);
    EXPECT_EQ(Bytes(Path("small/f")) + Bytes(Path("small/hard2")), m_old + m_old);
    EXPECT_EQ(EntryCount("small"), 4U); // f, hard, hard2, copy
    fs::remove(Path("small/copy"));
    EXPECT_EQ(Write("new", "small/f"), ERROR_SUCCESS) << "something stayed reserved or locked";
}

TEST_F(WriteMounts, OnlyAFileThatIsAMountPointIsWrittenInAReadOnlyFolder) {
    const std::string outside = Make("outside", m_old);
    const std::string file = Make("small/f", "");
    Make("small/g", m_old);
    ASSERT_EQ(::mount(outside.c_str(), file.c_str(), "none", MS_BIND, nullptr), 0);
    EXPECT_EQ(Write("new", "small/f"), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(outside), "[s]\na=new\n");
    ASSERT_EQ(::mount("none", Path("small").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(Write("newer", "small/f"), ERROR_SUCCESS) << "only the folder is read-only";
    EXPECT_EQ(Bytes(outside), "[s]\na=newer\n");
    ::umount(file.c_str());
    for (const char* refused : {"small/f", "small/g", "small/new"})
        EXPECT_EQ(Write("new", refused), ERROR_WRITE_PROTECT) << refused;
    EXPECT_EQ(Copy("outside", "small/new"), ERROR_WRITE_PROTECT);
}

} // namespace
} // namespace corvane

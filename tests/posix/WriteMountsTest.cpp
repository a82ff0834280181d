// Full disks, read-only file systems and files that are mount points, in a mount namespace of the test's own.
#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <posix/TestFolder.h>
#include <sched.h>
#include <sys/mount.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

constexpr int notPermitted = 255;

class WriteMounts : public TestFolder {
protected:
    // Runs `work` in a process that sees a small empty file system as "small" in the test's folder. The
    // result is the number of the first check that failed, counted from 1.
    int WithSmallDisk(const std::function<void()>& work) {
        return Wait(Fork([&] {
            ::mkdir(Path("small").c_str(), 0700);
            if (::unshare(CLONE_NEWNS) != 0 ||
                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                ::mount("none", Path("small").c_str(), "tmpfs", 0, "size=64k") != 0)
                return notPermitted;
            work();
            return m_failed;
        }));
    }

    void Check(bool condition) {
        ++m_checks;
        if (!condition && m_failed == 0)
            m_failed = m_checks;
    }

    ulong Write(const std::string& value, const std::string& file) const {
        return WritePrivateProfileStringA("s", "a", value.c_str(), Path(file).c_str()) ? 0 : GetLastError();
    }

    ulong Copy(const std::string& from, const std::string& to, bool failIfExists = false) const {
        return CopyFileW(ToWide(Path(from)).c_str(), ToWide(Path(to)).c_str(), failIfExists) ? 0
                                                                                             : GetLastError();
    }

    int m_checks = 0;
    int m_failed = 0;
};

#define SKIP_OR_EXPECT_NO_FAILED_CHECK(result)                                                               \
    if (const int failed = result; failed == notPermitted)                                                   \
        GTEST_SKIP() << "mounting is not permitted here";                                                    \
    else                                                                                                     \
        EXPECT_EQ(failed, 0) << "the number of the failed check"

TEST_F(WriteMounts, FullDiskRefusesAndKeepsTheOldContent) {
    SKIP_OR_EXPECT_NO_FAILED_CHECK(WithSmallDisk([this] {
        const std::string old = "[s]\na=old\n";
        Make("big", std::string(50'000, 'x'));
        Make("small/f", old);
        Make("small/hard", old);
        Check(::link(Path("small/hard").c_str(), Path("small/hard2").c_str()) == 0);
        const std::string tooLong(70'000, 'v');
        Check(Write(tooLong, "small/f") == ERROR_DISK_FULL);
        Check(Write(tooLong, "small/hard") == ERROR_DISK_FULL);
        Check(Write(tooLong, "small/new") == ERROR_DISK_FULL);
        Check(Copy("big", "small/copy") == ERROR_SUCCESS);
        Check(Copy("big", "small/copy2") == ERROR_DISK_FULL);
        Check(Copy("big", "small/f") == ERROR_DISK_FULL);
        Check(Bytes(Path("small/f")) == old && Bytes(Path("small/hard2")) == old);
        Check(EntryCount("small") == 4); // f, hard, hard2, copy
        ::unlink(Path("small/copy").c_str());
        Check(Write("new", "small/f") == ERROR_SUCCESS); // nothing stayed reserved or locked
    }));
}

TEST_F(WriteMounts, ReadOnlyFileSystemRefuses) {
    SKIP_OR_EXPECT_NO_FAILED_CHECK(WithSmallDisk([this] {
        Make("small/f", "[s]\na=old\n");
        Check(::mount("none", Path("small").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0);
        Check(Write("new", "small/f") == ERROR_WRITE_PROTECT);
        Check(Write("new", "small/g") == ERROR_WRITE_PROTECT);
        Check(Copy("small/f", "small/g") == ERROR_WRITE_PROTECT);
        Check(Bytes(Path("small/f")) == "[s]\na=old\n");
    }));
}

TEST_F(WriteMounts, FileThatIsAMountPointIsWrittenInPlace) {
    SKIP_OR_EXPECT_NO_FAILED_CHECK(WithSmallDisk([this] {
        Make("outside", "[s]\na=old\n");
        Make("small/f", "");
        Check(::mount(Path("outside").c_str(), Path("small/f").c_str(), nullptr, MS_BIND, nullptr) == 0);
        Check(Write("new", "small/f") == ERROR_SUCCESS);
        Check(Bytes(Path("outside")) == "[s]\na=new\n");
    }));
}

} // namespace
} // namespace corvane

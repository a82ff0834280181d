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

    int m_checks = 0;
    int m_failed = 0;
};

TEST_F(WriteMounts, RefuseOrWriteInPlace) {
    const int failed = WithSmallDisk([this] {
        const std::string old = "[s]\na=old\n";
        const std::string tooLong(70'000, 'v');
        Make("small/f", old);
        Make("small/hard", old);
        Make("outside", old);
        Check(::link(Path("small/hard").c_str(), Path("small/hard2").c_str()) == 0);
        for (const char* file : {"small/f", "small/hard", "small/new"})
            Check(Write(tooLong, file) == ERROR_DISK_FULL);
        Check(Bytes(Path("small/f")) == old && Bytes(Path("small/hard2")) == old);
        Check(EntryCount("small") == 3);
        Check(Write("new", "small/f") == ERROR_SUCCESS); // nothing stayed reserved or locked
        Check(::mount(Path("outside").c_str(), Path("small/f").c_str(), nullptr, MS_BIND, nullptr) == 0);
        Check(Write("new", "small/f") == ERROR_SUCCESS && Bytes(Path("outside")) == "[s]\na=new\n");
        // Without /proc no file can be given its name later on.
        Check(::mount("none", "/proc", "tmpfs", 0, nullptr) == 0);
        Check(Write("new", "small/hard") == ERROR_SUCCESS && Write("new", "small/g") == ERROR_SUCCESS);
        Check(Bytes(Path("small/g")) == "[s]\na=new\n" && EntryCount("small") == 4);
        Check(::mount("none", Path("small").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0);
        Check(Write("newer", "small/g") == ERROR_WRITE_PROTECT);
        Check(Write("newer", "small/h") == ERROR_WRITE_PROTECT);
    });
    if (failed == notPermitted)
        GTEST_SKIP() << "mounting is not permitted here";
    EXPECT_EQ(failed, 0) << "the number of the failed check";
}

} // namespace
} // namespace corvane

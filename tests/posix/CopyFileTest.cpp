#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <fcntl.h>
#include <posix/TestFolder.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class CopyFile : public TestFolder {
protected:
    ulong Copy(const std::string& from, const std::string& to, bool failIfExists) const {
        SetLastError(ERROR_SUCCESS);
        const int done = CopyFileW(ToWide(Path(from)).c_str(), ToWide(Path(to)).c_str(), failIfExists);
        EXPECT_EQ(done != 0, GetLastError() == ERROR_SUCCESS);
        return GetLastError();
    }

    // A second of the past, so that a kept time differs from a fresh one.
    static void Age(const std::string& path) {
        const timespec times[] = {{1'000'000'000, 0}, {1'000'000'000, 5}};
        ::utimensat(AT_FDCWD, path.c_str(), times, 0);
    }
};

TEST_F(CopyFile, MakesANewFileWithModeAndTime) {
    for (const mode_t mode : {0600U, 0644U, 0666U}) {
        Age(Make("f", std::string("a\0b\r\n", 5), mode));
        EXPECT_EQ(Copy("f", "f.0", true), ERROR_SUCCESS);
        EXPECT_EQ(Bytes(Path("f.0")), std::string("a\0b\r\n", 5));
        EXPECT_EQ(ModeOf(Path("f.0")), mode);
        EXPECT_EQ(StatusOf(Path("f.0")).st_mtim.tv_sec, 1'000'000'000);
        EXPECT_EQ(StatusOf(Path("f.0")).st_mtim.tv_nsec, 5);
        EXPECT_EQ(EntryCount(), 2U) << "a temporary file was left";
        ::unlink(Path("f.0").c_str());
        ::unlink(Path("f").c_str());
    }
}

TEST_F(CopyFile, RefusesWithTheReason) {
    Make("f", "new");
    Make("g", "old");
    ASSERT_EQ(::symlink("elsewhere", Path("l").c_str()), 0);
    ASSERT_EQ(::mkdir(Path("d").c_str(), 0700), 0);
    EXPECT_EQ(Copy("f", "g", true), ERROR_FILE_EXISTS);
    EXPECT_EQ(Copy("f", "l", true), ERROR_FILE_EXISTS) << "a planted link is no free name";
    EXPECT_EQ(Copy("none", "g", false), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Copy("none/f", "g", false), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Copy("f", "none/g", true), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Copy("f", "none/g", false), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Copy("d", "g", false), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Copy("f", "d", false), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Bytes(Path("g")), "old");
    EXPECT_EQ(EntryCount(), 4U);
}

TEST_F(CopyFile, OverwritesWithoutOpeningAPrivateFile) {
    struct Row {
        mode_t source, target, result;
    };
    for (const bool hardLink : {false, true}) {
        for (const Row& row : {Row{0600, 0644, 0600}, Row{0644, 0600, 0600}, Row{0640, 0604, 0600}}) {
            Age(Make("f", "new content", row.source));
            Make("g", "old", row.target);
            ASSERT_EQ(::symlink("g", Path("l").c_str()), 0);
            ASSERT_TRUE(!hardLink || ::link(Path("g").c_str(), Path("h").c_str()) == 0);
            EXPECT_EQ(Copy("f", "l", false), ERROR_SUCCESS);
            EXPECT_EQ(Bytes(Path("g")), "new content");
            EXPECT_EQ(ModeOf(Path("g")), row.result);
            EXPECT_EQ(StatusOf(Path("g")).st_mtim.tv_sec, 1'000'000'000);
            EXPECT_TRUE(std::filesystem::is_symlink(Path("l")));
            EXPECT_TRUE(!hardLink || Bytes(Path("h")) == "new content");
            for (const char* name : {"f", "g", "l", "h"})
                ::unlink(Path(name).c_str());
        }
    }
    EXPECT_EQ(EntryCount(), 0U);
}

TEST_F(CopyFile, OntoItselfChangesNothing) {
    const std::string file = Make("f", "x", 0640);
    ASSERT_EQ(::symlink("f", Path("l").c_str()), 0);
    const struct stat before = StatusOf(file);
    EXPECT_EQ(Copy("f", "l", false), ERROR_SUCCESS);
    EXPECT_EQ(StatusOf(file).st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    EXPECT_EQ(Bytes(file), "x");
}

TEST_F(CopyFile, TimesAreSetToThePresent) {
    const std::string file = Make("f", "x");
    Age(file);
    const auto start = ::time(nullptr);
    EXPECT_EQ(_wutime64(ToWide(file).c_str(), nullptr), 0);
    EXPECT_GE(StatusOf(file).st_mtim.tv_sec, start);
    EXPECT_NE(_wutime64(ToWide(Path("none")).c_str(), nullptr), 0);
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace corvane

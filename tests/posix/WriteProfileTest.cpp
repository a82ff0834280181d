#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <grp.h>
#include <posix/TestFolder.h>
#include <stdexcept>
#include <sys/xattr.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class WriteProfile : public TestFolder {
protected:
    // The error of a write, 0 when it succeeded.
    static ulong Write(const char* section, const char* tag, const char* value, const std::string& file) {
        SetLastError(ERROR_SUCCESS);
        const int done = WritePrivateProfileStringA(section, tag, value, file.c_str());
        EXPECT_EQ(done != 0, GetLastError() == ERROR_SUCCESS);
        return GetLastError();
    }
};

// Runs `work` as a user with no rights of its own.
int AsNobody(const std::function<int()>& work) {
    constexpr unsigned nobody = 65534;
    return Wait(Fork([&] {
        if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)
            return 255;
        return work();
    }));
}

TEST_F(WriteProfile, RefusesWhatCouldNotBeReadBack) {
    struct Row {
        const char *section, *tag, *value;
    };
    static const Row rows[] = {
        {nullptr, "a", "1"}, {"s", nullptr, "1"},  {" \t", "a", "1"}, {"s", "", "1"},    {"s\n", "a", "1"},
        {"s", "a\rb", "1"},  {"s", "a", "1\n[t]"}, {"s", "a=b", "1"}, {"s", " ;a", "1"}, {"s", "[a", "1"},
    };
    const std::string file = Make("f", "[s]\na=0\n");
    const std::string utf16 = Make("utf16", "\xFF\xFE[");
    for (const Row& row : rows) {
        const auto write = [&row](const std::string& path) {
            WritePrivateProfileStringA(row.section, row.tag, row.value, path.c_str());
        };
        EXPECT_THROW(write(file), std::invalid_argument) << row.tag;
        EXPECT_THROW(write(Path("none")), std::invalid_argument) << row.tag;
    }
    EXPECT_THROW(WritePrivateProfileStringA("s", "a", "1", utf16.c_str()), std::invalid_argument);
    EXPECT_EQ(Bytes(file), "[s]\na=0\n");
    EXPECT_EQ(Bytes(utf16), "\xFF\xFE[");
    EXPECT_EQ(EntryCount(), 2U);
}

TEST_F(WriteProfile, DeletesQuietlyWhatIsNotThere) {
    const std::string file = Make("f", "[]\n[s]\na=0\n");
    for (const char* section : {"s", "t", "", "s\n"}) {
        for (const char* tag : {"b", "", "x=y", "\n", ";"})
            EXPECT_EQ(Write(section, tag, nullptr, file), ERROR_SUCCESS);
    }
    EXPECT_EQ(Write("", nullptr, nullptr, file), ERROR_SUCCESS);
    EXPECT_EQ(Write("s", "a", nullptr, Path("none")), ERROR_SUCCESS);
    EXPECT_EQ(Write("s", nullptr, nullptr, Make("utf16", "\xFF\xFE")), ERROR_SUCCESS);
    EXPECT_EQ(Write(nullptr, "a", nullptr, file), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Bytes(file), "[]\n[s]\na=0\n");
    EXPECT_EQ(EntryCount(), 2U);
}

TEST_F(WriteProfile, FindsWideNamesThatWereWrittenNarrow) {
    const std::string file = Make("f", "[Gr\xC3\xB6\xC3\x9F]\n\xF0\x9F\x98\x80=1\nb=2\n");
    const wstring wide = ToWide(file);
    EXPECT_TRUE(WritePrivateProfileStringW(u" gr\u00F6\u00DF ", u"\U0001F600", nullptr, wide.c_str()));
    EXPECT_TRUE(WritePrivateProfileStringW(u"Gr\u00F6\u00DF", u"B", u"\u20AC", wide.c_str()));
    EXPECT_EQ(Bytes(file), "[Gr\xC3\xB6\xC3\x9F]\nb=\xE2\x82\xAC\n");
    EXPECT_TRUE(WritePrivateProfileStringW(u"gr\u00F6\u00DF", nullptr, nullptr, wide.c_str()));
    EXPECT_EQ(Bytes(file), "");
}

TEST_F(WriteProfile, SaysWhyItIsRefused) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(::symlink("loop", Path("loop").c_str()), 0);
    Make("file", "");
    EXPECT_EQ(Write("s", "a", "1", Path("none/f")), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Write("s", "a", "1", Path("file/f")), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Write("s", "a", "1", ""), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Write("s", "a", "1", Path(".")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Write("s", "a", "1", Path("pipe")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Write("s", "a", "1", Path("loop")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Write("s", "a", "1", Path(std::string(256, 'x'))), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_EQ(Write("s", "a", "1", Path(std::string(255, 'x'))), ERROR_SUCCESS);
}

TEST_F(WriteProfile, KeepsModeOwnerAndAttributes) {
    const bool root = ::geteuid() == 0;
    for (const mode_t mode : {0600U, 0640U, 0666U}) {
        const std::string file = Make("f", "[s]\n", mode);
        ASSERT_TRUE(!root || ::chown(file.c_str(), 1234, 4321) == 0);
        const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
        const ino_t inode = StatusOf(file).st_ino;
        EXPECT_EQ(Write("s", "a", "1", file), ERROR_SUCCESS);
        EXPECT_NE(StatusOf(file).st_ino, inode) << "replaced, not overwritten";
        EXPECT_EQ(ModeOf(file), mode);
        EXPECT_TRUE(!root || (StatusOf(file).st_uid == 1234 && StatusOf(file).st_gid == 4321));
        char note[8] = "";
        EXPECT_TRUE(!attributes || ::getxattr(file.c_str(), "user.note", note, sizeof note) == 4);
        ::unlink(file.c_str());
    }
    const mode_t old = ::umask(027);
    EXPECT_EQ(Write("s", "a", "1", Path("new")), ERROR_SUCCESS);
    ::umask(old);
    EXPECT_EQ(ModeOf(Path("new")), 0640U);
    EXPECT_EQ(EntryCount(), 1U) << "a temporary file was left";
}

TEST_F(WriteProfile, LeavesAnUnchangedFileAlone) {
    const std::string file = Make("f", "[s]\na=1\n");
    const struct stat before = StatusOf(file);
    EXPECT_EQ(Write("S", " A ", "1", file), ERROR_SUCCESS);
    EXPECT_EQ(StatusOf(file).st_ino, before.st_ino);
    EXPECT_EQ(StatusOf(file).st_ctim.tv_nsec, before.st_ctim.tv_nsec);
}

TEST_F(WriteProfile, KeepsSymbolicAndHardLinks) {
    ASSERT_EQ(::mkdir(Path("d").c_str(), 0700), 0);
    Make("d/f", "[s]\n");
    ASSERT_EQ(::symlink("d/middle", Path("l").c_str()), 0);
    ASSERT_EQ(::symlink("f", Path("d/middle").c_str()), 0);
    ASSERT_EQ(::symlink("d/new", Path("dangling").c_str()), 0);
    EXPECT_EQ(Write("s", "a", "1", Path("l")), ERROR_SUCCESS);
    EXPECT_EQ(Write("s", "a", "1", Path("dangling")), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(Path("d/f")), "[s]\na=1\n");
    EXPECT_EQ(Bytes(Path("d/new")), "[s]\na=1\n");
    EXPECT_TRUE(std::filesystem::is_symlink(Path("l")) && std::filesystem::is_symlink(Path("d/middle")));

    ASSERT_EQ(::link(Path("d/f").c_str(), Path("hard").c_str()), 0);
    EXPECT_EQ(Write("s", "a", "longer", Path("hard")), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(Path("d/f")), "[s]\na=longer\n");
    EXPECT_EQ(Write("s", "a", nullptr, Path("d/f")), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(Path("hard")), "[s]\n");
}

TEST_F(WriteProfile, GoesByTheRightsOfTheFile) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    // Files that everyone may write, in folders that only some may: written in place, owner kept.
    ASSERT_EQ(::chmod(Path(".").c_str(), 0755), 0);
    const std::string open = Make("open", "[s]\n", 0666);
    const std::string closed = Make("closed", "[s]\n", 0644);
    ASSERT_EQ(::mkdir(Path("sticky").c_str(), 0), 0);
    ASSERT_EQ(::chmod(Path("sticky").c_str(), 01777), 0);
    const std::string foreign = Make("sticky/f", "[s]\n", 0666);
    EXPECT_EQ(AsNobody([&] { return static_cast<int>(Write("s", "a", "1", open)); }), 0);
    EXPECT_EQ(AsNobody([&] { return static_cast<int>(Write("s", "a", "1", foreign)); }), 0);
    EXPECT_EQ(AsNobody([&] { return static_cast<int>(Write("s", "a", "1", closed)); }), 5);
    EXPECT_EQ(AsNobody([&] { return static_cast<int>(Write("s", "a", "1", Path("new"))); }), 5);
    // A file of the caller's own that is read-only is not written through the folder behind its back.
    const std::string readOnly = Make("sticky/own", "[s]\n", 0444);
    ASSERT_EQ(::chown(readOnly.c_str(), 65534, 65534), 0);
    EXPECT_EQ(AsNobody([&] { return static_cast<int>(Write("s", "a", "1", readOnly)); }), 5);
    EXPECT_EQ(Bytes(open), "[s]\na=1\n");
    EXPECT_EQ(Bytes(foreign), "[s]\na=1\n");
    EXPECT_EQ(StatusOf(foreign).st_uid, 0U);
    EXPECT_EQ(Bytes(closed) + Bytes(readOnly), "[s]\n[s]\n");
}

} // namespace
} // namespace corvane

#include <corvane/platform/linux/files/FileUpdate.h>

#include <linux/TestFolder.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class WriteProfile : public TestFolder {
protected:
    // The error of a write, 0 when it succeeded.
    static ulong Write(const char* tag, const char* value, const std::string& file) {
        SetLastError(ERROR_SUCCESS);
        const int done = WritePrivateProfileStringA("s", tag, value, file.c_str());
        EXPECT_EQ(done != 0, GetLastError() == ERROR_SUCCESS);
        return GetLastError();
    }
};

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
        EXPECT_EQ(Write("a", "1", Path(name)), error) << name;
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
    for (const mode_t mode : {0600U, 0640U, 0666U}) {
        const std::string file = Make("f", "[s]\n", mode);
        ASSERT_TRUE(!root || ::chown(file.c_str(), 1234, 4321) == 0);
        const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
        const ino_t inode = StatusOf(file).st_ino;
        EXPECT_EQ(Write("a", "1", file), ERROR_SUCCESS);
        const struct stat after = StatusOf(file);
        EXPECT_NE(after.st_ino, inode) << "replaced, not overwritten";
        EXPECT_EQ(ModeOf(file), mode);
        EXPECT_TRUE(!root || (after.st_uid == 1234 && after.st_gid == 4321));
        char note[8] = "";
        EXPECT_TRUE(!attributes || ::getxattr(file.c_str(), "user.note", note, sizeof note) == 4);
        EXPECT_EQ(Write(" A ", "1", file), ERROR_SUCCESS);
        EXPECT_EQ(StatusOf(file).st_ino, after.st_ino) << "an unchanged file is left alone";
        fs::remove(file);
    }
    const mode_t old = ::umask(027);
    EXPECT_EQ(Write("a", "1", Path("new")), ERROR_SUCCESS);
    ::umask(old);
    EXPECT_EQ(ModeOf(Path("new")), 0640U);
    EXPECT_EQ(EntryCount(), 1U) << "a temporary file was left";
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
    EXPECT_THROW(Write("a", "2", file), std::invalid_argument);
    EXPECT_EQ(Write("a", nullptr, file), ERROR_SUCCESS);
    EXPECT_EQ(Bytes(file), inUtf16);
}

TEST_F(WriteProfile, KeepsSymbolicLinks) {
    fs::create_directory(Path("d"));
    Make("d/f", "[s]\n");
    fs::create_symlink("d/middle", Path("l"));
    fs::create_symlink("f", Path("d/middle"));
    fs::create_symlink("d/new", Path("dangling"));
    EXPECT_EQ(Write("a", "1", Path("l")) + Write("a", "1", Path("dangling")), 0U);
    EXPECT_EQ(Bytes(Path("d/f")) + Bytes(Path("d/new")), "[s]\na=1\n[s]\na=1\n");
    EXPECT_TRUE(fs::is_symlink(Path("l")) && fs::is_symlink(Path("d/middle")));
}

} // namespace
} // namespace corvane

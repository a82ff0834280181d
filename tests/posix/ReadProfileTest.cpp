#include "TemporaryFolder.h"

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace corvane {
namespace {

using namespace platform;
using test::TemporaryFolder;

// What a read gives; lists come with '|' in the place of each NUL.
template <typename Operation>
std::string Readable(Operation read) {
    std::string text(4096, '#');
    text.resize(read(text.data(), static_cast<ulong>(text.size())));
    std::replace(text.begin(), text.end(), '\0', '|');
    return text;
}

std::string Read(const char* section, const char* tag, const std::string& file, const char* other = nullptr) {
    return Readable([&](char* buffer, ulong size) {
        return platform::GetPrivateProfileStringA(section, tag, other, buffer, size, file.c_str());
    });
}

std::string ReadSection(const char* section, const std::string& file) {
    return Readable([&](char* buffer, ulong size) {
        return platform::GetPrivateProfileSectionA(section, buffer, size, file.c_str());
    });
}

TEST(ReadProfile, UnderstandsTheFormat) {
    using namespace std::string_literals;
    struct Row {
        std::string content;
        const char *section, *tag;
        std::string expected;
    };
    const std::string net = "lost=1\n[Net]\r\n ; note\n Port = 25 \n\nhost='a b'\nport=26\nloose line\n=x\n"
                            "[]\nnameless=1\n[ Mail ]\n[net]\nlate=1\n[Mail]\nsecond=1";
    static const Row rows[] = {
        {net, nullptr, nullptr, "Net|Mail|net|Mail|"},
        {net, nullptr, "Port", "Net|Mail|net|Mail|"},
        {net, "NET", nullptr, "Port|host|port|"},
        {net, " net\t", " PORT ", "25"},
        {net, "Net", "host", "a b"},
        {net, "Net", "loose line", ""},
        {net, "Net", "", ""},
        {net, "", "nameless", ""},
        {net, "", nullptr, ""},
        {net, "Mail", nullptr, ""},
        {"\xEF\xBB\xBF[a]\rb=\"'c'\"\rd='\r", "a", "b", "'c'"},
        {"\xEF\xBB\xBF[a]\rb=\"'c'\"\rd='\r", "a", "d", "'"},
        {"\xFF\xFE[a]\nb=c\n", "a", "b", ""},
        {"[a]\nb=c\nhal", "a", nullptr, "b|"},
        {"[a\0]\n\0\nb \0z = c \0d\n"s, "A", "B", "c"},
        {"[a]\nb=\xFF\xC3\n", "a", "b", "\xFF\xC3"},
        {"[\xE4\xB8\xAD]\n\xF0\x9F\x98\x80=1", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "1"},
        {"", nullptr, nullptr, ""}};
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        const std::string file = folder.Write("format", row.content);
        EXPECT_EQ(Read(row.section, row.tag, file), row.expected)
            << testing::PrintToString(row.section) << testing::PrintToString(row.tag) << row.content;
    }
    const std::string file = folder.Write("section", net);
    EXPECT_EQ(ReadSection("net", file), "Port=25|host='a b'|port=26|loose line|=x|");
    EXPECT_EQ(ReadSection("mail", file), "");
    EXPECT_EQ(Read("Net", "none", file, "other \t"), "other");
}

// The value of v:k, the names of the tags of n or the text of s.
ulong ReadForm(char form, char* buffer, ulong size, const char* file) {
    if (form == 's')
        return platform::GetPrivateProfileSectionA("s", buffer, size, file);
    const char name[] = {form, '\0'};
    return platform::GetPrivateProfileStringA(name, form == 'v' ? "k" : nullptr, nullptr, buffer, size, file);
}

TEST(ReadProfile, TruncatesAtTheExactLimit) {
    struct Row {
        std::size_t length;      // of the value, of the only name, of the only line
        ulong size, value, list; // of the buffer; the results
    };
    constexpr ulong huge = 50'000'000;
    static const Row rows[] = {{1020, 1024, 1020, 1021},
                               {1021, 1024, 1021, 1022},
                               {1022, 1024, 1022, 1022},
                               {1023, 1024, 1023, 1022},
                               {1024, 1024, 1023, 1022},
                               {5, 0, 0, 0},
                               {5, 1, 0, 0},
                               {5, 2, 1, 0},
                               {5, 3, 2, 1},
                               {huge, huge + 9, huge, huge + 1}};
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        const std::string text(row.length, 'x');
        std::string content = "[v]\nk=";
        content.append(text).append("\n[n]\n").append(text).append("=\n[s]\n").append(text);
        const std::string file = folder.Write("limit", content);
        for (const char form : {'v', 'n', 's'}) {
            std::string buffer(row.size + 2, '#');
            const ulong count = ReadForm(form, buffer.data(), row.size, file.c_str());
            ASSERT_EQ(count, form == 'v' ? row.value : row.list) << form << row.length << " in " << row.size;
            std::string expected = text.substr(0, count);
            expected.resize(std::min<std::size_t>(count + (form == 'v' ? 1 : 2), row.size));
            EXPECT_TRUE(buffer.compare(0, expected.size(), expected) == 0) << form << row.length;
            EXPECT_EQ(buffer.substr(row.size), "##");
        }
    }
}

TEST(ReadProfile, FindsEachOfManyTagsOfOneName) {
    const TemporaryFolder folder;
    std::string content;
    for (int i = 0; i < 500; ++i)
        content.append("[S" + std::to_string(i) + "]\n=x\nt=" + std::to_string(i) + "\nT=double\n");
    const std::string file = folder.Write("many", content);
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(Read(("s" + std::to_string(i)).c_str(), "T", file), std::to_string(i));
}

TEST(ReadProfile, NoticesEveryChange) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("change", "[a]\nb=0\n");
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    for (const char digit : std::string("1234567890")) { // the same size, and often the same time
        ASSERT_EQ(::pwrite(descriptor, &digit, 1, 6), 1);
        ASSERT_EQ(Read("a", "b", file), std::string(1, digit));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Read("a", "b", file), "0"); // now the cache is sure

    struct stat before {};
    ASSERT_EQ(::fstat(descriptor, &before), 0);
    const timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::pwrite(descriptor, "6", 1, 6), 1);
    ASSERT_EQ(::futimens(descriptor, times), 0);
    ::close(descriptor);
    EXPECT_EQ(Read("a", "b", file), "6");

    std::filesystem::rename(folder.Write("other", "[a]\nb=7\n"), file);
    EXPECT_EQ(Read("a", "b", file), "7");
    std::filesystem::remove(file);
    EXPECT_EQ(Read("a", "b", file), "");
    EXPECT_EQ(platform::GetLastError(), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(::utimensat(AT_FDCWD, folder.Write("change", "[a]\nb=8\n").c_str(), times, 0), 0);
    EXPECT_EQ(Read("a", "b", file), "8");
}

// A store into mapped memory that follows another leaves the file's times alone.
TEST(ReadProfile, DoesNotTrustTheTimesOfAFreshFile) {
    const TemporaryFolder folder;
    bool noticed = false;
    for (int i = 0; i < 20 && !noticed; ++i) { // a round may be held up until the file is no longer fresh
        const std::string file = folder.Write("fresh", "[a]\nb=0\n");
        const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
        void* const memory = ::mmap(nullptr, 8, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        ASSERT_NE(memory, MAP_FAILED);
        auto* const value = static_cast<volatile char*>(memory) + 6;
        *value = '1';
        EXPECT_EQ(Read("a", "b", file), "1");
        *value = '2';
        noticed = Read("a", "b", file) == "2";
        ::munmap(memory, 8);
        ::close(descriptor);
    }
    EXPECT_TRUE(noticed);
}

TEST(ReadProfile, RefusesWhatIsNoReadableFile) {
    const TemporaryFolder folder;
    folder.Write("file", "[a]\n");
    const std::string huge = folder.Write("huge", "");
    std::filesystem::resize_file(huge, (std::uintmax_t{1} << 30) + 1);
    std::filesystem::create_symlink("/dev/zero", folder.Path("device"));
    ASSERT_EQ(::mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    const std::string secret = folder.Write("secret", "[a]\n");
    ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
    using Row = std::pair<const char*, ulong>;
    static const Row rows[] = {{"device", ERROR_ACCESS_DENIED},  {"pipe", ERROR_ACCESS_DENIED},
                               {"", ERROR_ACCESS_DENIED},        {"none", ERROR_FILE_NOT_FOUND},
                               {"huge", ERROR_FILE_TOO_LARGE},   {"none/file", ERROR_PATH_NOT_FOUND},
                               {"file/x", ERROR_PATH_NOT_FOUND}, {"secret", ERROR_ACCESS_DENIED}};
    for (const auto& [name, error] : rows) {
        if (name == std::string_view("secret") && ::geteuid() == 0)
            continue;
        EXPECT_EQ(Read(nullptr, nullptr, folder.Path(name)), "") << name;
        EXPECT_EQ(platform::GetLastError(), error) << name;
    }
}

// While the descriptor's lock is held the file is torn; readers wait for the whole.
void RewriteInPlace(const std::string& file, std::string_view content) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(::fcntl(descriptor, F_OFD_SETLKW, &lock), 0);
    ASSERT_EQ(::ftruncate(descriptor, 5), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    ASSERT_EQ(::pwrite(descriptor, content.data(), content.size(), 0), static_cast<ssize_t>(content.size()));
    ::close(descriptor);
}

TEST(ReadProfile, NeverShowsATornFile) {
    const std::string pictures[] = {"[a]\nb=1\n;" + std::string(20'000, ' ') + "\nc=1\n",
                                    "[a]\nb=2\n;" + std::string(20'000, ' ') + "\nc=2\n"};
    const TemporaryFolder folder;
    const std::string file = folder.Write("torn", pictures[0]);
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    const auto readOn = [&] {
        for (std::string text; !done; torn += text != "b=1|c=1|" && text != "b=2|c=2|")
            text = ReadSection("a", file);
    };
    std::thread readers[] = {std::thread(readOn), std::thread(readOn)};
    for (int i = 0; i < 300; ++i)
        std::filesystem::rename(folder.Write("next", pictures[i % 2]), file);
    for (int i = 0; i < 60; ++i)
        RewriteInPlace(file, pictures[i % 2]);
    done = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
} // namespace corvane

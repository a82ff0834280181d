#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <posix/TestFolder.h>
#include <sys/mman.h>
#include <thread>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class ReadProfile : public TestFolder {};

// What a read gives, with '|' in the place of each NUL.
template <typename Operation>
std::string Readable(Operation read) {
    std::string text(4096, '#');
    text.resize(read(text.data(), static_cast<ulong>(text.size())));
    std::replace(text.begin(), text.end(), '\0', '|');
    return text;
}

std::string Read(const char* section, const char* tag, const std::string& file, const char* other = nullptr) {
    return Readable([&](char* buffer, ulong size) {
        return GetPrivateProfileStringA(section, tag, other, buffer, size, file.c_str());
    });
}

std::string ReadSection(const char* section, const std::string& file) {
    return Readable([&](char* buffer, ulong size) {
        return GetPrivateProfileSectionA(section, buffer, size, file.c_str());
    });
}

TEST_F(ReadProfile, UnderstandsTheFormat) {
    using namespace std::string_literals;
    struct Row {
        std::string content;
        const char *section, *tag;
        std::string expected;
    };
    const std::string net = "lost=1\n[Net]\r\n ; note\n Port = 25 \n\nhost='a b'\nport=26\nloose line\n=x\n"
                            "[]\nnameless=1\n[ Mail ]\n[net]\nlate=1\n[Mail]\nsecond=1";
    const std::string odd = "\xEF\xBB\xBF[a]b] ; text\rb=\"'c'\"\r# d='\r[e=1\r[f\r";
    const std::string many = "[a]\nt=1\n[b]\nt=2\nT=3\n[c]\nt=4\n";
    const Row rows[] = {
        {net, nullptr, nullptr, "Net|Mail|net|Mail|"},
        {net, "NET", nullptr, "Port|host|port|"},
        {net, " net\t", " PORT ", "25"},
        {net, "Net", "host", "a b"},
        {net, "Net", "loose line", ""},
        {net, "", "nameless", ""},
        {net, "Mail", nullptr, ""},
        {odd, "a]b", nullptr, "b|# d|[e|"},
        {odd, "a]b", "b", "'c'"},
        {odd, "a]b", "# d", "'"},
        {many, "B", "T", "2"},
        {many, "c", "T", "4"},
        {"\xFF\xFE[a]\nb=c\n", "a", "b", ""},
        {"[a]\nb=c\nhal", "a", nullptr, "b|"},
        {"[a\0]\n\0\nb \0z = c \0d\n"s, "A", "B", "c"},
        {"", nullptr, nullptr, ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Read(row.section, row.tag, Make("f", row.content)), row.expected)
            << testing::PrintToString(row.section) << testing::PrintToString(row.tag) << row.content;
    }
    const std::string file = Make("f", net);
    EXPECT_EQ(ReadSection("net", file), "Port=25|host='a b'|port=26|loose line|=x|");
    EXPECT_EQ(ReadSection("mail", file), "");
    EXPECT_EQ(Read("Net", "none", file, "other \t"), "other");
}

// The value of v:k, the names of the tags of n or the text of s.
ulong ReadForm(char form, char* buffer, ulong size, const char* file) {
    if (form == 's')
        return GetPrivateProfileSectionA("s", buffer, size, file);
    const char name[] = {form, '\0'};
    return GetPrivateProfileStringA(name, form == 'v' ? "k" : nullptr, nullptr, buffer, size, file);
}

TEST_F(ReadProfile, TruncatesAtTheExactLimit) {
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
    for (const Row& row : rows) {
        const std::string text(row.length, 'x');
        std::string content = "[v]\nk=";
        content.append(text).append("\n[n]\n").append(text).append("=\n[s]\n").append(text);
        const std::string file = Make("f", content);
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

TEST_F(ReadProfile, NoticesEveryChange) {
    const std::string file = Make("f", "[a]\nb=0\n");
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    for (const char digit : std::string("1234567890")) { // the same size, and often the same time
        ASSERT_EQ(::pwrite(descriptor, &digit, 1, 6), 1);
        ASSERT_EQ(Read("a", "b", file), std::string(1, digit));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Read("a", "b", file), "0"); // now the cache is sure

    const timespec times[] = {StatusOf(file).st_atim, StatusOf(file).st_mtim};
    ASSERT_EQ(::pwrite(descriptor, "6", 1, 6), 1);
    ASSERT_EQ(::futimens(descriptor, times), 0);
    ::close(descriptor);
    EXPECT_EQ(Read("a", "b", file), "6");

    fs::rename(Make("other", "[a]\nb=7\n"), file);
    EXPECT_EQ(Read("a", "b", file), "7");
    fs::remove(file);
    EXPECT_EQ(Read("a", "b", file), "");
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(::utimensat(AT_FDCWD, Make("f", "[a]\nb=8\n").c_str(), times, 0), 0);
    EXPECT_EQ(Read("a", "b", file), "8");
}

// A store into mapped memory that follows another leaves the file's times alone.
TEST_F(ReadProfile, DoesNotTrustTheTimesOfAFreshFile) {
    bool noticed = false;
    for (int i = 0; i < 20 && !noticed; ++i) { // a round may be held up until the file is no longer fresh
        const std::string file = Make("fresh", "[a]\nb=0\n");
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

} // namespace
} // namespace corvane

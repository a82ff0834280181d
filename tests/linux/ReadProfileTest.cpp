#include <corvane/comfort.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <linux/TestFolder.h>
#include <sys/mman.h>
#include <thread>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class ReadProfile : public TestFolder {};

TEST_F(ReadProfile, UnderstandsTheFormat) {
    using namespace std::string_literals;
    const std::string net = "lost=1\n[Net]\r\n ; note\n Port = 25 \n\nhost='a b'\nport=26\nloose line\n=x\n"
                            "[]\nnameless=1\n[ Mail ]\n[net]\nlate=1\n[Mail]\nsecond=1";
    const std::string odd = "\xEF\xBB\xBF[a]b] ; text\rb=\"'c'\"\r# d='\r[e=1\r[f\r";
    const std::string many = "[a]\nt=1\n[b]\nt=2\nT=3\n[c]\nt=4\n";
    const struct {
        std::string content;
        const char *section, *tag;
        std::string expected;
    } rows[] = {
        {net, nullptr, nullptr, "Net|Mail|net|Mail|"},
        {net, "NET", nullptr, "Port|host|port|"},
        {net, " net\t", " PORT ", "25"},
        {net, "Net", "host", "a b"},
        {net, "", "nameless", ""},
        {net, "Mail", nullptr, ""},
        {odd, "a]b", nullptr, "b|# d|[e|"},
        {odd, "a]b", "b", "'c'"},
        {odd, "a]b", "# d", "'"},
        {many, "B", "T", "2"},
        {"[a]\nb=c\nhal", "a", nullptr, "b|"},
        {"[a\0]\n\0\nb \0z = c \0d\n"s, "A", "B", "c"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Read(row.section, row.tag, Make("f", row.content)), row.expected)
            << testing::PrintToString(row.section) << testing::PrintToString(row.tag) << row.content;
    }
    const std::string file = Make("f", net);
    std::string section(44, '#');
    EXPECT_EQ(GetPrivateProfileSectionA("net", section.data(), 44, file.c_str()), 41U);
    section.resize(42);
    EXPECT_EQ(section, "Port=25\0host='a b'\0port=26\0loose line\0=x\0\0"s);
    EXPECT_EQ(GetPrivateProfileSectionA("mail", section.data(), 42, file.c_str()), 0U);
    EXPECT_EQ(Read("Net", "none", file, "other \t"), "other");
}

TEST_F(ReadProfile, TruncatesAtTheExactLimit) {
    // The length of the value, of the only name and of the only line; the buffer's size; the results, of the
    // value and of the lists.
    using Row = std::tuple<std::size_t, ulong, ulong, ulong>;
    constexpr ulong huge = 5'000'000;
    for (const auto& [length, size, value, list] :
         {Row(1020, 1024, 1020, 1021), Row(1021, 1024, 1021, 1022), Row(1022, 1024, 1022, 1022),
          Row(1023, 1024, 1023, 1022), Row(1024, 1024, 1023, 1022), Row(5, 0, 0, 0), Row(5, 1, 0, 0),
          Row(5, 2, 1, 0), Row(5, 3, 2, 1), Row(huge, huge + 9, huge, huge + 1)}) {
        const std::string text(length, 'x');
        const std::string file = Make("f", "[s]\n" + text + "=" + text + "\n[lines]\n" + text);
        const char* const tags[] = {text.c_str(), nullptr, "lines"};
        for (const char* const tag : tags) {
            std::string buffer(size + 2, '#');
            const ulong count =
                tag == tags[2]
                    ? GetPrivateProfileSectionA(tag, buffer.data(), size, file.c_str())
                    : GetPrivateProfileStringA("s", tag, nullptr, buffer.data(), size, file.c_str());
            EXPECT_EQ(count, tag == tags[0] ? value : list) << length << " in " << size;
            std::string content = text.substr(0, count) + std::string(tag == tags[0] ? 1 : 2, '\0');
            content.resize(std::min<std::size_t>(content.size(), size));
            EXPECT_TRUE(buffer.compare(0, content.size(), content) == 0) << length << " in " << size;
            EXPECT_EQ(buffer.substr(size), "##");
        }
    }
}

TEST_F(ReadProfile, IsNotHeldUpByNamesThatWereMadeForIt) {
    constexpr unsigned count = 20'000;
    const auto name = [](unsigned number, char last) { return CollidingName(number) + last; };
    std::string tags = "[s]\n";
    std::string sections;
    for (unsigned i = 0; i < count; ++i) {
        tags += name(i, 'X') + "=" + std::to_string(i) + "\n";
        sections += "[" + name(i, 'X') + "]\nt=" + std::to_string(i) + "\n";
    }
    const std::string file = Make("f", tags + sections + "[plain]\nt=u\n");
    ConfigManager loaded;
    ASSERT_EQ(loaded.Update(ToWide(file).c_str(), 0), 0);
    ASSERT_EQ(loaded.SetValue(ToWide("s:" + name(count, 'X')), ToWide("20000")), 0);
    ConfigManager copy(loaded);
    const auto inCache = [&copy](const std::string& key) { return Get(copy, key, "none"); };
    for (const unsigned i : {0U, 7'000U, count - 1, count}) {
        const std::string made = name(i, 'x'), value = std::to_string(i);
        EXPECT_EQ(inCache("S:" + made), value);
        EXPECT_EQ(Read("S", made.c_str(), file), value);
        EXPECT_EQ(inCache(made + ":T"), i < count ? value : "none");
        EXPECT_EQ(Read(made.c_str(), "T", file), i < count ? value : "");
    }
    EXPECT_EQ(inCache("Plain:T") + Read("Plain", "T", file), "uu");
}

TEST_F(ReadProfile, NoticesEveryChange) {
    const std::string file = Make("f", "[a]\nb=0\n");
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
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
    const timespec future[] = {{2'240'611'200, 0}, {2'240'611'200, 0}}; // in 2041, beyond 32 bits
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), future, 0), 0);
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
        ConfigManager manager;
        ASSERT_EQ(manager.Update(ToWide(file).c_str(), 0), 0);
        FileWatch watch(manager);
        *value = '2';
        noticed = watch.Differs() && Read("a", "b", file) == "2";
        ::munmap(memory, 8);
        ::close(descriptor);
    }
    EXPECT_TRUE(noticed);
}

TEST_F(ReadProfile, ShowsALoadOneViewOfItsFile) {
    const std::string old = "[a]\nx=1\nloose\n[b]\ny=2\nX=3\nx=4\nz=5\n[A]\nx=6\n[c\xFF]\nx\xFF=7\nw=8\n";
    const std::string file = Make("f", old), twin = Make("twin", old), other = Make("other", "[a]\nx=8\n");
    const char* const sections[] = {nullptr, "", "a", "b", "A", "c\xEF\xBF\xBD", "none", " b "};
    const char* const tags[] = {nullptr, "", "x", "y", "z", "X", "loose", "none", " z", "x\xEF\xBF\xBD", "w"};
    {
        const LoadScope load;
        EXPECT_EQ(Read("a", "x", Path("missing")), ""); // keeps no file
        EXPECT_EQ(Read("a", "x", file), "1");           // keeps this one
        fs::rename(Make("next", "[a]\nx=9\n"), file);
        for (const char* section : sections) { // each tag after each other one
            for (std::size_t i = 0; i < std::size(tags) * std::size(tags) * 2; ++i) {
                const char* const tag =
                    tags[(i % 2 == 0 ? i / 2 : i / 2 / std::size(tags)) % std::size(tags)];
                ASSERT_EQ(Read(section, tag, file), Read(section, tag, twin))
                    << testing::PrintToString(section) << testing::PrintToString(tag);
            }
        }
        EXPECT_EQ(Read("a", "x", other), "8");
        Make("other", "[a]\nx=0\n");
        EXPECT_EQ(Read("a", "x", other), "0");
        std::thread([&] { EXPECT_EQ(Read("a", "x", file), "9"); }).join();
        {
            const LoadScope inner;
            EXPECT_EQ(Read("a", "x", file), "9");
        }
        EXPECT_EQ(Read("a", "x", file), "1");
    }
    EXPECT_EQ(Read("a", "x", file), "9");
}

} // namespace
} // namespace corvane

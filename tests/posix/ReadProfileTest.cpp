#include "TemporaryFolder.h"

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

using namespace platform;
using test::TemporaryFolder;

constexpr ulong large = 4096;

const char* OrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

// Lists come with '|' in the place of each NUL.
std::string Readable(const std::string& buffer, ulong count) {
    std::string text = buffer.substr(0, count);
    for (char& c : text)
        c = c == '\0' ? '|' : c;
    return text;
}

std::string Read(const std::optional<std::string>& section, const std::optional<std::string>& tag,
                 const std::string& file, const char* defaultText = nullptr) {
    std::string buffer(large, '#');
    const ulong count = platform::GetPrivateProfileStringA(OrNull(section), OrNull(tag), defaultText,
                                                           buffer.data(), large, file.c_str());
    EXPECT_EQ(buffer[count], '\0');
    return Readable(buffer, count);
}

std::string ReadSection(const std::string& section, const std::string& file) {
    std::string buffer(large, '#');
    return Readable(buffer,
                    platform::GetPrivateProfileSectionA(section.c_str(), buffer.data(), large, file.c_str()));
}

TEST(ReadProfile, UnderstandsTheFormat) {
    using namespace std::string_literals;
    const auto null = std::nullopt;
    using Name = std::optional<std::string>;
    struct Row {
        std::string content;
        Name section;
        Name tag;
        std::string expected;
    };
    const std::string net = "lost=1\n[Net]\r\n ; note\n Port = 25 \n\nhost='a b'\nport=26\nloose line\n=x\n"
                            "[]\nnameless=1\n[ Mail ]\n[net]\nlate=1\n[Mail]\nsecond=1";
    static const Row rows[] = {
        {net, null, null, "Net|Mail|net|Mail|"},
        {net, null, "Port", "Net|Mail|net|Mail|"},
        {net, "NET", null, "Port|host|port|"},
        {net, " net\t", " PORT ", "25"},
        {net, "Net", "host", "a b"},
        {net, "Net", "late", ""},
        {net, "Net", "loose line", ""},
        {net, "Net", "", ""},
        {net, "", "nameless", ""},
        {net, "", null, ""},
        {net, "Mail", null, ""},
        {net, "Net", "lost", ""},
        {"\xEF\xBB\xBF[a]\rb=\"'c'\"\rd='\r", "a", "b", "'c'"},
        {"\xEF\xBB\xBF[a]\rb=\"'c'\"\rd='\r", "a", "d", "'"},
        {"\xFF\xFE[a]\nb=c\n", "a", "b", ""},
        {"[a]\nb=c\nhal", "a", null, "b|"},
        {"[a\0]\n\0\nb \0z = c \0d\n"s, "A", "B", "c"},
        {"[a]\nb=\xFF\xC3\n", "a", "b", "\xFF\xC3"},
        {"[\xE4\xB8\xAD]\n\xF0\x9F\x98\x80=1", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "1"},
        {"", null, null, ""},
        {"[a]", "a", "a", ""},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        const std::string file = folder.Write("format", row.content);
        EXPECT_EQ(Read(row.section, row.tag, file), row.expected)
            << row.section.value_or("null") << ':' << row.tag.value_or("null") << " in " << row.content;
    }
    const std::string file = folder.Write("section", net);
    EXPECT_EQ(ReadSection("net", file), "Port=25|host='a b'|port=26|loose line|=x|");
    EXPECT_EQ(ReadSection("mail", file), "");
    EXPECT_EQ(Read("Net", "none", file, "other \t"), "other");
}

// The value of v:k, the names of the tags of n or the text of s.
ulong ReadForm(char form, char* buffer, ulong size, const std::string& file) {
    if (form == 's')
        return platform::GetPrivateProfileSectionA("s", buffer, size, file.c_str());
    return platform::GetPrivateProfileStringA(form == 'v' ? "v" : "n", form == 'v' ? "k" : nullptr, nullptr,
                                              buffer, size, file.c_str());
}

TEST(ReadProfile, TruncatesAtTheExactLimit) {
    struct Row {
        std::size_t length; // of the value, of the only name, of the only line
        ulong size;
        ulong value; // the results
        ulong list;
    };
    static const Row rows[] = {
        {1020, 1024, 1020, 1021},
        {1021, 1024, 1021, 1022},
        {1022, 1024, 1022, 1022},
        {1023, 1024, 1023, 1022},
        {1024, 1024, 1023, 1022},
        {5, 0, 0, 0},
        {5, 1, 0, 0},
        {5, 2, 1, 0},
        {5, 3, 2, 1},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        const std::string text(row.length, 'x');
        std::string content = "[v]\nk=";
        content.append(text).append("\n[n]\n").append(text).append("=\n[s]\n").append(text);
        const std::string file = folder.Write("limit", content);
        for (const char form : {'v', 'n', 's'}) {
            std::string buffer(2048, '#');
            const ulong count = ReadForm(form, buffer.data(), row.size, file);
            ASSERT_EQ(count, form == 'v' ? row.value : row.list) << form << row.length << " in " << row.size;
            std::string expected = text.substr(0, count);
            expected.resize(std::min<std::size_t>(count + (form == 'v' ? 1 : 2), row.size));
            EXPECT_EQ(buffer.substr(0, expected.size()), expected)
                << form << row.length << " in " << row.size;
            EXPECT_EQ(buffer[row.size], '#');
        }
    }
}

TEST(ReadProfile, NoticesEveryChange) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("change", "[a]\nb=0\n");
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    for (const char digit : std::string("12345678901234567890")) { // the same size, and often the same time
        ASSERT_EQ(::pwrite(descriptor, &digit, 1, 6), 1);
        ASSERT_EQ(Read("a", "b", file), std::string(1, digit));
    }
    ::close(descriptor);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Read("a", "b", file), "0"); // now the cache is sure

    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    const timespec times[] = {before.st_atim, before.st_mtim};
    const std::string other = folder.Write("other", "[a]\nb=7\n");
    ASSERT_EQ(::utimensat(AT_FDCWD, other.c_str(), times, 0), 0);
    std::filesystem::rename(other, file);
    EXPECT_EQ(Read("a", "b", file), "7");

    std::filesystem::rename(file, other);
    EXPECT_EQ(Read("a", "b", file), "");
    EXPECT_EQ(platform::GetLastError(), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(::utimensat(AT_FDCWD, folder.Write("change", "[a]\nb=8\n").c_str(), times, 0), 0);
    EXPECT_EQ(Read("a", "b", file), "8");
}

TEST(ReadProfile, RefusesWhatIsNoReadableFile) {
    const TemporaryFolder folder;
    folder.Write("file", "[a]\n");
    const std::string huge = folder.Write("huge", "");
    std::filesystem::resize_file(huge, (std::uintmax_t{1} << 30) + 1);
    ASSERT_EQ(::mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    const std::string secret = folder.Write("secret", "[a]\n");
    ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
    struct Row {
        const char* name;
        ulong error;
    };
    static const Row rows[] = {
        {"pipe", ERROR_ACCESS_DENIED},       {"", ERROR_ACCESS_DENIED},
        {"none", ERROR_FILE_NOT_FOUND},      {"huge", ERROR_FILE_TOO_LARGE},
        {"none/file", ERROR_PATH_NOT_FOUND}, {"file/x", ERROR_PATH_NOT_FOUND},
        {"secret", ERROR_ACCESS_DENIED},
    };
    for (const Row& row : rows) {
        if (row.name == std::string_view("secret") && ::geteuid() == 0)
            continue;
        EXPECT_EQ(Read(std::nullopt, std::nullopt, folder.Path(row.name)), "") << row.name;
        EXPECT_EQ(platform::GetLastError(), row.error) << row.name;
    }
    EXPECT_EQ(Read("a", "b", "/dev/zero"), "");
    EXPECT_EQ(platform::GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(platform::GetPrivateProfileSectionA("a", std::string(9, '#').data(), 9, nullptr), 0U);
    EXPECT_EQ(platform::GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(ReadProfile, ReadsAValueOfFiftyMegabytes) {
    const TemporaryFolder folder;
    std::string value;
    value.resize(50'000'000, 'v');
    const std::string file = folder.Write("long", "[a]\nb=" + value + "\nc=1");
    std::string buffer(value.size() + 2, '#');
    const auto size = static_cast<ulong>(buffer.size());
    EXPECT_EQ(platform::GetPrivateProfileStringA("a", "b", nullptr, buffer.data(), size, file.c_str()),
              value.size());
    EXPECT_TRUE(buffer.compare(0, value.size(), value) == 0);
    EXPECT_EQ(Read("a", "c", file), "1");
}

// While the descriptor's lock is held the file is torn; readers wait for the whole.
void RewriteInPlace(const std::string& file, std::string_view content) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(::fcntl(descriptor, F_OFD_SETLKW, &lock), 0);
    for (std::size_t at = 0; at < content.size(); at += content.size() / 2) {
        const std::string_view half = content.substr(at, content.size() / 2);
        ASSERT_EQ(::pwrite(descriptor, half.data(), half.size(), static_cast<off_t>(at)),
                  static_cast<ssize_t>(half.size()));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::close(descriptor);
}

TEST(ReadProfile, NeverShowsATornFile) {
    const std::string pictures[] = {"[a]\nb=1\n;" + std::string(20'000, ' ') + "\nc=1\n",
                                    "[a]\nb=2\n;" + std::string(20'000, ' ') + "\nc=2\n"};
    const TemporaryFolder folder;
    const std::string file = folder.Write("torn", pictures[0]);
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    std::atomic<int> reads = 0;
    const auto readOn = [&] {
        while (!done) {
            std::string text = ReadSection("a", file);
            torn += text != "b=1|c=1|" && text != "b=2|c=2|";
            ++reads;
        }
    };
    std::thread first(readOn);
    std::thread second(readOn);
    for (int i = 0; i < 300; ++i)
        std::filesystem::rename(folder.Write("next", pictures[i % 2]), file);
    for (int i = 0; i < 60; ++i)
        RewriteInPlace(file, pictures[i % 2]);
    done = true;
    first.join();
    second.join();
    EXPECT_EQ(torn, 0);
    EXPECT_GT(reads, 100);
}

} // namespace
} // namespace corvane

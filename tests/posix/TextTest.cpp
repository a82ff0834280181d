#include "TemporaryFolder.h"

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/time.h>

namespace corvane {
namespace {

using namespace platform;

TEST(MultiByteToWideChar, ConvertsOrRefuses) {
    const std::string text = "twelve ASCII \xC3\xA4\xF0\x9F\x98\x80\xFF and more";
    const wstring wide = u"twelve ASCII \u00E4\U0001F600\uFFFD and more";
    const auto units = static_cast<int>(wide.size());
    struct Row {
        ulong codePage, flags;
        int length, capacity, expected;
        ulong error = ERROR_INVALID_PARAMETER;
    };
    const auto bytes = static_cast<int>(text.size());
    const Row rows[] = {{CP_UTF8, 0, bytes, 0, units, 0},
                        {CP_UTF8, 0, -1, 0, units + 1, 0},
                        {CP_UTF8, 0, bytes, units, units, 0},
                        {CP_UTF8, 0, -1, units + 1, units + 1, 0},
                        {CP_UTF8, 0, bytes, units - 1, 0, ERROR_INSUFFICIENT_BUFFER},
                        {CP_UTF8, 0, 0, 64, 0},
                        {CP_UTF8, 8, bytes, 64, 0},
                        {1252, 0, bytes, 64, 0}};
    for (const Row& row : rows) {
        platform::SetLastError(ERROR_SUCCESS);
        wstring buffer(64, u'#');
        const int count = platform::MultiByteToWideChar(row.codePage, row.flags, text.c_str(), row.length,
                                                        buffer.data(), row.capacity);
        EXPECT_EQ(count, row.expected);
        EXPECT_EQ(platform::GetLastError(), row.error);
        const auto written = static_cast<std::size_t>(row.capacity > 0 ? row.expected : 0);
        EXPECT_TRUE(buffer == wstring(wide.c_str(), written) + wstring(64 - written, u'#'));
    }
    EXPECT_EQ(ToUtf8(wide.substr(0, 16)), text.substr(0, 19));
}

TEST(WideComparison, GoesAsFarAsAsked) {
    EXPECT_LT(platform::_wcsicmp(u"HKEY", u"hkey\\"), 0);
    EXPECT_EQ(platform::_wcsnicmp(u"HKEY\\a", u"hkey\\b", 5), 0);
    EXPECT_LT(platform::_wcsnicmp(u"HKEY\\a", u"hkey\\b", 6), 0);
    EXPECT_EQ(platform::_wcsnicmp(u"a", u"b", 0), 0);
}

TEST(FileStatus, TellsAccessAndTime) {
    const test::TemporaryFolder folder;
    const wstring path = ToWide(folder.Write("gr\xC3\xB6\xC3\x9F\xF0\x9F\x98\x80", "12345"));
    for (const int mode : {0, 2, 4, 6})
        EXPECT_EQ(platform::_waccess(path.c_str(), mode), 0) << mode;
    platform::_stat64 info{};
    ASSERT_EQ(platform::_wstat64(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_size, 5);
    const wstring missing = path + u"x";
    for (const wchar* none : {missing.c_str(), static_cast<const wchar*>(nullptr), u""}) {
        errno = 0;
        EXPECT_EQ(platform::_waccess(none, 6), -1);
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(platform::_wstat64(none, &info), -1);
    }
}

TEST(Sleep, OutlastsSignals) {
    using namespace std::chrono;
    std::signal(SIGALRM, [](int) {});
    const itimerval soon{{0, 3000}, {0, 3000}};
    const auto begin = steady_clock::now();
    ::setitimer(ITIMER_REAL, &soon, nullptr);
    platform::Sleep(40);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(40));
    std::signal(SIGALRM, SIG_IGN);
}

} // namespace
} // namespace corvane

#include "support/LogCapture.h"

#include <corvane/config.h>
#include <corvane/foundations/FailureReport.h>
#include <corvane/foundations/StringUtility.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

namespace {

using corvane::ToUtf8;
using corvane::ToWide;

TEST(Reports, HandTheCodeBackAndLogIt) {
    LogCapture log;
    const corvane::wstring longText(600, 'x');
    EXPECT_EQ(failure_report(0, nullptr, configChannel, "F::G", 1), 0);
    EXPECT_EQ(failure_report(-7, CORVANE_TEXT(""), configChannel, "F::G", 1), -7);
    EXPECT_EQ(failure_report(5, CORVANE_TEXT("100%s %d"), configChannel, "F::G", 1), 5);
    EXPECT_EQ(failure_reportFormatted(6, nullptr, configChannel, "F::G", 1, 42), 6);
    EXPECT_EQ(failure_reportFormatted(7, CORVANE_TEXT("%s"), configChannel, "F::G", 1, longText.c_str()), 7);
    EXPECT_EQ(log.Take(), (Lines{"Error 0 at func: F::G", "Error -7 \"\" at func: F::G",
                                 "Error 5 \"100%s %d\" at func: F::G", "Error 6 at func: F::G",
                                 "Error 7 \"" + std::string(511, 'x') + "\" at func: F::G"}));
}

TEST(Formats, AreThoseOfWidePrintf) {
    const auto format = [](std::size_t capacity, const char* text, auto... arguments) {
        corvane::wchar buffer[32];
        const int result = string_safeSprintfW(buffer, capacity, ToWide(text).c_str(), arguments...);
        return std::to_string(result) + " " + ToUtf8(buffer);
    };
    const corvane::wchar* const none = nullptr;
    EXPECT_EQ(format(32, "%s|%S|%%", CORVANE_TEXT("w\u00e4"), "n\u00e4"), "0 w\u00e4|n\u00e4|%");
    EXPECT_EQ(format(32, "%d %lu", INT32_MIN, corvane::ulong{4294967295U}), "0 -2147483648 4294967295");
    EXPECT_EQ(format(32, "%s %d %x %d", none, 1, 2, 3), "0 (null) 1 %x %d");
    EXPECT_EQ(format(4, "abc"), "0 abc");
    EXPECT_EQ(format(4, "abcd"), "1 abc");
}

TEST(Logger, LetsASinkReadAConfiguration) {
    using namespace Quillon::NativeLogging;
    ConfigManager manager;
    int lines = 0;
    LoggerRegistry::setSink([&](const LogLine& line) {
        EXPECT_EQ(ToUtf8(line.channel), "corvane.config");
        ++lines;
        corvane::wstring value;
        manager.GetValue(CORVANE_TEXT("a:b"), value); // its own line is dropped
        throw 1;
    });
    corvane::wstring value;
    EXPECT_EQ(manager.GetValue(CORVANE_TEXT("nocolon"), value), FAILURE_GENERAL);
    EXPECT_GE(lines, 1);
    LoggerRegistry::setSink({});
}

TEST(Text, CrossesBetweenTheEncodings) {
    const std::pair<std::string, corvane::wstring> wellFormed[] = {
        {"plain ASCII, longer than eight", CORVANE_TEXT("plain ASCII, longer than eight")},
        {std::string("\xC3\xA4\0\xE2\x82\xAC", 6), {CORVANE_TEXT("\u00e4\0\u20ac"), 3}},
        {"\xF0\x9F\x98\x80\xEF\xBF\xBF", CORVANE_TEXT("\U0001F600\uFFFF")}};
    for (const auto& [utf8, wide] : wellFormed) {
        EXPECT_EQ(ToWide(utf8), wide);
        EXPECT_EQ(ToUtf8(wide), utf8);
    }
    // Overlong forms, a surrogate, what is too large, and what is cut.
    const std::pair<std::string, std::string> illFormed[] = {
        {"\x80", "?"},     {"\xC0\xAF", "??"},      {"\xED\xA0\x80", "???"}, {"\xF4\x90\x80\x80", "????"},
        {"\xE2\x82", "?"}, {"\xF0\x9F\x98~", "?~"}, {"\xE2~", "?~"},         {"\xFF~", "?~"}};
    for (const auto& [utf8, shown] : illFormed) {
        corvane::wstring wide = ToWide(utf8);
        std::replace(wide.begin(), wide.end(), static_cast<corvane::wchar>(0xFFFD), CORVANE_TEXT('?'));
        EXPECT_EQ(wide, ToWide(shown)) << utf8;
    }
    for (const int lone : {0xD800, 0xDBFF, 0xDC00, 0xDFFF})
        EXPECT_EQ(ToUtf8(corvane::wstring{static_cast<corvane::wchar>(lone), '~'}), "\xEF\xBF\xBD~");
}

TEST(Application, HasOneManager) {
    const auto* const first = ApplicationConfigManager::Instance();
    EXPECT_TRUE(first && first == ApplicationConfigManager::Instance());
    std::vector<std::thread> racers;
    for (int i = 0; i < 4; ++i)
        racers.emplace_back([i] {
            for (int round = 0; round < 500; ++round)
                i % 2 ? ApplicationConfigManager::Delete() : void(ApplicationConfigManager::Instance());
        });
    for (auto& racer : racers)
        racer.join();
    ApplicationConfigManager::Delete();
}

} // namespace

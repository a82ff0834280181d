#include "support/LogCapture.h"

#include <corvane/config.h>
#include <corvane/foundations/FailureReport.h>
#include <corvane/platform/Platform.h>

#include <gtest/gtest.h>
#include <thread>

namespace {

using corvane::ToUtf8;

TEST(Reports, HandTheCodeBackAndLogIt) {
    LogCapture log;
    const corvane::wstring longText(600, 'x');
    EXPECT_EQ(failure_report(0, nullptr, configChannel, "F::G", 1), 0);
    EXPECT_EQ(failure_report(-7, CORVANE_TEXT(""), configChannel, "F::G", 1), -7);
    EXPECT_EQ(failure_report(5, CORVANE_TEXT("100%s %d"), configChannel, "F::G", 1), 5);
    const corvane::wchar* const noText = nullptr;
    const corvane::wchar* const format = CORVANE_TEXT("%s %d%% %x %d"); // ends at what it does not know
    EXPECT_EQ(failure_reportFormatted(8, format, configChannel, "F::G", 1, noText, INT32_MIN, 2, 3), 8);
    EXPECT_EQ(failure_reportFormatted(6, nullptr, configChannel, "F::G", 1, 42), 6);
    EXPECT_EQ(failure_reportFormatted(7, CORVANE_TEXT("%s"), configChannel, "F::G", 1, longText.c_str()), 7);
    EXPECT_EQ(
        log.Take(),
        (Lines{"Error 0 at func: F::G", "Error -7 \"\" at func: F::G", "Error 5 \"100%s %d\" at func: F::G",
               "Error 8 \"(null) -2147483648% %x %d\" at func: F::G", "Error 6 at func: F::G",
               "Error 7 \"" + std::string(511, 'x') + "\" at func: F::G"}));
    for (const std::size_t length : {512U, 513U}) {
        const corvane::wstring text = corvane::wstring(length - 1, 'x') + corvane::wchar('y');
        Quillon::NativeLogging::LoggerRegistry::getLogger(configChannel)->logProgress(text.c_str());
        EXPECT_EQ(log.Take(), Lines{ToUtf8(text)});
    }
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
        platform::SetLastError(183);
        throw 1;
    });
    platform::SetLastError(32);
    corvane::wstring value;
    const int result = manager.GetValue(CORVANE_TEXT("nocolon"), value);
    EXPECT_EQ(platform::GetLastError(), 32U) << "a report may follow that reads it";
    EXPECT_EQ(result, FAILURE_GENERAL);
    EXPECT_GE(lines, 1);
    LoggerRegistry::setSink({});
}

// Constructed before all statics of ordinary rank, those of the library among them.
std::size_t SectionsBeforeMain() {
    std::vector<corvane::wstring> sections;
    ApplicationConfigManager::Delete();
    return ApplicationConfigManager::Instance()->EnumerateSubKeys(sections);
}
struct Early {
    std::size_t sections = SectionsBeforeMain();
};
[[gnu::init_priority(101)]] const Early early; // MSVC passes over it

TEST(Application, AnswersBeforeMain) {
    EXPECT_EQ(early.sections, 0U);
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

// What the library asks of the platform, how often, and what it makes of the answers.
#include "ScriptedPlatform.h"
#include "support/LogCapture.h"

#include <corvane/config.h>
#include <corvane/sources/CreateConfigSource.h>

#include <gtest/gtest.h>
#include <memory>

namespace {

using corvane::ToUtf8;
using corvane::ToWide;
using corvane::wstring;

class PlatformCalls : public testing::Test {
protected:
    PlatformCalls() {
        Reset();
        Platform().sections = {{"Mail", {{"Port", "25"}, {"port", "26"}, {"Empty", ""}}}, {"Net", {}}};
        Start();
    }
    void Start() {
        EXPECT_EQ(manager.Update(CORVANE_TEXT("f"), -1), 0);
        Take();
        log.Take();
    }
    static Lines Take() { return std::exchange(Platform().calls, {}); }
    IConfigSource& Source() { return *manager.GetConfigSource(); }

    LogCapture log;
    ConfigManager manager;
};

std::string Attempt(int number, int reason) {
    return "Error " + std::to_string(reason) + " \"attempt #" + std::to_string(number) +
           " to write to config file fails, will retry in 1 seconds\" at func: "
           "ConfigFile::WritePrivateProfileStringWithRetry";
}

const std::string writeA = "WriteA Mail Port 26 f";
const std::string writeW = "WriteW mail port null f";
const std::string sleeps = "Sleep 1000";

TEST_F(PlatformCalls, OfALoadAreOneForEachText) {
    EXPECT_EQ(manager.Update(CORVANE_TEXT("F"), -1), 0);
    EXPECT_EQ(Take(), (Lines{"Read null null null 1024 F", "Read Mail null null 1024 F",
                             "Read Mail Port null 1024 F", "Read Mail port null 1024 F",
                             "Read Mail Empty null 1024 F", "Read Net null null 1024 F"}));
}

TEST_F(PlatformCalls, DoubleTheBufferWhileATextMayBeCut) {
    struct Row {
        std::size_t length;
        std::vector<int> sizes;
    };
    const Row rows[] = {{1021, {1024}},
                        {1022, {1024, 2048}},
                        {1023, {1024, 2048}},
                        {2046, {1024, 2048, 4096}},
                        {5000, {1024, 2048, 4096, 8192}}};
    for (const Row& row : rows) {
        const std::string value(row.length, 'x');
        Platform().sections = {{"a", {{"b", value}}}};
        wstring text;
        EXPECT_EQ(Source().ReadValue(CORVANE_TEXT("a:b"), text), static_cast<int>(row.length));
        EXPECT_EQ(ToUtf8(text), value);
        Lines expected;
        for (const int size : row.sizes)
            expected.push_back("Read a b null " + std::to_string(size) + " f");
        EXPECT_EQ(Take(), expected);
    }
    Platform().sections = {{"a", {{"b", std::string(1018, 'x')}}}}; // "b=...": 1021 bytes with its NUL
    wstring text;
    EXPECT_EQ(Source().ReadSection(CORVANE_TEXT("a"), text), 1022);
    Platform().sections = {{"a", {{"b", std::string(1019, 'x')}}}};
    EXPECT_EQ(Source().ReadSection(CORVANE_TEXT("a"), text), 1023);
    EXPECT_EQ(Take(), (Lines{"ReadSection 1024", "ReadSection 1024", "ReadSection 2048"}));
}

TEST_F(PlatformCalls, AreRepeatedWhileAWriteIsRefused) {
    struct Row {
        std::uint32_t retries;
        std::deque<std::uint32_t> refusals;
        std::uint32_t always;
        int attempts; // refused
        bool written;
    };
    const Row rows[] = {
        {30, {}, 0, 0, true}, {30, {32, 5}, 0, 2, true}, {3, {}, 5, 3, false},
        {0, {}, 5, 1, false}, {1, {32}, 0, 1, false},    {30, {}, 32, 30, false},
    };
    for (const bool deletion : {false, true}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(std::to_string(row.retries) + (deletion ? " delete" : " write"));
            Source().SetWriteRetries(row.retries);
            EXPECT_EQ(Source().GetWriteRetries(), row.retries);
            Platform().refusals = row.refusals;
            Platform().refuseAlways = row.always;
            ++Platform().time;

            const int result = deletion ? manager.DeleteValue(CORVANE_TEXT("mail:port"))
                                        : manager.SetValue(CORVANE_TEXT("mail:port"), CORVANE_TEXT(" 26"));
            EXPECT_EQ(result, deletion || row.written ? 0 : FAILURE_GENERAL);
            wstring value;
            EXPECT_EQ(manager.GetValue(CORVANE_TEXT("mail:port"), value),
                      deletion && row.written ? FAILURE_GENERAL : 0);
            const Lines logged = log.Take();

            Lines calls;
            Lines lines;
            for (int attempt = 1; attempt <= row.attempts; ++attempt) {
                calls.insert(calls.end(), {deletion ? writeW : writeA, sleeps});
                const std::uint32_t reason = row.always ? row.always : row.refusals[std::size_t(attempt) - 1];
                lines.push_back(Attempt(attempt, static_cast<int>(reason)));
            }
            if (row.written)
                calls.push_back(deletion ? writeW : writeA);
            EXPECT_EQ(Take(), calls);
            if (!row.written)
                lines.push_back("Error " + std::to_string(Platform().lastError) +
                                " \"WritePrivateProfileString" +
                                (deletion ? "\" at func: ConfigFile::DeleteValue"
                                          : "A\" at func: ConfigFile::WriteValue"));
            if (row.written == deletion)
                lines.push_back(deletion ? "config cache section for key 'mail:port' was not found"
                                         : "Error 32768 \"mail:port\" at func: ConfigManager::_SetValue");
            EXPECT_EQ(logged, lines);
            EXPECT_EQ(manager.SourceWasModified(),
                      deletion && !row.written); // a refused write hides the change
            Platform().refuseAlways = 0;
            Start();
        }
    }
}

TEST_F(PlatformCalls, ThatThrowAreFailures) {
    Platform().throwOnWrite = true;
    ++Platform().time;
    EXPECT_EQ(Source().WriteValue(CORVANE_TEXT("a:b"), CORVANE_TEXT("c")), FAILURE_GENERAL);
    EXPECT_TRUE(manager.SourceWasModified()); // the time is not refreshed
    EXPECT_THROW(manager.DeleteValue(CORVANE_TEXT("Mail:Port")), std::runtime_error);
    Platform().throwOnRead = true;
    wstring text = CORVANE_TEXT("before");
    EXPECT_EQ(Source().ReadValue(CORVANE_TEXT("a:b"), text), FAILURE_GENERAL);
    EXPECT_EQ(Source().ReadSection(CORVANE_TEXT("a"), text), FAILURE_GENERAL);
    EXPECT_EQ(text, wstring());
    EXPECT_EQ(
        log.Take(),
        (Lines{"Error 32768 \"WritePrivateProfileStringA exception caught\" at func: ConfigFile::WriteValue",
               "Error 32768 at func: ConfigFile::ReadValue",
               "Error 32768 at func: ConfigFile::ReadSection"}));
    EXPECT_EQ(manager.Update(CORVANE_TEXT("f"), -1), FAILURE_GENERAL);
}

TEST_F(PlatformCalls, ThatFailEndASnapshot) {
    const wstring name = CORVANE_TEXT("s");
    const std::string restores = "\" at func: ConfigFile::RestoreSnapshot";
    const auto first = [this] { return log.Take().at(0); };
    Platform().touchResult = -1;
    EXPECT_EQ(Source().RestoreSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(first(), "Error 32768 \"failed to update the configuration file modification time" + restores);
    Platform().copyResult = 0;
    EXPECT_EQ(Source().RestoreSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(first(),
              "Error 32768 \"failed to copy snapshot configuration to active configuration" + restores);
    EXPECT_EQ(Take(), (Lines{"CopyFileW s f 0", "CopyFileW s f 0"}));
    Platform().accessible = false;
    EXPECT_EQ(Source().RestoreSnapshot(name), EACCES);
    EXPECT_EQ(first(), "Error 13 \"cannot access the specified configuration file" + restores);
    wstring made = name;
    EXPECT_EQ(Source().CreateSnapshot(made), FAILURE_GENERAL);
    EXPECT_EQ(made, name);
    EXPECT_EQ(Take(), Lines{"CopyFileW f f.0 1"});
}

} // namespace

#include "support/ConfigFixture.h"

namespace {

class Reading : public ConfigFixture {};

std::string Report(const std::string& key) {
    return "Error 32768 \"" + key + "\" at func: ConfigManager::_GetValue";
}

TEST_F(Reading, AnswersByKey) {
    EXPECT_FALSE(Exists("Mail:Port"));
    EXPECT_EQ(log.Take(), Lines{});
    EXPECT_EQ(Get("Mail:Port"), "<none>"); // no source
    EXPECT_EQ(log.Take(), Lines{Report("Mail:Port")});
    Start("[Mail]\nPort=25\nPort:Alt=587\n[Bare]\n");
    const std::string section = "config cache section for key '";
    const std::string item = "config cache item for key '";
    const struct {
        const char *key, *value;
        bool exists;
        std::string line; // of the read; Exists never logs
    } rows[] = {
        {"Mail:Port", "25", true, ""},
        {"MAIL:pORT", "25", true, ""},
        {"Mail:Port:Alt", "587", true, ""},
        {"Mail:Nope", "<none>", false, item + "Mail:Nope' was not found"},
        {"Mail:", "<none>", true, item + "Mail:' was not found"},
        {"Bare:", "<none>", true, item + "Bare:' was not found"},
        {"Nope:Port", "<none>", false, section + "Nope:Port' was not found"},
        {":Port", "<none>", false, section + ":Port' was not found"},
        {"nocolon", "<none>", false, Report("nocolon")},
        {"100%s%d", "<none>", false, Report("100%s%d")},
        {"", "<none>", false, Report("")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key);
        EXPECT_EQ(Exists(row.key), row.exists);
        EXPECT_EQ(log.Take(), Lines{});
        EXPECT_EQ(Get(row.key), row.value);
        corvane::wstring value = CORVANE_TEXT("before");
        EXPECT_EQ(manager.GetValue(Wide(row.key), value, CORVANE_TEXT("default")), 0);
        EXPECT_EQ(corvane::ToUtf8(value), row.line.empty() ? row.value : "default");
        EXPECT_EQ(log.Take(), row.line.empty() ? Lines{} : (Lines{row.line, row.line}));
    }
}

TEST_F(Reading, IsTraced) {
    Start("[Mail]\nPort=25\n");
    using namespace Quillon::NativeLogging;
    LoggerRegistry::setThreshold(Severity::trace);
    Get("mail:port");
    Set("mail:port", "26");
    Delete("mail:port");
    EXPECT_EQ(log.Take(), (Lines{"GetValue: key: 'mail:port'", "GetValue: key: 'mail:port', value: '25'",
                                 "SetValue: key: 'mail:port', value:'26', cacheOnly = false",
                                 "DeleteValue: key: 'mail:port'"}));
}

TEST_F(Reading, ListsInTheOrderOfTheCache) {
    Start("[b]\nz=1\nA=2\n_=3\n[A]\n[1]\n");
    EXPECT_EQ(Set("_$CACHE$_:t", "v"), 0);
    EXPECT_EQ(List(), "1,_$CACHE$_,A,b");
    EXPECT_EQ(List("B:whatever"), "_,A,z");
    EXPECT_EQ(List("_$CACHE$_:"), "t");

    std::vector<corvane::wstring> names(2);
    EXPECT_EQ(manager.EnumerateTags(CORVANE_TEXT("b:"), names), 5U); // added to what was there
    for (const auto* key : {CORVANE_TEXT("nope:"), CORVANE_TEXT("b"), CORVANE_TEXT(":b"), CORVANE_TEXT("")})
        EXPECT_EQ(manager.EnumerateTags(key, names), 0U);
    std::list<corvane::wstring> asList(1);
    EXPECT_EQ(manager.EnumerateTags(CORVANE_TEXT("b:"), asList) + manager.EnumerateSubKeys(names), 4U + 9U);
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(Reading, JoinsKeys) {
    const corvane::wstring embedded(CORVANE_TEXT("a\0b"), 3);
    const corvane::wchar* const none = nullptr;
    EXPECT_EQ(manager.BuildKey(none, none), CORVANE_TEXT(":"));
    EXPECT_EQ(manager.BuildKey(CORVANE_TEXT("s"), none), CORVANE_TEXT("s:"));
    EXPECT_EQ(manager.BuildKey(none, embedded), CORVANE_TEXT(":a"));
    EXPECT_EQ(manager.BuildKey(embedded, embedded), CORVANE_TEXT("a:a"));
}

} // namespace

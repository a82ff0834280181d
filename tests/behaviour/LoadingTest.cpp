#include "support/ConfigFixture.h"
#include "support/Differences.h"

#include <atomic>
#include <thread>

namespace {

class Loading : public ConfigFixture {};

const std::string sample = "[Mail]\nPort=25\nHost=h\u00e4user.example\nEmpty=\n[Bare]\n[mail]\nPort=26\n";

TEST_F(Loading, BringsEverySectionAndTag) {
    Put(sample);
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(log.Take(), (Lines{"loading config from '" + file.u8string() + "'"}));
    EXPECT_TRUE(manager.IsReady());
    EXPECT_EQ(corvane::ToUtf8(manager.GetConfigName()), file.u8string());
    EXPECT_EQ(List(), "Bare,Mail");
    EXPECT_EQ(List("Mail:"), "Host,Port");
    EXPECT_EQ(Get("Mail:Port"), "25");
    EXPECT_EQ(Get("MAIL:host"), "h\u00e4user.example");
}

TEST_F(Loading, IsSkippedOnlyWhenNothingCanHaveChanged) {
    Start(sample);
    IConfigSource* const source = manager.GetConfigSource();
    for (const int policy : {0, 1}) {
        EXPECT_EQ(Load(policy), 0);
        EXPECT_EQ(log.Take(), Lines{"config source was not modified, reload not performed"});
        EXPECT_EQ(manager.GetConfigSource(), source);
    }
    EXPECT_EQ(Load(-1), 0);
    EXPECT_EQ(log.Take().size(), 1U);

    Put("[Mail]\nPort=99\n");
    EXPECT_TRUE(manager.SourceWasModified());
    EXPECT_EQ(Get("Mail:Port"), "25"); // the picture of the last load
    EXPECT_EQ(Load(), 0);
    EXPECT_EQ(Get("Mail:Port"), "99");
    EXPECT_FALSE(manager.SourceWasModified());

    MoveTime(file, -10); // older is not modified
    EXPECT_FALSE(manager.SourceWasModified());
}

TEST_F(Loading, FailsWithoutATraceInTheManager) {
    const std::string failed = "Error 32768 \"failed to initialize config manager from '%'\" at func: "
                               "ConfigManager::Update";
    const std::string bare = "Error 32768 at func: ConfigManager::Initialize";
    struct Row {
        const char* name;
        std::string content;
        const char* problem;
    };
    const Row rows[] = {
        {"missing", "-", "new configuration object is not ready"},
        {"empty", "", "failed to get sections from new config source"},
        {"no section", "a=b\n", "failed to get sections from new config source"},
        {"UTF-16", std::string("\xFF\xFE[\0a\0]\0", 8), "failed to get sections from new config source"},
        {"binary", std::string("\0\x01\x02\xFF\xFE\x80\n\0", 8),
         "failed to get sections from new config source"},
        {"reserved", "[Mail]\nPort=1\n[_$CACHE$_]\na=b\n", "cache node specified in config file (illegal)"},
    };
    Start(sample);
    ASSERT_EQ(Set("_$CACHE$_:Token", "kept", true), 0);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (differences::filesInUtf16AreRead && row.name == std::string("UTF-16"))
            continue;
        const fs::path other = folder.Path() / "other.cfg";
        fs::remove(other);
        if (row.content != "-")
            WriteFile(other, row.content);
        log.Take();
        EXPECT_EQ(manager.Update(WidePath(other).c_str(), 0), FAILURE_GENERAL);
        std::string last = failed;
        last.replace(last.find('%'), 1, other.u8string());
        EXPECT_EQ(log.Take(),
                  (Lines{"loading config from '" + other.u8string() + "'", row.problem, bare, last}));
        EXPECT_EQ(Get("Mail:Port"), "25");
        EXPECT_EQ(Get("_$CACHE$_:Token"), "kept");
        EXPECT_EQ(corvane::ToUtf8(manager.GetConfigName()), file.u8string());
    }
}

TEST_F(Loading, RefusesAnEmptyName) {
    for (const corvane::wchar* name : {static_cast<const corvane::wchar*>(nullptr), CORVANE_TEXT("")}) {
        EXPECT_EQ(manager.Update(name, -1), FAILURE_GENERAL);
        const std::string shown = name ? "" : "(null)";
        EXPECT_EQ(log.Take(),
                  (Lines{"Error 32768 \"empty or invalid config name\" at func: ConfigManager::Initialize",
                         "Error 32768 \"failed to initialize config manager from '" + shown +
                             "'\" at func: ConfigManager::Update"}));
    }
}

TEST_F(Loading, KeepsTheOldConfigurationWhenTheFileGoes) {
    Start(sample);
    fs::remove(file);
    EXPECT_TRUE(manager.SourceWasModified());
    EXPECT_EQ(Load(), FAILURE_GENERAL);
    EXPECT_EQ(Get("Mail:Port"), "25");
}

TEST_F(Loading, TakesWhatAFileMayHold) {
    struct Row {
        const char* content;
        const char* key;
        const char* value;
    };
    const Row rows[] = {
        {"\xEF\xBB\xBF[a]\r\nb=c\r\n", "a:b", "c"},
        {"[a]\nb = \" c \"\n", "a:b", " c "},
        {"[a]\n; b=1\n  b\t=\t2 \n", "a:b", "2"},
        {"[a]\nb=1\nB=2\n", "a:b", "1"},
        {"[a]\nx=1\n[A]\nb=2\n", "a:b", "<none>"},
        {"[a]\nb=c", "a:b", "c"},
        {"[a]\nb:c=d\n", "a:b:c", "d"},
        {"[a:b]\nc=d\n", "a:b", "<none>"},
        {"[a]\nb=\n", "a:b", "<none>"},
        {"[_$cache$_]\nb=c\n", "_$cache$_:b", "c"},
        {"[a]\nb=\xF0\x9F\x98\x80\n", "a:b", "\xF0\x9F\x98\x80"},
        {"[a]\nb=1\xFF"
         "2\n",
         "a:b",
         "1\xEF\xBF\xBD"
         "2"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.content);
        Put(row.content);
        ASSERT_EQ(Load(-1), 0);
        EXPECT_EQ(Get(row.key), row.value);
    }
}

TEST_F(Loading, TakesALongLineAndManyTags) {
    const std::string longValue(3'000'000, 'x');
    std::string content = "[Long]\nvalue=" + longValue + "\n[Many]\n";
    for (int i = 0; i < 5000; ++i)
        content += "tag" + std::to_string(i) + "=value " + std::to_string(i) + "\n";
    Put(content);
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Get("Long:value"), longValue);
    EXPECT_EQ(Get("Many:tag4999"), "value 4999");
    std::vector<corvane::wstring> tags;
    EXPECT_EQ(manager.EnumerateTags(CORVANE_TEXT("Many:"), tags), 5000U);
}

TEST_F(Loading, ShowsOnePictureOfAFileThatIsReplacedMeanwhile) {
    if (differences::loadsMixAFileThatIsReplaced)
        GTEST_SKIP() << "the operations read each value by itself";
    const auto text = [](int version) {
        std::string content;
        for (int tag = 0; tag < 2000; ++tag)
            content += (tag % 100 ? "" : "[s" + std::to_string(tag) + "]\n") + std::string("t") +
                       std::to_string(tag) + "=" + std::to_string(version) + "\n";
        return content;
    };
    Start(text(0));
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int version = 1; !done; ++version) {
            WriteFile(folder.Path() / "next", text(version));
            std::error_code ignored; // Windows replaces no file that is open
            fs::rename(folder.Path() / "next", file, ignored);
        }
    });
    int mixed = 0;
    for (int loads = 0; loads < 40; ++loads) {
        ASSERT_EQ(Load(-1), 0);
        mixed += Get("s0:t0") != Get("s1900:t1999");
    }
    done = true;
    writer.join();
    EXPECT_EQ(mixed, 0);
}

TEST_F(Loading, IsUndoneByClear) {
    Start(sample);
    manager.Clear();
    EXPECT_FALSE(manager.IsReady());
    EXPECT_EQ(manager.GetConfigName(), nullptr);
    EXPECT_EQ(manager.GetConfigSource(), nullptr);
    EXPECT_TRUE(manager.SourceWasModified());
    EXPECT_EQ(Get("Mail:Port"), "<none>");
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Set("_$CACHE$_:a", "b"), 0); // still kept away from the file
    EXPECT_EQ(Bytes(file), sample);
}

TEST_F(Loading, IsSharedByCopies) {
    Start(sample);
    ConfigManager second;
    {
        ConfigManager first(manager);
        second = first;
        manager.Clear();
        second = *&second;
    }
    corvane::wstring value;
    EXPECT_EQ(second.GetValue(CORVANE_TEXT("Mail:Port"), value), 0);
    EXPECT_EQ(second.SetValue(CORVANE_TEXT("Mail:Port"), CORVANE_TEXT("7")), 0);
    EXPECT_NE(differences::InLf(Bytes(file)).find("Port=7\n"), std::string::npos);
}

} // namespace

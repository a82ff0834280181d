#include "support/ConfigFixture.h"

#include <algorithm>
#include <cctype>

namespace {

class Loading : public ConfigFixture {};

TEST_F(Loading, IsSkippedOnlyWhenNothingCanHaveChanged) {
    Put("[Mail]\nPort=25\nHost=h\u00e4user.example\nEmpty=\n[Bare]\n[mail]\nPort=26\n");
    const Lines loading = {"loading config from '" + file.u8string() + "'"};
    for (const int policy : {-1, 0, 1, -1}) {
        EXPECT_EQ(Load(policy), 0);
        EXPECT_EQ(log.Take(),
                  policy < 0 ? loading : Lines{"config source was not modified, reload not performed"});
    }
    std::string shouted = file.u8string();
    std::transform(shouted.begin(), shouted.end(), shouted.begin(),
                   [](char c) { return static_cast<char>(std::toupper(c)); });
    EXPECT_EQ(manager.Update(Wide(shouted).c_str(), 0), 0) << "the same configuration";
    EXPECT_TRUE(manager.IsReady());
    EXPECT_EQ(corvane::ToUtf8(manager.GetConfigName()), file.u8string());
    EXPECT_EQ(List() + " " + List("Mail:") + " " + Get("MAIL:host"),
              "Bare,Mail Host,Port h\u00e4user.example");
    Put("[Mail]\nPort=99\n");
    EXPECT_TRUE(manager.SourceWasModified());
    EXPECT_EQ(Get("Mail:Port"), "25"); // as of the last load
    EXPECT_EQ(Load(), 0);
    EXPECT_EQ(Get("Mail:Port"), "99");
    EXPECT_FALSE(manager.SourceWasModified());
    MoveTime(file, -10); // older is not modified
    EXPECT_FALSE(manager.SourceWasModified());
    fs::remove(file);
    EXPECT_TRUE(manager.SourceWasModified());
    manager.Clear();
    EXPECT_FALSE(manager.IsReady());
    EXPECT_EQ(manager.GetConfigName(), nullptr);
    EXPECT_TRUE(manager.SourceWasModified());
}

TEST_F(Loading, FailsWithoutATraceInTheManager) {
    Start("[Mail]\nPort=25\n");
    ASSERT_EQ(Set("_$CACHE$_:Token", "kept", true), 0);
    const auto fails = [this](const corvane::wchar* name, Lines lines) {
        EXPECT_EQ(manager.Update(name, 0), FAILURE_GENERAL);
        lines.push_back("Error 32768 \"failed to initialize config manager from '" +
                        (name ? corvane::ToUtf8(name) : "(null)") + "'\" at func: ConfigManager::Update");
        EXPECT_EQ(log.Take(), lines);
        EXPECT_EQ(Get("Mail:Port") + Get("_$CACHE$_:Token"), "25kept");
        EXPECT_EQ(corvane::ToUtf8(manager.GetConfigName()), file.u8string());
        log.Take();
    };
    const std::string byInitialize = " at func: ConfigManager::Initialize";
    for (const corvane::wchar* name : {static_cast<const corvane::wchar*>(nullptr), CORVANE_TEXT("")})
        fails(name, {"Error 32768 \"empty or invalid config name\"" + byInitialize});
    const std::string noSections = "failed to get sections from new config source";
    const std::pair<std::string, std::string> rows[] = {
        // the content, or none, and the problem
        {"-", "new configuration object is not ready"},
        {"a=b\n", noSections},
        {std::string("\xFF\xFE[\0a\0]\0", 8), noSections},
        {std::string("\0\x01\x02\xFF\xFE\x80\n\0", 8), noSections},
        {"[Mail]\nPort=1\n[_$CACHE$_]\na=b\n", "cache node specified in config file (illegal)"}};
    for (const auto& [content, problem] : rows) {
        SCOPED_TRACE(content);
        if (differences::filesInUtf16AreRead && content[0] == '\xFF')
            continue;
        const std::string other = (folder.Path() / "other.cfg").u8string();
        if (content != "-")
            WriteFile(other, content);
        fails(Wide(other).c_str(),
              {"loading config from '" + other + "'", problem, "Error 32768" + byInitialize});
    }
}

TEST_F(Loading, TakesWhatAFileMayHold) {
    const struct {
        const char *content, *key, *value;
    } rows[] = {{"\xEF\xBB\xBF[a]\r\nb=c\r\n", "a:b", "c"},
                {"[a]\nb = \" c \"\n", "a:b", " c "},
                {"[a]\nb=1\nB=2\n", "a:b", "1"},
                {"[a]\nx=1\n[A]\nb=2\n", "a:b", "<none>"},
                {"[a]\nb:c=d", "a:b:c", "d"},
                {"[a:b]\nc=d\n", "a:b", "<none>"},
                {"[a]\nb=\n", "a:b", "<none>"},
                {"[_$cache$_]\nb=c\n", "_$cache$_:b", "c"},
                {"[a]\nb=\xF0\x9F\x98\x80\xFF\n", "a:b", "\xF0\x9F\x98\x80\xEF\xBF\xBD"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        Put(row.content);
        ASSERT_EQ(Load(-1), 0);
        EXPECT_EQ(Get(row.key), row.value);
    }
}

TEST_F(Loading, ReadsADoubledSectionOnce) { // each double anew would take until the test's time is out
    std::string content = "[a]\n";
    for (int tag = 0; tag < 5000; ++tag)
        content += "t" + std::to_string(tag) + "=1\n";
    for (int section = 0; section < 1'000'000; ++section)
        content += "[A]\n";
    Start(content + "[b]\nc=2\n");
    EXPECT_EQ(List() + Get("A:t4999") + Get("b:c"), "a,b12");
}

TEST_F(Loading, GoesOnWhenALogSinkLoads) {
    const fs::path other = folder.Path() / "another configuration.cfg";
    WriteFile(other, "[Mail]\nPort=5\n");
    for (const bool restore : {false, true}) {
        Start("[Mail]\nPort=25\n");
        corvane::wstring snapshot;
        ASSERT_EQ(manager.CreateSnapshot(snapshot), 0);
        Put("[Mail]\nPort=26\n");
        log.OnLine([&] { EXPECT_EQ(manager.Update(WidePath(other).c_str(), -1), 0); });
        // The name ends with the source, which the sink replaces.
        EXPECT_EQ(restore ? manager.RestoreSnapshot(snapshot) : manager.Update(manager.GetConfigName(), 0),
                  0);
        log.OnLine({});
        EXPECT_EQ(log.Take().size(), restore ? 2U : 1U);
        EXPECT_EQ(Bytes(file), restore ? "[Mail]\nPort=25\n" : "[Mail]\nPort=26\n");
        EXPECT_EQ(Get("Mail:Port"), restore ? "5" : "26") << "the last load stands";
    }
}

} // namespace

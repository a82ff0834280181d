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
    EXPECT_EQ(static_cast<bool>(corvane::Load(manager, shouted)), fs::exists(shouted)) << "another file";
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
    EXPECT_EQ(corvane::Reload(manager).reason, "cannot reload: no configuration is loaded");
    Start("[Mail]\nPort=25\n");
    ASSERT_EQ(Set("_$CACHE$_:Token", "kept", true), 0);
    const std::string other = (folder.Path() / "other.cfg").u8string();
    const std::string noSections = "failed to get sections from new config source";
    const struct {
        std::string path;
        std::optional<std::string> content;
        std::string problem; // in the log
        const char* cause;
    } rows[] = {
        {"", {}, "", "the path is empty"},
        {folder.Path().u8string(), {}, noSections, "it is a folder"},
        {other, {}, "new configuration object is not ready", "there is no such file"},
        {other, "a=b\n", noSections, "it has no [section]"},
        {other, std::string("\0\x01\x02\xFF\xFE\x80\n\0", 8), noSections, "it has no [section]"},
        {other, "[Mail]\nPort=1\n[_$CACHE$_]\na=b\n", "cache node specified in config file (illegal)",
         "it has a section [_$CACHE$_], a name that no file may use"},
    };
    for (const auto& [path, content, problem, cause] : rows) {
        SCOPED_TRACE(cause);
        if (content)
            WriteFile(path, *content);
        const corvane::LoadResult result = corvane::Load(manager, path);
        EXPECT_EQ(result.code, FAILURE_GENERAL);
        EXPECT_EQ(result.reason, "cannot load '" + path + "': " + cause);
        Lines lines = {"Error 32768 \"empty or invalid config name\" at func: ConfigManager::Initialize"};
        if (!path.empty())
            lines = {"loading config from '" + path + "'", problem,
                     "Error 32768 at func: ConfigManager::Initialize"};
        lines.push_back("Error 32768 \"failed to initialize config manager from '" + path +
                        "'\" at func: ConfigManager::Update");
        EXPECT_EQ(log.Take(), lines);
        EXPECT_EQ(Get("Mail:Port") + Get("_$CACHE$_:Token"), "25kept");
        EXPECT_EQ(corvane::ToUtf8(manager.GetConfigName()), file.u8string());
    }
    EXPECT_EQ(manager.Update(nullptr, 0), FAILURE_GENERAL);
    EXPECT_EQ(log.Take().back().find("Error 32768 \"failed to initialize config manager from '(null)'"), 0U);
    const std::string withNul("a\0b", 3);
    EXPECT_EQ(corvane::Load(manager, withNul).reason,
              "cannot load '" + withNul + "': a path cannot contain a NUL character");
    fs::remove(file);
    EXPECT_EQ(corvane::Reload(manager).reason,
              "cannot load '" + file.u8string() + "': there is no such file");
    WriteFile(other, std::string("\xFF\xFE[\0a\0]\0", 8));
    EXPECT_EQ(corvane::Load(manager, other).reason,
              differences::filesInUtf16AreRead
                  ? ""
                  : "cannot load '" + other + "': it is in UTF-16; it has to be in UTF-8");
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

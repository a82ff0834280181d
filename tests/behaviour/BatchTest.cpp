// Many changes at once: all of them or none.
#include "support/ConfigFixture.h"

#include <limits>
#include <sstream>

namespace {

class Batch : public ConfigFixture {
protected:
    enum Interface { exact, comfort };

    /// Makes the changes `Section:Tag=value` and `-Section:Tag` between the bars.
    bool Write(Interface interface, const std::string& script) {
        std::vector<corvane::ConfigChange> changes;
        corvane::WriteBatch batch;
        std::istringstream lines(script);
        for (std::string line; std::getline(lines, line, '|');) {
            const auto equals = line.find('=');
            if (line[0] == '-') {
                batch.Delete(line.substr(1));
                changes.push_back({Wide(line.substr(1)), {}});
            } else {
                batch.Set(line.substr(0, equals), line.substr(equals + 1));
                changes.push_back({Wide(line.substr(0, equals)), Wide(line.substr(equals + 1))});
            }
        }
        return interface == exact ? manager.ApplyChanges(changes) == 0 : corvane::Write(manager, batch);
    }

    std::string Shown() const {
        std::string text;
        for (const std::string& section : corvane::Sections(manager)) {
            text += '[' + section + ']';
            for (const auto& [tag, value] : corvane::Tags(manager, section))
                text += tag + '=' + value + ' ';
        }
        return text;
    }
};

TEST_F(Batch, ChangesFileAndCacheInOrder) {
    const std::string text = "; c\r\n[Mail]\r\nPort=25\r\nEmpty=\r\n[Net]\r\nMTU=1\r\n";
    const struct {
        const char *script, *file, *cache;
    } rows[] = {
        {"", nullptr, "[Mail]Port=25 [Net]MTU=1 [Session]a=0 "},
        {"-No:x|-Mail:No|-No:|-Mail: Port|mail:PORT=25", nullptr, "[Mail]Port=25 [Net]MTU=1 [Session]a=0 "},
        {"MAIL:port=26|Mail:Host=h|New:\u00e4=1|-mail:Host|New:B=2|Mail:Host=i",
         "; c\r\n[Mail]\r\nPort=26\r\nEmpty=\r\nHost=i\r\n[Net]\r\nMTU=1\r\n[New]\r\n\u00e4=1\r\nB=2\r\n",
         "[Mail]Host=i Port=26 [Net]MTU=1 [New]B=2 \u00e4=1 [Session]a=0 "},
        {"Mail:A=1|-Mail:|Mail:Host=h|-Net:MTU|-Session:a", "; c\r\n[Net]\r\n[Mail]\r\nHost=h\r\n",
         "[Mail]Host=h "},
        {"-Mail:Empty|Net:A=1|New:B=1|-Net:|-new:", "; c\r\n[Mail]\r\nPort=25\r\n",
         "[Mail]Port=25 [Session]a=0 "},
        {"Session:b=2|-SESSION:a|Net:MTU=2", "; c\r\n[Mail]\r\nPort=25\r\nEmpty=\r\n[Net]\r\nMTU=2\r\n",
         "[Mail]Port=25 [Net]MTU=2 [Session]b=2 "},
        {"-Session:|Session:c=3|_$CACHE$_:t=2", nullptr,
         "[_$CACHE$_]t=2 [Mail]Port=25 [Net]MTU=1 [Session]c=3 "}};
    for (const auto& row : rows) {
        for (const Interface interface : {exact, comfort}) {
            SCOPED_TRACE(row.script);
            manager.Clear();
            Start(text);
            ASSERT_EQ(Set("Session:a", "0", true), 0);
            EXPECT_TRUE(Write(interface, row.script));
            EXPECT_EQ(log.Take(), Lines{});
            EXPECT_EQ(Bytes(file), row.file ? row.file : text);
            EXPECT_EQ(Shown(), row.cache);
            EXPECT_FALSE(manager.SourceWasModified());
        }
    }
    ASSERT_TRUE(Write(exact, "-Session:c") && Write(exact, "Session:d=1"));
    EXPECT_NE(Bytes(file).find("d=1"), std::string::npos) << "a section that is gone is the cache's no more";
    corvane::wstring key = CORVANE_TEXT("Net: t");
    key[4] = 0; // where the name of the tag ends
    EXPECT_EQ(manager.ApplyChanges({{key, std::nullopt}}), 0);
    EXPECT_EQ(Bytes(file).find("[Net]"), std::string::npos);
    EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(Batch, WithOneRefusalChangesNothing) {
    EXPECT_FALSE(Write(exact, "S:a=1") || Write(comfort, "S:a=1")); // no source
    log.Take();
    const std::string function = "ConfigManager::ApplyChanges";
    const std::string text = "[S]\r\na=1\r\n";
    Start(text);
    const struct {
        std::string script, key, exact, comfort; // what the log says, of the source and of the manager
    } rows[] = {{"nocolon=2", "nocolon", "", "a key is a section, a colon and a tag"},
                {":a=2", ":a", "", "a key is a section, a colon and a tag"},
                {"S:=2", "S:", "", "a key is a section, a colon and a tag"},
                {"-_$CACHE$_:t", "_$CACHE$_:t", "", "the section _$CACHE$_ is kept in the cache alone"},
                {"S:a=b\nc", "S:a", "a line break cannot stand in a profile section, tag or value",
                 "a value cannot contain a line break or a NUL character"},
                {"S:;b=2", "S:;b", "a profile tag cannot begin with ';' or '[', nor have '=' in it",
                 "a tag cannot contain '=' or begin with ';' or '['"}};
    for (const auto& row : rows) {
        for (const Interface interface : {exact, comfort}) {
            SCOPED_TRACE(row.script);
            EXPECT_FALSE(Write(interface, "S:a=2|Session:a=2|" + row.script + "|S:b=3"));
            const auto said = [&row](const std::string& reason) {
                return "Error 32768 \"" + reason + ": '" + row.key + "'\" at func: ";
            };
            EXPECT_EQ(log.Take(), interface == comfort ? Lines{said(row.comfort) + "corvane::Write"}
                                  : row.exact.empty()
                                      ? Lines{"Error 32768 \"" + row.key + "\" at func: " + function}
                                      : (Lines{said(row.exact) + "ConfigFile::WriteChanges",
                                               "Error 32768 at func: " + function}));
            EXPECT_EQ(Bytes(file) + Shown(), text + "[S]a=1 ");
        }
    }
    EXPECT_EQ(manager.GetConfigSource()->IConfigSource::WriteChanges({{Wide("S:a"), {}}}), FAILURE_GENERAL);
    EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(Batch, CollectsTypedValuesAndCanBeUsedAgain) {
    corvane::WriteBatch batch;
    EXPECT_TRUE(batch.Empty() && corvane::Write(manager, batch));
    batch.Set("S:Int", 7).Set("S:Time", std::chrono::milliseconds(5)).Set("S:Blank", " x ");
    corvane::WriteBatch copy = batch;
    copy.Set("S:Int", 8).Delete("S:Time");
    for (const auto& [each, expected] : {std::pair(&batch, "[S]Blank= x  Int=7 Time=5ms "),
                                         {&copy, "[S]Blank= x  Int=8 "},
                                         {&batch, "[S]Blank= x  Int=7 Time=5ms "}}) {
        Start("[S]\n");
        EXPECT_TRUE(corvane::Write(manager, *each));
        EXPECT_EQ(Shown(), expected);
        ASSERT_TRUE(corvane::Reload(manager));
        EXPECT_EQ(Shown(), expected);
    }
    log.Take();
    const char* const none = nullptr;
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (auto* bad : {&copy.Set("S:Null", none), &batch.Set("S:NaN", notANumber)}) {
        EXPECT_FALSE(corvane::Write(manager, *bad));
        EXPECT_EQ(log.Take().size(), 1U);
        bad->Clear();
        EXPECT_TRUE(corvane::Write(manager, *bad));
    }
}

// Who has the file open keeps it from being written or replaced, where the system goes by that.
TEST_F(Batch, OfAFileInUseIsWholeOrRefused) {
    const std::string text = "[S]\r\na=1\r\n";
    Start(text);
    manager.GetConfigSource()->SetWriteRetries(0);
    const fs::path left = file.u8string() + ".corvane-batch"; // by a killed process, on Windows
    WriteFile(left, "[S]\r\na=half");
    {
        const std::ofstream writer(file, std::ios::app);
        EXPECT_EQ(Write(exact, "S:a=1|S:b=2|-S:b"), !differences::filesInUseAreRefused);
        EXPECT_EQ(Bytes(file), text);
    }
    {
        const std::ifstream reader(file);
        EXPECT_EQ(Write(exact, "S:a=2|S:b=3"), !differences::filesInUseAreRefused);
        EXPECT_EQ(Bytes(file), differences::filesInUseAreRefused ? text : "[S]\r\na=2\r\nb=3\r\n");
        EXPECT_EQ(fs::exists(left), !differences::batchesMakeACopy);
    }
    EXPECT_TRUE(Write(exact, "S:a=2|S:b=3"));
    EXPECT_EQ(Bytes(file), "[S]\r\na=2\r\nb=3\r\n");
    fs::create_hard_link(file, folder.Path() / "hard");
    EXPECT_EQ(Write(exact, "S:a=3"), !differences::batchesMakeACopy) << "which would part the two names";
    WriteFile(left, "[S]\r\na=half");
    fs::remove(folder.Path() / "hard");
    EXPECT_EQ(Set("S:a", "4"), 0);
    EXPECT_EQ(fs::exists(left), !differences::batchesMakeACopy);
}

} // namespace

// The source by itself: what a program sees that asks it directly.
#include "support/ConfigFixture.h"

#include <corvane/sources/ConfigFile.h>
#include <corvane/sources/CreateConfigSource.h>

namespace {

class Source : public ConfigFixture {
protected:
    std::unique_ptr<IConfigSource> Open(const std::string& content) {
        Put(content);
        return std::unique_ptr<IConfigSource>(CreateConfigSource(WidePath(file).c_str()));
    }
    static std::pair<int, std::string> Read(IConfigSource& source, const std::string& key) {
        corvane::wstring value;
        const int result = source.ReadValue(Wide(key), value);
        corvane::wstring same = Wide(key);
        EXPECT_TRUE(result == FAILURE_GENERAL || (source.ReadValue(same, same) == result && same == value));
        return {result, corvane::ToUtf8(value)};
    }
};

using Text = std::pair<int, std::string>;

TEST_F(Source, IsReadyForAFileThatIsThere) {
    EXPECT_EQ(CreateConfigSource(nullptr), nullptr);
    for (const auto& name : {WidePath(file), corvane::wstring()}) {
        const std::unique_ptr<IConfigSource> source(CreateConfigSource(name.c_str()));
        EXPECT_FALSE(source->IsReady());
        EXPECT_EQ(source->GetConfigName(), corvane::wstring());
        EXPECT_EQ(source->GetModifyTime(), 0);
        EXPECT_EQ(log.Take(), Lines{});
        EXPECT_EQ(Read(*source, "a:b"), Text(FAILURE_GENERAL, ""));
        EXPECT_EQ(source->WriteValue(CORVANE_TEXT("a:b"), CORVANE_TEXT("c")), FAILURE_GENERAL);
        corvane::wstring snapshot;
        EXPECT_EQ(source->RestoreSnapshot(snapshot), FAILURE_GENERAL);
        EXPECT_EQ(
            log.Take(),
            (Lines{"Error 32768 at func: ConfigFile::ReadValue",
                   "Error 32768 at func: ConfigFile::WriteValue",
                   "Error 32768 \"invalid configuration file name\" at func: ConfigFile::RestoreSnapshot"}));
    }
}

TEST_F(Source, ReadsByTheFormOfTheKey) {
    using namespace std::string_literals;
    const auto source = Open("[Mail]\nPort=25\nEmpty=\n[Net]\nx=h\u00e4\n");
    for (const auto& [key, text] : {std::pair("mail:PORT", Text(2, "25")),
                                    {"Net:x", {3, "h\u00e4"}},
                                    {"Mail:Empty", {0, ""}},
                                    {"Nope:Port", {0, ""}},
                                    {"Mail:", {12, "Port\0Empty\0\0"s}},
                                    {":Port", {10, "Mail\0Net\0\0"s}},
                                    {"nocolon", {FAILURE_GENERAL, ""}}})
        EXPECT_EQ(Read(*source, key), text) << key;
    struct OneKey : ConfigFile {
        using ConfigFile::ConfigFile;
        bool ParseKey(const corvane::wstring&, corvane::wstring& section, corvane::wstring& tag) override {
            return ConfigFile::ParseKey(CORVANE_TEXT("Mail:Port"), section, tag);
        }
    } derived(WidePath(file).c_str());
    EXPECT_EQ(Read(derived, "nocolon"), Text(2, "25"));
}

TEST_F(Source, FindsNothingByANameThatHasNoUtf8) {
    const std::string lengthy(100, 'n');
    const auto source = Open("[s]\n\uFFFD=1\n" + lengthy + "\uFFFD=2\n");
    for (const std::string& name : {std::string(), lengthy}) {
        corvane::wstring value;
        EXPECT_EQ(source->ReadValue(Wide("s:" + name) + corvane::wchar(0xD83D), value), FAILURE_GENERAL);
        EXPECT_EQ(value, corvane::wstring());
    }
}

TEST_F(Source, ReadsAndListsTextsOfAnyLength) {
    const std::size_t lengths[] = {1021, 1022, 1023, 1024, 2046, 100'000, 3'000'000};
    std::string content = "[v]\n";
    for (const std::size_t length : lengths)
        content += "t" + std::to_string(length) + "=" + std::string(length, 'x') + "\n";
    for (int i = 0; i < 300; ++i)
        content += "[section " + std::to_string(i) + "]\n";
    const auto source = Open(content);
    std::vector<corvane::wstring> names(1);
    EXPECT_TRUE(source->EnumerateTags(CORVANE_TEXT("v"), names)); // added to what was there
    EXPECT_EQ(Join(names), "t1021,t1022,t1023,t1024,t2046,t100000,t3000000");
    for (const std::size_t length : lengths)
        EXPECT_EQ(Read(*source, "v:t" + std::to_string(length)),
                  Text(static_cast<int>(length), std::string(length, 'x')));
    EXPECT_TRUE(source->EnumerateSections(names));
    EXPECT_EQ(names.size(), 309U);
    EXPECT_EQ(names.back(), CORVANE_TEXT("section 299"));
    corvane::wstring text;
    EXPECT_GT(source->ReadSection(CORVANE_TEXT("V"), text), 3'000'000);
    EXPECT_EQ(source->ReadSection(CORVANE_TEXT("nope"), text), 0);
    EXPECT_EQ(text, corvane::wstring());
    for (const auto* section :
         {CORVANE_TEXT("nope"), CORVANE_TEXT(":"), CORVANE_TEXT(":v"), CORVANE_TEXT("v:")})
        EXPECT_TRUE(source->EnumerateTags(section, names)); // no key reaches into a section with a colon
    EXPECT_FALSE(source->EnumerateTags({}, names));
    EXPECT_EQ(names.size(), 309U);
    WriteFile(file, "");
    EXPECT_FALSE(source->EnumerateSections(names));
    EXPECT_TRUE(names.empty());
}

TEST_F(Source, SeesChangesBehindItsBack) {
    const auto source = Open("[a]\nb=1\n");
    EXPECT_FALSE(source->WasModified());
    const std::int64_t seen = source->GetModifyTime();
    MoveTime(file, 5);
    EXPECT_TRUE(source->WasModified());
    EXPECT_NE(source->WriteValue(CORVANE_TEXT("a:b"), CORVANE_TEXT("2")), 0);
    EXPECT_FALSE(source->WasModified());
    MoveTime(file, 5);
    for (const char* key : {"", "nocolon", ":b"})
        EXPECT_FALSE(source->DeleteValue(Wide(key))) << key;
    EXPECT_TRUE(source->WasModified());
    EXPECT_TRUE(source->DeleteValue(CORVANE_TEXT("a:x\ny=z"))); // nothing of that name can be there
    EXPECT_FALSE(source->WasModified());
    fs::remove(file);
    source->UpdateModifyTime();
    EXPECT_GE(source->GetModifyTime(), seen);
    EXPECT_TRUE(source->WasModified());
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(Source, NamesNoSnapshotThatDoesNotFit) {
    const std::size_t room = 259 - WidePath(folder.Path()).size() - 1;
    file = folder.Path() / std::string(room - 1, 'n'); // ".0" is one too many
    const auto source = Open("[a]\n");
    corvane::wstring name = CORVANE_TEXT("before");
    EXPECT_EQ(source->CreateSnapshot(name), FAILURE_GENERAL);
    EXPECT_EQ(name, CORVANE_TEXT("before"));
    EXPECT_EQ(log.Take(), Lines{"Error 32768 at func: ConfigFile::CreateSnapshot"});
}

} // namespace

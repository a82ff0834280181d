#include "support/ConfigFixture.h"
#include "support/Differences.h"

namespace {

class Writing : public ConfigFixture {};

const std::string commented =
    "; the mail server\r\n[Mail]\r\nPort = 25 \r\n\r\n; more\r\n[Net]\r\nMTU=1500\r\n";

std::string Refusal(const std::string& key) {
    return "Error 32768 \"" + key + "\" at func: ConfigManager::_SetValue";
}

TEST_F(Writing, GoesThroughToFileAndCache) {
    file = folder.Path() / fs::u8path("gr\u00f6\u00dfe \u20ac.cfg");
    Start(commented);
    EXPECT_EQ(Set("MAIL:port", "26"), 0);
    EXPECT_EQ(Set("mail:Host", "gr\u00f6n"), 0);
    EXPECT_EQ(Set("N\u00e4w:Tag:With", "colon"), 0);
    EXPECT_EQ(Set("Mail:Blank", "  x "), 0);
    EXPECT_EQ(Set("Mail:Empty", ""), 0);
    EXPECT_EQ(log.Take(), Lines{});
    EXPECT_FALSE(manager.SourceWasModified());
    EXPECT_EQ(Load(), 0); // no change behind the manager's back
    EXPECT_EQ(List("Mail:"), "Blank,Empty,Host,Port");
    EXPECT_EQ(Get("Mail:Blank"), "  x "); // as given, until the next load
    EXPECT_EQ(Load(-1), 0);
    EXPECT_EQ(List("Mail:"), "Blank,Host,Port");
    EXPECT_EQ(Get("Mail:Blank") + Get("mail:HOST") + Get("N\u00e4w:Tag:With"), "xgr\u00f6ncolon");
    const std::string written = Bytes(file);
    for (const char* kept : {"; the mail server", "; more", "[Net]", "MTU=1500", "Host=gr\u00f6n"})
        EXPECT_NE(written.find(kept), std::string::npos) << kept;
}

TEST_F(Writing, IsRefusedBeforeAnythingChanges) {
    EXPECT_EQ(Set("Mail:Port", "1"), FAILURE_GENERAL); // no source
    EXPECT_EQ(log.Take(), Lines{Refusal("Mail:Port")});

    Start(commented);
    const std::string thrown = "Error 32768 \"WritePrivateProfileStringA exception caught\" at func: "
                               "ConfigFile::WriteValue";
    const struct {
        std::string key, value;
        bool cacheOnly, bySource; // the file could not give it back
    } rows[] = {{"", "x", false, false},
                {"nocolon", "x", true, false},
                {":Port", "x", false, false},
                {"Mail:", "x", false, false},
                {"Other:", "x", true, false},
                {":", "x", false, false},
                {"Mail:New", "x", true, false},
                {"mail:Port", "x", true, false},
                {"Mail:Port", "a\nb", false, true},
                {"Mail:Port", "a\rb", false, true},
                {"Mail:a=b", "x", false, true},
                {"Mail:;a", "x", false, true},
                {"Mail:[a", "x", false, true},
                {"Ma\nil:a", "x", false, true},
                {"Mail:a\n[Evil]\nb", "x", false, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key + "=" + row.value);
        EXPECT_EQ(Set(row.key, row.value, row.cacheOnly), FAILURE_GENERAL);
        EXPECT_EQ(log.Take(), row.bySource ? (Lines{thrown, Refusal(row.key)}) : Lines{Refusal(row.key)});
    }
    EXPECT_EQ(Bytes(file), commented);
    EXPECT_EQ(List() + " " + List("Mail:") + " " + Get("Mail:Port"), "Mail,Net Port 25");
}

TEST_F(Writing, DeletesFromFileAndCache) {
    const std::string text = "[Mail]\nPort=1\nHost=h\nPORT=2\n[Net]\nMTU=1\n[Bare]\n[mail]\nPort=3\n";
    const std::string report = "Error 32768 at func: ConfigManager::DeleteValue";
    struct Row {
        const char* key;
        int result;
        bool reported;
        const char *sections, *file;
    };
    constexpr bool first = differences::deletionsTakeTheFirstDouble;
    const Row rows[] = {
        {"MAIL:port", 0, false, "Bare,Mail,Net",
         first ? "[Mail]\nHost=h\nPORT=2\n[Net]\nMTU=1\n[Bare]\n[mail]\nPort=3\n"
               : "[Mail]\nHost=h\n[Net]\nMTU=1\n[Bare]\n[mail]\n"},
        {"mail:", 0, false, "Bare,Net",
         first ? "[Net]\nMTU=1\n[Bare]\n[mail]\nPort=3\n" : "[Net]\nMTU=1\n[Bare]\n"},
        {"Net:mtu", 0, false, "Bare,Mail", "[Mail]\nPort=1\nHost=h\nPORT=2\n[Net]\n[Bare]\n[mail]\nPort=3\n"},
        {"Mail:Nope", FAILURE_GENERAL, true, "Bare,Mail,Net", text.c_str()},
        {"Bare:Nope", FAILURE_GENERAL, true, "Mail,Net", text.c_str()},
        {"Bare:", 0, false, "Mail,Net", "[Mail]\nPort=1\nHost=h\nPORT=2\n[Net]\nMTU=1\n[mail]\nPort=3\n"},
        {"Nope:Port", FAILURE_GENERAL, true, "Bare,Mail,Net", text.c_str()},
        {"nocolon", 0, false, "Bare,Mail,Net", text.c_str()},
        {"", 0, false, "Bare,Mail,Net", text.c_str()},
        {":Port", 0, false, "Bare,Mail,Net", text.c_str()},
        {"_$CACHE$_:Port", 0, false, "Bare,Mail,Net", text.c_str()},
        {"_$cache$_:Port", FAILURE_GENERAL, true, "Bare,Mail,Net", text.c_str()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        Start(text);
        EXPECT_EQ(Delete(row.key), row.result);
        EXPECT_EQ(log.Take(), row.reported ? Lines{report} : Lines{});
        EXPECT_EQ(List(), row.sections);
        EXPECT_EQ(differences::InLf(Bytes(file)), row.file);
        EXPECT_FALSE(manager.SourceWasModified());
    }
    manager.Clear();
    EXPECT_EQ(Delete("Mail:Port"), FAILURE_GENERAL);
    EXPECT_EQ(log.Take(), Lines{"Error 32768 \"Mail:Port\" at func: ConfigManager::DeleteValue"});
}

TEST_F(Writing, OfALongTextHoldsOrIsRefused) {
    constexpr std::size_t longest = 32'766;
    const std::string small = "[Mail]\nPort=1\n";
    const std::string same(longest, 'x');
    const struct {
        std::string key, value;
        bool refused;
    } rows[] = {{"Mail:Port", same, false},
                {"Mail:Port", same + "x", differences::longTextsAreRefused},
                {"Mail:Port", std::string(70'000, 'x'), differences::longTextsAreRefused},
                {"Mail:" + same + "x", "v", differences::longTextsAreRefused},
                {same + "x:Port", "v", differences::longTextsAreRefused}};
    for (const auto& row : rows) {
        Start(small);
        EXPECT_EQ(Set(row.key, row.value), row.refused ? FAILURE_GENERAL : 0);
        ASSERT_EQ(Load(-1), 0);
        EXPECT_EQ(Get(row.refused ? "Mail:Port" : row.key), row.refused ? "1" : row.value);
    }
}

} // namespace

#include "support/ConfigFixture.h"

#include <algorithm>
#include <cstring>

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
    for (const auto& [key, value] : {std::pair("MAIL:port", "26"),
                                     {"mail:Host", "gr\u00f6n"},
                                     {"N\u00e4w:Tag:With", "colon"},
                                     {"Mail:Blank", "  x "},
                                     {"Mail:Empty", ""}})
        EXPECT_EQ(Set(key, value), 0);
    EXPECT_EQ(log.Take(), Lines{});
    EXPECT_FALSE(manager.SourceWasModified());
    EXPECT_EQ(List("Mail:") + Get("Mail:Blank"),
              "Blank,Empty,Host,Port  x "); // as given, until the next load
    EXPECT_EQ(Load(-1), 0);
    EXPECT_EQ(List("Mail:"), "Blank,Host,Port");
    EXPECT_EQ(Get("Mail:Blank") + Get("mail:HOST") + Get("N\u00e4w:Tag:With"), "xgr\u00f6ncolon");
    for (const char* kept : {"; the mail server", "; more", "[Net]", "MTU=1500", "Host=gr\u00f6n"})
        EXPECT_NE(Bytes(file).find(kept), std::string::npos) << kept;
}

TEST_F(Writing, IsRefusedBeforeAnythingChanges) {
    EXPECT_EQ(Set("Mail:Port", "1"), FAILURE_GENERAL); // no source
    EXPECT_EQ(log.Take(), Lines{Refusal("Mail:Port")});

    Start(commented);
    const auto refuses = [this](const std::string& key, const std::string& value, bool cacheOnly,
                                const Lines& before = {}) {
        SCOPED_TRACE(key + "=" + value);
        EXPECT_EQ(Set(key, value, cacheOnly), FAILURE_GENERAL);
        Lines lines = before;
        lines.push_back(Refusal(key));
        EXPECT_EQ(log.Take(), lines);
    };
    for (const char* key : {"", ":Port", "Mail:", ":"})
        refuses(key, "x", false);
    for (const char* key : {"nocolon", "Other:", "Mail:New", "mail:Port"})
        refuses(key, "x", true);
    // What the file could not give back.
    const Lines thrown{"Error 32768 \"WritePrivateProfileStringA exception caught\" at func: "
                       "ConfigFile::WriteValue"};
    for (const char* key : {"Mail:a=b", "Mail:;a", "Mail:[a", "Ma\nil:a", "Mail:a\n[Evil]\nb"})
        refuses(key, "x", false, thrown);
    for (const char* value : {"a\nb", "a\rb"})
        refuses("Mail:Port", value, false, thrown);
    const corvane::wstring half(1, 0xD83D);
    for (const auto& [key, value] : {std::pair(Wide("Mail:Port"), half), {Wide("Mail:") + half, Wide("x")}}) {
        EXPECT_EQ(manager.SetValue(key, value), FAILURE_GENERAL) << "UTF-8 has no form for it";
        EXPECT_EQ(log.Take().front(), "Error 32768 \"Mail\" at func: ConfigFile::WriteValue");
    }
    EXPECT_EQ(Bytes(file), commented);
    EXPECT_EQ(List() + " " + List("Mail:") + " " + Get("Mail:Port"), "Mail,Net Port 25");
}

TEST_F(Writing, DeletesFromFileAndCache) {
    const std::string text = "[Mail]\nPort=1\nPORT=2\n[Net]\nMTU=1\n[Bare]\n";
    const std::string afterFirst = "[Mail]\nPORT=2\n[Net]\nMTU=1\n[Bare]\n";
    const std::string afterAll = "[Mail]\n[Net]\nMTU=1\n[Bare]\n";
    const auto deletes = [&](const std::string& key, int result, const std::string& sections,
                             const std::string& after) {
        SCOPED_TRACE(key);
        Start(text);
        EXPECT_EQ(Delete(key), result);
        EXPECT_EQ(log.Take(), result ? Lines{"Error 32768 at func: ConfigManager::DeleteValue"} : Lines{});
        EXPECT_EQ(List(), sections);
        EXPECT_EQ(differences::InLf(Bytes(file)), after);
        EXPECT_FALSE(manager.SourceWasModified());
    };
    deletes("MAIL:port", 0, "Bare,Net", differences::deletionsTakeTheFirstDouble ? afterFirst : afterAll);
    deletes("mail:", 0, "Bare,Net", "[Net]\nMTU=1\n[Bare]\n");
    deletes("Bare:Nope", FAILURE_GENERAL, "Mail,Net", text);
    for (const char* key : {"nocolon", ":Port", "_$CACHE$_:Port"})
        deletes(key, 0, "Bare,Mail,Net", text);
    // Names are removed as they are given, with the blanks around them.
    for (const char* key : {"Mail:Nope", "Nope:Port", "Mail: Port", "Mail :", "_$cache$_:Port"})
        deletes(key, FAILURE_GENERAL, "Bare,Mail,Net", text);
    Start(text);
    EXPECT_EQ(Set(" Mail:Token", "x", true) + Delete(" Mail:Token") + Set("Net :Token", "x", true), 0);
    EXPECT_EQ(Delete("Net :"), 0);
    EXPECT_EQ(List() + Bytes(file), "Bare,Mail,Net" + text) << "a section of the cache alone was meant";
    manager.Clear();
    EXPECT_EQ(Delete("Mail:Port"), FAILURE_GENERAL);
    EXPECT_EQ(log.Take(), Lines{"Error 32768 \"Mail:Port\" at func: ConfigManager::DeleteValue"});
}

TEST_F(Writing, OfALongTextHoldsOrIsRefused) {
    const std::string longest(32'766, 'x');
    for (const auto& [key, value] : {std::pair<std::string, std::string>("Mail:Port", longest),
                                     {"Mail:Port", longest + "x"},
                                     {"Mail:" + longest + "x", "v"},
                                     {longest + "x:Port", "v"}}) {
        const bool isRefused = differences::longTextsAreRefused && value != longest;
        Start("[Mail]\nPort=1\n");
        EXPECT_EQ(Set(key, value), isRefused ? FAILURE_GENERAL : 0);
        ASSERT_EQ(Load(-1), 0);
        EXPECT_EQ(Get(isRefused ? "Mail:Port" : key), isRefused ? "1" : value);
    }
}

// A name ends at a NUL, in comparisons and in the file.
TEST_F(Writing, JudgesANameUpToItsNul) {
    const auto withNul = [](std::string key) {
        std::replace(key.begin(), key.end(), '~', '\0');
        return key;
    };
    const std::string text = "[Mail]\nPort=1\n[Net]\nMTU=1\n";
    Start(text);
    for (const char* key : {"~x:Port", "Mail:~x"}) {
        EXPECT_EQ(Set(withNul(key), "1"), FAILURE_GENERAL) << key;
        EXPECT_EQ(log.Take(), Lines{Refusal(std::string(key, std::strcspn(key, "~")))}) << key;
    }
    EXPECT_EQ(Set(withNul("New:~x"), "1", true), FAILURE_GENERAL);
    EXPECT_EQ(Set(withNul("_$CACHE$_~x:Token"), "secret"), 0);
    EXPECT_EQ(Set(withNul("Own~x:a"), "1", true) + Set(withNul("Own~y:b"), "2") + Set("Own:c", "3"), 0);
    EXPECT_EQ(Bytes(file), text) << "all of it belongs to the cache alone";
    EXPECT_EQ(Load(-1), 0);
    EXPECT_EQ(Get("_$CACHE$_:Token") + Get(withNul("MAIL~x:port~x")), "secret1");
    EXPECT_TRUE(Exists(withNul("Mail:~x")) && Exists(withNul("Mail~x:")));
    EXPECT_EQ(Delete(withNul("_$CACHE$_~x:Token")) + Delete(withNul("~x:Port")), 0);
    EXPECT_EQ(Get("_$CACHE$_:Token"), "secret");
    EXPECT_EQ(Delete(withNul("Mail~x:Port~x")) + Delete(withNul("Net:~x")), 0);
    EXPECT_EQ(List(), withNul("_$CACHE$_~x")) << "the cache keeps the caller's text";
    EXPECT_EQ(differences::InLf(Bytes(file)), "[Mail]\n");
}

} // namespace

#include "support/ConfigFixture.h"

#include <corvane/comfort.h>

#include <limits>
#include <sstream>

namespace {

using namespace std::chrono_literals;

class Comfort : public ConfigFixture {
protected:
    /// Each of the texts between bars has to be read as the value, or as nothing.
    template <class T>
    void Reads(std::optional<T> value, const char* texts) {
        std::istringstream stream(texts);
        for (std::string text; std::getline(stream, text, '|');) {
            SCOPED_TRACE(text);
            Start("[S]\nt=" + text + "\n");
            EXPECT_TRUE(corvane::Get<T>(manager, "S:t") == value);
        }
    }

    /// Values that have to come back from the file by another manager, and their text.
    template <class T>
    void ComesBack(std::initializer_list<std::pair<T, const char*>> rows) {
        Start("[S]\n");
        for (const auto& [value, text] : rows) {
            SCOPED_TRACE(text);
            EXPECT_TRUE(corvane::Set(manager, "S:t", value));
            ConfigManager other;
            ASSERT_TRUE(corvane::Load(other, file.u8string()));
            EXPECT_EQ(corvane::Get<std::string>(other, "S:t"), text);
            EXPECT_TRUE(corvane::Get<T>(other, "S:t") == value);
        }
    }
};

TEST_F(Comfort, ReadsTypedValues) {
    Reads<bool>(true, "yes|TRUE|On|1");
    Reads<bool>(false, "no|false|oFF|0");
    Reads<bool>({}, "y|2|yesyes|@N");
    Reads<int>(std::numeric_limits<int>::min(), "-2147483648");
    Reads<int>({}, "2147483648|+7|7x|7 8|0x7|7.0|-");
    Reads<std::uint8_t>(255, "255");
    Reads<std::uint8_t>({}, "256|-1");
    Reads<std::uint64_t>(~std::uint64_t{}, "18446744073709551615");
    Reads<double>(0.5, "0.5");
    Reads<double>(-1000.0, "-1e3");
    Reads<double>({}, "0,5|nan|inf|1e999");
    Reads<std::chrono::seconds>(120s, "120s|2min|120000ms");
    Reads<std::chrono::seconds>(-24h, "-1d");
    Reads<std::chrono::seconds>({}, "1500ms|90|s|1 s|9223372036854775807h");
    Reads<std::chrono::milliseconds>(7200s, "2h|7200000000us");
    Reads<std::chrono::milliseconds>({}, "7us");
}

TEST_F(Comfort, WritesWhatItReads) {
    ComesBack<bool>({{true, "yes"}, {false, "no"}});
    ComesBack<std::int64_t>({{std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"}});
    ComesBack<double>({{0.1, "0.1"}, {5e-324, "5e-324"}});
    ComesBack<std::chrono::minutes>({{90min, "90min"}});
    ComesBack<std::string>({{"Grüß Gott, 東京", "Grüß Gott, 東京"}});

    Start("[S]\nt=before\n");
    EXPECT_FALSE(corvane::Set(manager, "S:t", std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(corvane::Set(manager, "S:t", "two\nlines"));
    EXPECT_EQ(Bytes(file), "[S]\nt=before\n");
}

TEST_F(Comfort, FallsBack) {
    EXPECT_FALSE(corvane::Load(manager, (folder.Path() / "none.cfg").u8string()));
    Start("[S]\nword=x\nnumber=5\n");
    EXPECT_EQ(corvane::Get(manager, "S:number", 7) + corvane::Get(manager, "S:word", 70), 75);
    EXPECT_EQ(corvane::Get(manager, "S:word", "default") + corvane::Get(manager, "S:none", "default"),
              "xdefault");
    EXPECT_FALSE(corvane::Delete(manager, "S:none"));
    EXPECT_TRUE(corvane::Delete(manager, "s:WORD"));
    EXPECT_TRUE(!corvane::Exists(manager, "S:word") && corvane::Exists(manager, "S:"));
}

TEST_F(Comfort, ListsACopy) {
    Start("[B]\nä=1\nb=2\n[A]\n");
    std::string listed;
    for (const std::string& section : corvane::Sections(manager))
        for (const auto& [tag, value] : corvane::Tags(manager, section)) {
            listed.append(section).append(":" + tag).append("=" + value).append(" ");
            corvane::Delete(manager, section + ":");
        }
    EXPECT_EQ(listed, "B:b=2 B:ä=1 ");
    EXPECT_EQ(List(), "A");
}

TEST_F(Comfort, GoesBackUnlessToldOtherwise) {
    file = folder.Path() / fs::u8path("Grüße.cfg");
    Start("[S]\nt=1\n");
    for (const bool keep : {false, true}) {
        {
            corvane::SnapshotGuard guard(manager);
            EXPECT_TRUE(guard);
            EXPECT_TRUE(corvane::Set(manager, "S:t", 2));
            if (keep)
                guard.Keep();
        }
        EXPECT_EQ(Get("S:t"), keep ? "2" : "1");
        EXPECT_NE(Bytes(file).find(keep ? "t=2" : "t=1"), std::string::npos);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1); // no snapshot stays

    ConfigManager empty;
    EXPECT_FALSE(corvane::SnapshotGuard(empty));
}

} // namespace

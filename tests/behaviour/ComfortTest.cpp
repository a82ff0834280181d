#include "support/ConfigFixture.h"

#include <functional>
#include <limits>
#include <random>
#include <thread>

namespace {

enum class Colour { red, green };

} // namespace

template <>
struct corvane::ValueText<Colour> {
    static std::optional<Colour> FromText(std::string_view text) {
        return text == "red"     ? std::optional(Colour::red)
               : text == "green" ? std::optional(Colour::green)
                                 : std::nullopt;
    }
    static std::string ToText(Colour colour) { return colour == Colour::red ? "red" : "green"; }
};

namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

class Comfort : public ConfigFixture {
protected:
    /// Each of the texts has to be read as the value, or as nothing.
    template <class T>
    void Reads(std::optional<T> value, std::initializer_list<std::string> texts) {
        for (const std::string& text : texts) {
            SCOPED_TRACE(text);
            Start("[S]\nt=" + text + "\n");
            EXPECT_TRUE(corvane::Get<T>(manager, "S:t") == value);
        }
    }

    /// Values that have to come back from the cache and from the file, and their text.
    template <class T>
    void ComesBack(std::initializer_list<std::pair<T, const char*>> rows) {
        Start("[S]\n");
        for (const auto& [value, text] : rows) {
            SCOPED_TRACE(text);
            EXPECT_TRUE(corvane::Set(manager, "S:t", value));
            EXPECT_TRUE(corvane::Get<T>(manager, "S:t") == value);
            ASSERT_TRUE(corvane::Reload(manager));
            EXPECT_EQ(corvane::Get<std::string>(manager, "S:t"), text);
            EXPECT_TRUE(corvane::Get<T>(manager, "S:t") == value);
        }
    }
};

TEST_F(Comfort, ReadsTypedValues) {
    Reads<bool>(true, {"yes", "TRUE", "On", "1"});
    Reads<bool>(false, {"no", "false", "oFF", "0"});
    Reads<bool>({}, {"y", "2", "yesyes", "@N"});
    Reads<int>(std::numeric_limits<int>::min(), {"-2147483648"});
    Reads<int>({}, {"2147483648", "+7", "7x", "7 8", "0x7", "7.0", "-"});
    Reads<std::uint8_t>(255, {"255"});
    Reads<std::uint8_t>({}, {"256", "-1"});
    Reads<std::uint64_t>(~std::uint64_t{}, {"18446744073709551615"});
    Reads<std::chrono::seconds>(120s, {"120s", "2min", "120000ms"});
    Reads<std::chrono::seconds>(-24h, {"-1d"});
    Reads<std::chrono::seconds>({}, {"1500ms", "90", "s", "1 s", "9223372036854775807h"});
    Reads<std::chrono::milliseconds>(7200s, {"2h", "7200000000us"});
    Reads<std::chrono::milliseconds>({}, {"7us"});
    Reads<Colour>(Colour::green, {"green"});
    Reads<fs::path>("a b/c", {"a b/c"});
    Reads<Texts>(Texts{"a", "b c", ""}, {"a,b c,", "  a ,\tb c , "});
    Reads<std::vector<int>>(std::vector<int>{1, -2}, {"1,-2", "1 , -2"});
    Reads<std::vector<int>>({}, {"1,", ",", "1;2", "1,x"});
}

TEST_F(Comfort, WritesWhatItReads) {
    ComesBack<bool>({{true, "yes"}, {false, "no"}});
    ComesBack<std::int64_t>({{std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"}});
    ComesBack<double>({{0.1, "0.1"}, {5e-324, "5e-324"}});
    ComesBack<std::chrono::minutes>({{90min, "90min"}});
    ComesBack<Colour>({{Colour::red, "red"}});
    ComesBack<fs::path>({{fs::u8path("/ö/ "), "/ö/ "}});
    ComesBack<Texts>({{{"a", "", "\"b\""}, "a, , \"b\""}, {{"", ""}, ", "}});
    ComesBack<std::vector<bool>>({{{true, false}, "yes, no"}});
    char buffer[] = "b";
    EXPECT_TRUE(corvane::Set(manager, "S:view", std::string_view("ab", 1)));
    EXPECT_TRUE(corvane::Set(manager, "S:buffer", &buffer[0]));
    EXPECT_EQ(Get("S:view") + Get("S:buffer"), "ab");

    Start("[S]\nt=before\n");
    EXPECT_FALSE(corvane::Set(manager, "S:t", std::numeric_limits<double>::quiet_NaN()));
    for (const Texts& texts : {Texts{""}, Texts{"a,b"}, Texts{" a"}, Texts{"a", "b "}, Texts{"a\n"}})
        EXPECT_FALSE(corvane::Set(manager, "S:t", texts));
    EXPECT_EQ(Bytes(file), "[S]\nt=before\n");
}

TEST_F(Comfort, WritesAnyTextOrNothing) {
    static const std::string pieces[] = {
        "a", "Z",  "ü",  "東",   "\U0001F600", "#",       "%s",           "\x01",
        " ", "\t", "\v", "\x1A", "'",          "\"",      "\"",           "=",
        ";", "[",  "]",  ":",    "\r\n",       {"\0", 1}, "\xED\xA0\x80", std::string(20'000, 'x')};
    std::mt19937 random(11); // NOLINT(cert-msc51-cpp): the same each time
    const auto some = [&](std::size_t most, std::size_t kinds) {
        std::string text;
        for (std::size_t count = random() % (most + 1); count > 0; --count)
            text += pieces[random() % kinds];
        return text;
    };
    int written = 0;
    for (int i = 0; i < 400; ++i) {
        if (i % 20 == 0)
            Start("[S]\n");
        const std::size_t kinds = i % 2 == 0 ? 20 : std::size(pieces);
        const std::string key =
            (i % 3 == 0 ? "S" : some(4, kinds)) + ':' + (i % 5 == 0 ? "t" : some(4, kinds));
        const std::string text = some(5, kinds);
        SCOPED_TRACE(key.substr(0, 100) + " -> " + text.substr(0, 100));
        const std::string before = Bytes(file);
        log.Take();
        const bool done = corvane::Set(manager, key, text);
        ASSERT_EQ(log.Take().size(), done ? 0 : 1);
        if (!done) {
            ASSERT_EQ(Bytes(file), before);
            continue;
        }
        ++written;
        ASSERT_EQ(corvane::Get<std::string>(manager, key), text);
        ASSERT_TRUE(corvane::Reload(manager));
        ASSERT_EQ(corvane::Get(manager, key, ""), text); // an empty one is no value
    }
    EXPECT_TRUE(written > 80 && written < 320) << written;
}

TEST_F(Comfort, SaysWhatItRefuses) {
    Start("[S]\nt=1\n");
    Set("Token:a", "1", true);
    const struct {
        const char *key, *text, *why;
    } rows[] = {
        {"S", "x", "a key is a section, a colon and a tag: 'S'"},
        {"S:t\xFF", "x", "the key is not valid UTF-8: 'S:t\uFFFD'"},
        {"S\n:t", "x", "a key cannot contain a line break: 'S :t'"},
        {"S:t ", "x", "a section or tag cannot begin or end with a blank: 'S:t '"},
        {"S:t", "\xFF", "the value is not valid UTF-8: 'S:t'"},
        {"S:t", nullptr, "the value is null: 'S:t'"},
        {"_$CACHE$_:t", "x", "the section _$CACHE$_ is kept in the cache alone: '_$CACHE$_:t'"},
    };
    for (const auto& [key, text, why] : rows) {
        EXPECT_FALSE(corvane::Set(manager, key, text));
        EXPECT_EQ(log.Take(), Lines{std::string("Error 32768 \"") + why + "\" at func: corvane::Set"});
    }
    EXPECT_TRUE(corvane::Set(manager, "Token:b", " x ")); // in a section of the cache alone
    EXPECT_EQ(Bytes(file) + List("Token:") + Get("Token:b"), "[S]\nt=1\na,b x ");
    EXPECT_FALSE(corvane::Delete(manager, "S:none"));
    EXPECT_TRUE(corvane::Exists(manager, "s:T") && corvane::Delete(manager, "s:T"));
    EXPECT_FALSE(corvane::Exists(manager, "S:t"));
}

TEST_F(Comfort, WatchMissesNoChange) {
    constexpr std::int64_t whole = 5'000'000'000; // as if from a file system with times in seconds
    EXPECT_TRUE(corvane::IsRacy(whole, whole + 1'900'000'000) && !corvane::IsRacy(whole, 2 * whole));
    EXPECT_TRUE(corvane::IsRacy(whole + 1, 0) && !corvane::IsRacy(whole + 1, whole + 100'000'000));
    EXPECT_FALSE(corvane::FileWatch(manager).Differs());
    Start("[S]\nt=000\n");
    WriteFile(file, "[S]\nt=001\n"); // before there is a watch
    corvane::FileWatch watch(manager);
    EXPECT_TRUE(watch.Differs());
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    for (int i = 100; i < 999; ++i) { // many in one tick of the clock
        stream.seekp(6) << i << std::flush;
        ASSERT_TRUE(watch.Differs()) << i;
    }
    stream.close();
    EXPECT_TRUE(corvane::Reload(manager));
    EXPECT_EQ(Get("S:t"), "998");
    const fs::path other = folder.Path() / "other";
    const std::function<void()> changes[] = {
        [&] { fs::rename(file, other); },
        [&] { fs::rename(other, file); },
        [&] { fs::copy_file(file, other); },
        [&] { fs::rename(other, file); }, // another file of the same content
        [&] { MoveTime(file, -10); },
        [&] { EXPECT_TRUE(corvane::Set(manager, "S:t", "own")); },
    };
    for (const auto& change : changes) {
        while (watch.Differs())
            std::this_thread::yield();
        change();
        EXPECT_EQ(watch.Differs(), !fs::exists(other) || !fs::exists(file)) << &change - changes;
    }
}

TEST_F(Comfort, FallsBackAndSaysWhatIsOfTheWrongForm) {
    using Quillon::NativeLogging::Severity;
    Quillon::NativeLogging::LoggerRegistry::setThreshold(Severity::problem);
    Start("[S]\nt=a;b\n");
    const ConfigManager& config = manager;
    EXPECT_EQ(corvane::Get<std::uint8_t>(config, "S:t", 7), 7);
    EXPECT_FALSE(corvane::Get<bool>(config, "s:T"));
    EXPECT_FALSE(corvane::Get<double>(config, "S:t"));
    EXPECT_FALSE(corvane::Get<std::chrono::seconds>(config, "S:t"));
    EXPECT_FALSE(corvane::Get<std::vector<Colour>>(config, "S:t"));
    EXPECT_EQ(corvane::Get<std::uint8_t>(config, "S:none", 7), 7);
    EXPECT_EQ(corvane::Get<Colour>(config, "S:none"), std::nullopt);
    EXPECT_EQ(corvane::Get(config, "S:t", "default") + corvane::Get(config, "S:none", "default"),
              "a;bdefault");
    EXPECT_EQ(corvane::Get(config, "S:t", std::string_view("default")), "a;b");
    const std::string start = "the value 'a;b' of 'S:t' is not ";
    EXPECT_EQ(log.Take(),
              (Lines{start + "a whole number from 0 to 255", "the value 'a;b' of 's:T' is not yes or no",
                     start + "a number such as 0.5", start + "a time with a unit, such as 15s",
                     start + "a comma-separated list in which each element is of the expected form"}));
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
    EXPECT_EQ(FilesInFolder(), 1); // no snapshot stays

    ConfigManager empty;
    EXPECT_FALSE(corvane::SnapshotGuard(empty));
}

} // namespace

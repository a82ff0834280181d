#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <clocale>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvane::posix {
namespace {

using Kind = ProfileLine::Kind;

TEST(ProfileLine, IsClassified) {
    struct Row {
        std::string_view text;
        Kind kind;
        std::string_view name;
        std::string_view value;
    };
    static const Row rows[] = {
        {"", Kind::Blank, "", ""},
        {" \t ", Kind::Blank, "", ""},
        {" ; a=b", Kind::Comment, "", ""},
        {"[Mail]", Kind::Header, "Mail", ""},
        {" [ Mail ] ; text", Kind::Header, "Mail", ""},
        {"[a]b]", Kind::Header, "a]b", ""},
        {"[]", Kind::Header, "", ""},
        {"[Mail", Kind::Other, "", ""},
        {"[Mail=1", Kind::Tag, "[Mail", "1"},
        {"Port=25", Kind::Tag, "Port", "25"},
        {"\tPort = \" 25 \" ", Kind::Tag, "Port", "\" 25 \""},
        {"a=b=c", Kind::Tag, "a", "b=c"},
        {"a=", Kind::Tag, "a", ""},
        {"=v", Kind::Other, "", ""},
        {"no separator", Kind::Other, "", ""},
        {"# a=b", Kind::Tag, "# a", "b"},
        {std::string_view("a \0b=c \0d", 9), Kind::Tag, "a", "c"},
    };
    for (const Row& row : rows) {
        ProfileLines lines(row.text);
        ProfileLine line;
        ASSERT_EQ(lines.Next(line), !row.text.empty());
        EXPECT_EQ(line.kind, row.kind) << row.text;
        EXPECT_EQ(line.name, row.name) << row.text;
        EXPECT_EQ(line.value, row.value) << row.text;
    }
}

TEST(ProfileLine, EndsAtEveryKindOfLineEnding) {
    ProfileLines lines("\xEF\xBB\xBF[a]\r\nb\nc\rd\r\r\n\ne");
    std::vector<std::string> wholes;
    for (ProfileLine line; lines.Next(line);)
        wholes.emplace_back(line.whole);
    EXPECT_EQ(wholes, (std::vector<std::string>{"[a]\r\n", "b\n", "c\r", "d\r", "\r\n", "\n", "e"}));
}

TEST(SameName, IgnoresLetterCase) {
    EXPECT_TRUE(SameName("Port", "pORT"));
    EXPECT_TRUE(SameName("", ""));
    EXPECT_TRUE(SameName("Gr\xC3\xB6\xC3\x9F"
                         "e",
                         "gR\xC3\xB6\xC3\x9F"
                         "E"));
    EXPECT_TRUE(SameName("\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"));
    EXPECT_FALSE(SameName("\xF0\x9F\x98\x80", "\xF0\x9F\x98\x81"));
    EXPECT_FALSE(SameName("Port", "Port2"));
    EXPECT_FALSE(SameName("Port2", "Port"));
    EXPECT_TRUE(SameName("a\xFF", "A\xEF\xBF\xBD"));
}

// Whatever a locale takes for one letter must fall into one bucket of a look-up.
TEST(SameName, ImpliesTheSameHash) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const auto letter = static_cast<wchar>(unit);
        const std::string name = ToUtf8(wstring(1, letter)) + "x";
        const std::string folded = ToUtf8(wstring(1, FoldCase(letter))) + "X";
        ASSERT_TRUE(SameName(name, folded)) << unit;
        ASSERT_EQ(HashName(name), HashName(folded)) << unit;
    }
    std::setlocale(LC_CTYPE, "C");
    EXPECT_NE(HashName("\xE4\xB8\xAD"), HashName("\xE4\xB8\xAE"));
}

} // namespace
} // namespace corvane::posix

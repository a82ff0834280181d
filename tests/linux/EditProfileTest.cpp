#include "TestFolder.h"

#include <corvane/detail/CaseFolding.h>
#include <corvane/platform/linux/profile/EditProfile.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <cctype>
#include <clocale>

namespace corvane::os {
namespace {

std::string After(std::string_view text, const std::vector<ProfileEdit>& edits) {
    const auto pieces = Edited(text, edits);
    std::string after(pieces ? "" : text);
    for (const std::string_view piece : pieces.value_or(TextFragments()))
        after += piece;
    return after;
}

// What the fuzz target `profile` cannot know: the place of what comes, what goes with a section, and what
// many changes at once make of each other.
TEST(EditProfile, ChangesTheLinesConcerned) {
    const auto none = std::nullopt;
    const struct {
        std::string_view before;
        std::vector<ProfileEdit> edits;
        std::string_view after;
    } rows[] = {
        {"\xEF\xBB\xBF", {{"s", "a", "1"}}, "\xEF\xBB\xBF[s]\na=1\n"},
        {"x\r\n  ", {{"s", "a", "1"}}, "x\r\n  \r\n[s]\r\na=1\r\n"},
        {"[s]\ra=1\r[t]\r", {{"s", "b", "2"}}, "[s]\ra=1\rb=2\r[t]\r"},
        {"[S]\n  Port =  25 \n;c\n", {{"s", "pORT", "587"}}, "[S]\n  Port =  587 \n;c\n"},
        {"[s]\na=\"1\"\n", {{"s", "a", "1"}}, "[s]\na=1\n"},
        {"[s]\na= 1 \n", {{"s", "a", "  2  "}}, "[s]\na=  2  \n"}, // blanks do not pile up
        {"[s]\na=1\n\n; t\n[t]\n", {{"s", "b", "2"}}, "[s]\na=1\nb=2\n\n; t\n[t]\n"},
        {"[s]\na=1\na=2\n[S]\na=3\n", {{"s", "A", "9"}}, "[s]\na=9\na=2\n[S]\na=3\n"},
        {"a=0\n[s]\na=1\nA=2\n[t]\na=3\n[S]\r\nx\r\na=4\r\n",
         {{"s", "a", none}},
         "a=0\n[s]\n[t]\na=3\n[S]\r\nx\r\n"},
        {"[s]\n;own\na=1\n\n; of t\n;too\n[t]\n[S]\nc=3", {{"s", none, none}}, "; of t\n;too\n[t]\n"},
        {"[s]\na=1\n", {}, "[s]\na=1\n"},
        {"[s]\na=1",
         {{"S", "A", "2"}, {"s", "b", "0"}, {"s", "B", "3"}, {"t", "c", "4"}, {"T", "d", "5"}},
         "[s]\na=2\nb=3\n[t]\nc=4\nd=5\n"},
        {"[s]\na=1\nb=2\n",
         {{"s", "a", "8"}, {"s", "a", none}, {"s", "b", none}, {"s", "B", "9"}},
         "[s]\nB=9\n"},
        {"[s]\na=1", {{"s", "a", none}, {"s", "b", "2"}}, "[s]\nb=2\n"},
        {"[s]\na=1\n[S]\na=2\nb=3", {{"s", "a", none}, {"s", "b", "4"}}, "[s]\nb=4\n[S]\nb=3"},
        {"[s]\r\na=1\r\n", {{"s", "b", "2"}, {"s", none, none}, {"s", "c", "3"}}, "[s]\r\nc=3\r\n"},
        {"\xEF\xBB\xBF[s]\na=1\n", {{"s", none, none}, {"s", "b", "2"}}, "\xEF\xBB\xBF[s]\nb=2\n"},
        {"[s]\na=1\n;t\n[t]\nb=2\n[s]\n;c",
         {{"t", "b", none}, {"s", none, none}, {"u", "c", "3"}},
         ";t\n[t]\n[u]\nc=3\n"},
        {"[s]\na=1", {{"t", "b", "2"}, {"t", none, none}, {"s", "c", none}}, "[s]\na=1"},
        {"", {{"S", "B", none}, {"s", "b", "1"}}, "[s]\nb=1\n"}, // named as it is written
    };
    for (const auto& row : rows) {
        EXPECT_EQ(After(row.before, row.edits), row.after) << row.before;
        EXPECT_TRUE(row.edits.size() > 1 || !Edited(row.after, row.edits)) << "a second time: " << row.after;
    }
}

// Each step would compare each of so many names with all others, had they one hash.
TEST(EditProfile, TakesTimeInProportionForAnyNames) {
    std::vector<std::string> names(1U << 15);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = test::CollidingName(i);
    std::vector<ProfileEdit> edits;
    for (const std::string& name : names)
        edits.insert(edits.end(), {{"s", name, "1"}, {name, "x", "1"}});
    const std::string once = After("[s]\n", edits);
    EXPECT_EQ(static_cast<std::size_t>(std::count(once.begin(), once.end(), '=')), edits.size());
    EXPECT_FALSE(Edited(once, edits));
    for (ProfileEdit& edit : edits)
        edit.value.reset();
    EXPECT_EQ(After(once, edits).find('='), std::string::npos);
}

// Whatever a locale takes for one letter must fall into one bucket of a look-up.
TEST(SameName, ImpliesTheSameHash) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const auto letter = static_cast<wchar>(unit);
        for (const char* const rest : {"x", "eight by", "more than a group"}) {
            const std::string name = ToUtf8(wstring(1, letter)) + rest;
            std::string folded = ToUtf8(wstring(1, FoldCase(letter))) + rest;
            folded.back() = static_cast<char>(std::toupper(folded.back()));
            ASSERT_TRUE(SameName(name, folded)) << unit;
            ASSERT_EQ(HashName(name), HashName(folded)) << unit << rest;
        }
    }
    std::setlocale(LC_CTYPE, "C");
    EXPECT_FALSE(SameName("Port", "Port2") || SameName("Port2", "Port"));
    EXPECT_NE(HashName("\xE4\xB8\xAD"), HashName("\xE4\xB8\xAE"));
}

} // namespace
} // namespace corvane::os

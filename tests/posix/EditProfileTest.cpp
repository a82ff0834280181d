#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/posix/profile/EditProfile.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <cctype>
#include <clocale>
#include <gtest/gtest.h>

namespace corvane::posix {
namespace {

// What the fuzz target `profile` cannot know: the place of what comes, and what goes with a section.
TEST(EditProfile, ChangesTheLinesConcerned) {
    struct Row {
        std::string_view before, tag, value, after; // of section s; no value: a deletion
    };
    static const Row rows[] = {
        {"\xEF\xBB\xBF", "a", "1", "\xEF\xBB\xBF[s]\na=1\n"},
        {"x\r\n  ", "a", "1", "x\r\n  \r\n[s]\r\na=1\r\n"},
        {"[s]\ra=1\r[t]\r", "b", "2", "[s]\ra=1\rb=2\r[t]\r"},
        {"[S]\n  Port =  25 \n;c\n", "pORT", "587", "[S]\n  Port =  587 \n;c\n"},
        {"[s]\na=\"1\"\n", "a", "1", "[s]\na=1\n"},
        {"[s]\na= 1 \n", "a", "  2  ", "[s]\na=  2  \n"}, // blanks do not pile up
        {"[s]\na=1\n\n; t\n[t]\n", "b", "2", "[s]\na=1\nb=2\n\n; t\n[t]\n"},
        {"[s]\na=1\na=2\n[S]\na=3\n", "A", "9", "[s]\na=9\na=2\n[S]\na=3\n"},
        {"a=0\n[s]\na=1\nA=2\n[t]\na=3\n[S]\r\nx\r\na=4\r\n", "a", {}, "a=0\n[s]\n[t]\na=3\n[S]\r\nx\r\n"},
        {"[s]\n;own\na=1\n\n; of t\n;too\n[t]\n[S]\nc=3", {}, {}, "; of t\n;too\n[t]\n"},
    };
    for (const Row& row : rows) {
        const auto change = [&row](std::string_view text) {
            return row.value.data() ? SetTag(text, "s", row.tag, row.value)
                   : row.tag.data() ? RemoveTag(text, "s", row.tag)
                                    : RemoveSection(text, "s");
        };
        std::string after;
        const ProfileChanges changes = change(row.before);
        for (const std::string_view piece : Changed(row.before, changes))
            after += piece;
        EXPECT_EQ(after, row.after) << row.before;
        EXPECT_TRUE(change(row.after).empty()) << "a second time: " << row.after;
    }
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
            ASSERT_EQ(KeyedHashName(name), KeyedHashName(folded)) << unit << rest;
        }
    }
    std::setlocale(LC_CTYPE, "C");
    EXPECT_FALSE(SameName("Port", "Port2") || SameName("Port2", "Port"));
    EXPECT_NE(HashName("\xE4\xB8\xAD"), HashName("\xE4\xB8\xAE"));
}

} // namespace
} // namespace corvane::posix

#include <corvane/platform/posix/profile/EditProfile.h>

#include <gtest/gtest.h>

namespace corvane::posix {
namespace {

using namespace std::literals;

TEST(EditProfile, SetsOneTag) {
    struct Row {
        std::string_view before, section, tag, value, after; // `after` equal to `before`: nothing to do
    };
    static const Row rows[] = {
        {"", "s", "a", "1", "[s]\na=1\n"},
        {"\xEF\xBB\xBF", "s", "a", "1", "\xEF\xBB\xBF[s]\na=1\n"},
        {"x", "s", "a", "1", "x\n[s]\na=1\n"},
        {"x\r\n  ", "s", "a", "1", "x\r\n  \r\n[s]\r\na=1\r\n"},
        {"[s]", "s", "a", "1", "[s]\na=1\n"},
        {"[s]\r\na=1", "s", "b", "2", "[s]\r\na=1\r\nb=2\r\n"},
        {"[s]\ra=1\r[t]\r", "s", "b", "2", "[s]\ra=1\rb=2\r[t]\r"},
        // Existing tags keep their place, their letter case and what stands around the value.
        {"[S]\n  Port =  25 \n;c\n", "s", "pORT", "587", "[S]\n  Port =  587 \n;c\n"},
        {"[s]\na=\"1\"\n", "s", "a", "1", "[s]\na=1\n"},
        {"[s]\na=  \nb=2\n", "s", "a", "1", "[s]\na=  1\nb=2\n"},
        {"[s]\na=1\n", "s", "a", "", "[s]\na=\n"},
        {"[s]\na = 1 \n", "s", "a", "1", "[s]\na = 1 \n"},
        {"[s]\na=1", "s", "a", "22", "[s]\na=22"},
        {"[Gr\xC3\xB6\xC3\x9F]\n\xC3\xA9=1\n", "Gr\xC3\xB6\xC3\x9F", "\xC3\xA9", "2",
         "[Gr\xC3\xB6\xC3\x9F]\n\xC3\xA9=2\n"},
        // Blanks that the value brings do not pile up.
        {"[s]\na= 1 \n", "s", "a", "  2  ", "[s]\na=  2  \n"},
        {"[s]\na=  2  \n", "s", "a", "  2  ", "[s]\na=  2  \n"},
        {"[s]\na=  2  \n", "s", "a", " ", "[s]\na= \n"},
        // New tags go behind the last tag, not behind what separates the sections.
        {"[s]\na=1\n\n; t\n[t]\n", "s", "b", "2", "[s]\na=1\nb=2\n\n; t\n[t]\n"},
        {"[s]\n\n[t]\na=1\n", "s", "b", "2", "[s]\nb=2\n\n[t]\na=1\n"},
        {"[s]\na=1\nunknown\n=v\n", "s", "b", "2", "[s]\na=1\nb=2\nunknown\n=v\n"},
        // The first of two equals is the one that is read.
        {"[s]\na=1\na=2\n[S]\na=3\n", "s", "A", "9", "[s]\na=9\na=2\n[S]\na=3\n"},
        {"[s]\n[s]\na=3\n", "s", "a", "9", "[s]\na=9\n[s]\na=3\n"},
        // Lines before the first section belong to none.
        {"a=0\n[t]\n", "s", "a", "1", "a=0\n[t]\n[s]\na=1\n"},
        {"\0\xFF\n[s]\r\nb\xFE=\xFD\na=1\n"sv, "s", "a", "2", "\0\xFF\n[s]\r\nb\xFE=\xFD\na=2\n"sv},
        {"[s]\r\nb\0c=1\r\n"sv, "s", "a", "2", "[s]\r\nb\0c=1\r\na=2\r\n"sv},
    };
    for (const Row& row : rows) {
        const auto text = SetTag(row.before, row.section, row.tag, row.value);
        EXPECT_EQ(text.has_value(), row.before != row.after) << row.before;
        EXPECT_EQ(text.value_or(std::string(row.before)), row.after);
        EXPECT_FALSE(SetTag(row.after, row.section, row.tag, row.value)) << "a second time: " << row.after;
    }
}

TEST(EditProfile, RemovesWithAllDoubles) {
    struct Row {
        std::string_view before, section, tag, after; // no tag: the whole section
    };
    static const Row rows[] = {
        {"[s]\na=1\nb=2", "S", "A", "[s]\nb=2"},
        {"[s]\na=1\n", "s", "a", "[s]\n"},
        {"a=0\n[s]\na=1\nA=2\n[t]\na=3\n[S]\r\nx\r\na=4\r\n", "s", "a", "a=0\n[s]\n[t]\na=3\n[S]\r\nx\r\n"},
        {"[s]\na=1\n", "s", "b", "[s]\na=1\n"},
        {"[s]\n;a=1\na\n=a\n", "s", "a", "[s]\n;a=1\na\n=a\n"},
        {"", "s", "a", ""},
        {"\xEF\xBB\xBF[s]\na=1\n;c\n", "s", {}, "\xEF\xBB\xBF"},
        {"x\n[s]\na=1\n\n[t]\nb=2\n[S]\nc=3", "s", {}, "x\n[t]\nb=2\n"},
        {"[s]\n;own\na=1\n\n; of t\n;too\n[t]\n", "s", {}, "; of t\n;too\n[t]\n"},
        {"[s]\na=1\n[s]\nb=1\n[t]\n", "s", {}, "[t]\n"},
        {"[st]\na=1\n", "s", {}, "[st]\na=1\n"},
    };
    for (const Row& row : rows) {
        const auto text = row.tag.data() ? RemoveTag(row.before, row.section, row.tag)
                                         : RemoveSection(row.before, row.section);
        EXPECT_EQ(text.has_value(), row.before != row.after) << row.before;
        EXPECT_EQ(text.value_or(std::string(row.before)), row.after);
    }
}

} // namespace
} // namespace corvane::posix

// Many changes at once: all of them or none.
#include "support/ConfigFixture.h"
#include "support/Differences.h"

#include <corvane/platform/Platform.h>

#include <stdexcept>

namespace {

using Changes = std::vector<platform::ProfileChange>;

class Batch : public ConfigFixture {
protected:
    int Write(const Changes& changes) {
        return platform::WritePrivateProfileChanges(changes, file.u8string().c_str());
    }
    std::ptrdiff_t FilesInFolder() const {
        return std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator());
    }
};

TEST_F(Batch, IsOneChangeOfTheFile) {
    struct Row {
        const char* before;
        Changes changes;
        const char* after;
    };
    const Row rows[] = {
        {"[s]\r\na=1\r\n", {}, "[s]\r\na=1\r\n"},
        {"[s]\r\na=1\r\n", {{"S", "A", "1"}, {"s", "b", nullptr}, {"t", nullptr, nullptr}}, "[s]\r\na=1\r\n"},
        {";c\r\n[s]\r\na=1\r\n",
         {{"s", "a", "2"}, {"s", "b", "\xC3\xA4"}, {"t", "c", "4"}, {"S", "A", "3"}},
         ";c\r\n[s]\r\na=3\r\nb=\xC3\xA4\r\n[t]\r\nc=4\r\n"},
        {"[s]\r\na=1\r\n", {{"s", "b", "2"}, {"s", nullptr, nullptr}, {"s", "c", "3"}}, "[s]\r\nc=3\r\n"},
        {"[s]\r\na=1\r\n", {{"s", "a", nullptr}, {"t", "b", "1"}, {"t", nullptr, nullptr}}, "[s]\r\n"},
    };
    for (const Row& row : rows) {
        WriteFile(file, row.before);
        EXPECT_TRUE(Write(row.changes)) << row.before;
        EXPECT_EQ(Bytes(file), row.after);
        EXPECT_EQ(FilesInFolder(), 1);
    }
    fs::remove(file);
    EXPECT_TRUE(Write({{"s", "a", nullptr}}));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(Write({{"s", "a", "1"}}));
    EXPECT_EQ(differences::InLf(Bytes(file)), "[s]\na=1\n");
    EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(Batch, ThatIsRefusedChangesNothing) {
    const std::string content = "[s]\r\na=1\r\n";
    WriteFile(file, content);
    const fs::path left = file.u8string() + ".corvane-batch"; // by a killed process, on Windows
    WriteFile(left, "[s]\r\na=half");
    EXPECT_THROW(Write({{"s", "a", "2"}, {"s", "b=", "2"}}), std::invalid_argument);
    EXPECT_THROW(Write({{"s", "a", "2"}, {"s", "b", "2\n"}}), std::invalid_argument);
    {
        const std::ofstream other(file, std::ios::app);
        EXPECT_EQ(Write({{"s", "a", "1"}}), !differences::filesInUseAreRefused);
    }
    EXPECT_EQ(Bytes(file), content);
    EXPECT_TRUE(Write({{"s", "a", "2"}, {"s", "b", "3"}}));
    EXPECT_EQ(Bytes(file), "[s]\r\na=2\r\nb=3\r\n");
    EXPECT_EQ(fs::exists(left), !differences::batchesMakeACopy);
}

} // namespace

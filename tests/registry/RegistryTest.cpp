#include "TemporaryRegistry.h"
#include "support/Differences.h"
#include "support/RegistryData.h"

#include <corvane/platform/Platform.h>
#include <corvane/registry/registry.h>

#include <set>

namespace corvane {
namespace {

using namespace platform;

/// A wide text, which stays, or null.
const wchar* Wide(const char* text) {
    static std::set<wstring> texts;
    return text ? texts.insert(ToWide(text)).first->c_str() : nullptr;
}

class Registry : public TemporaryRegistry {
protected:
    static std::string ReadText(const char* path, const char* name, const char* fallback = "-") {
        wchar buffer[64] = CORVANE_TEXT("before");
        registry_readString(nullptr, Wide(path), Wide(name), Wide(fallback), buffer, 64);
        return ToUtf8(buffer);
    }
    static int WriteText(const char* path, const char* name, const char* text) {
        return registry_writeString(nullptr, Wide(path), Wide(name), Wide(text));
    }
    static int WriteNumber(const char* path, ulong number, HKEY key = nullptr) {
        return registry_writeNumber(key, Wide(path), Wide("n"), number);
    }
};

TEST_F(Registry, FindsAKeyByEveryFormOfItsPath) {
    ASSERT_EQ(WriteText("HKEY_LOCAL_MACHINE\\Software\\App", "Name", "machine"), 0);
    ASSERT_EQ(WriteText("\\Software\\App", "Name", "user"), 0);
    ASSERT_EQ(WriteText("HKEY_USERS", "Name", "users"), 0);
    ASSERT_EQ(WriteText("HKEY_CLASSES_ROOT\\.txt", "", "text"), 0);
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"machine",
         {"HKEY_LOCAL_MACHINE\\Software\\App", "hkey_local_machine\\SOFTWARE\\aPP",
          "HKEY_L\\Software\\\\App\\"}},
        {"user", {"HKEY_CURRENT\\Software\\App", "H\\Software\\App", "\\Software\\App"}},
        {"users", {"HKEY_USERS\\"}},
        {"-",
         {"HKEY_LOCAL_MACHINES\\Software\\App", "HKEY_LOCAL_MACHINE\\\\Software\\App",
          "HKEY_LOCAL_MACHINE\\Software", "Software\\App", "", nullptr}}};
    for (const auto& [expected, paths] : rows)
        for (const char* path : paths)
            EXPECT_EQ(ReadText(path, "nAME"), expected) << (path ? path : "null");
    EXPECT_EQ(ReadText("HKEY_L\\software\\CLASSES\\.txt", ""), "text");
    EXPECT_EQ(ReadText("HKEY_LOCAL_MACHINE\\Software\\App", nullptr), "-");
}

TEST_F(Registry, CutsATextThatDoesNotFit) {
    const wchar* const text = Wide("twelve chars");
    ASSERT_EQ(WriteText("\\App", "Name", "twelve chars"), 0);
    for (const wchar* const name : {Wide("Name"), Wide("Missing")}) {
        wchar untouched = '#';
        const auto read = [&](wchar* buffer, ulong size) {
            return registry_readString(nullptr, Wide("\\App"), name, text, buffer, size);
        };
        for (const ulong size : {1U, 11U, 12U, 13U, 20U}) {
            wstring buffer(21, '#');
            EXPECT_EQ(read(buffer.data(), size), 12U);
            EXPECT_EQ(buffer.c_str(), wstring(text, std::min(size - 1, ulong{12})));
            EXPECT_EQ(buffer[size], CORVANE_TEXT('#')) << "beyond the buffer";
        }
        EXPECT_EQ(read(nullptr, 5) + read(&untouched, 0), 24U);
        EXPECT_EQ(untouched, '#');
    }
    // The buffer is touched only once a root was found.
    EXPECT_EQ(ReadText("\\Missing", "Name", nullptr), "");
    EXPECT_EQ(ReadText("Nowhere\\App", "Name", nullptr), "before");
    EXPECT_EQ(ReadText("\\Missing", nullptr, nullptr), "before");
}

TEST_F(Registry, PassesOverOtherTypes) {
    using namespace std::string_literals;
    HKEY app = CreateKey(Wide("App"));
    static const struct {
        const char* name;
        ulong type;
        std::string data;
        ulong number; // 7: none
        const char* text;
    } rows[] = {{"Binary", REG_BINARY, "A\0"s, 7, "-"},
                {"Number", REG_DWORD, "\x2a\0\0\0"s, 42, "-"},
                {"Big", REG_DWORD_BIG_ENDIAN, "\1\2\3\4"s, 0x01020304, "-"},
                {"Short", REG_DWORD, "\x2a\0"s, 42, "-"},
                {"Text", REG_SZ, TextData(wstring(CORVANE_TEXT("42\0"), 3)), 7, "42"},
                {"Path", REG_EXPAND_SZ, TextData(CORVANE_TEXT("%A%")), 7, "%A%"},
                {"Odd", REG_SZ, TextData(CORVANE_TEXT("A")) + "B", 7, "A"}};
    for (const auto& row : rows) {
        SetData(app, Wide(row.name), row.type, row.data);
        int found = -1;
        EXPECT_EQ(registry_readNumber(nullptr, Wide("\\App"), Wide(row.name), 7, &found), row.number);
        EXPECT_EQ(found, row.number != 7) << row.name;
        EXPECT_EQ(ReadText("\\App", row.name), row.text);
    }
    RegCloseKey(app);
}

TEST_F(Registry, PrefersTheMachinesNumber) {
    ulong value = 99;
    EXPECT_FALSE(registry_readUserNumericValue(Wide("App"), Wide("N"), &value));
    EXPECT_EQ(value, 99U);
    for (const auto& [path, number] :
         {std::pair("HKEY_CURRENT_USER\\App", 1U), {"HKEY_LOCAL_MACHINE\\App", ~0U}}) {
        ASSERT_EQ(WriteNumber(path, number), 0);
        EXPECT_TRUE(registry_readUserNumericValue(Wide("\\App"), Wide("N"), &value));
        EXPECT_EQ(value, number);
    }
}

TEST_F(Registry, WritesAtARootAndThroughAHandle) {
    EXPECT_EQ(WriteText("HKEY_CURRENT_USER", "a", "1"), 0);
    EXPECT_EQ(WriteText("HKEY_CURRENT_USER\\", "b", ""), 0);
    EXPECT_EQ(registry_writeNumber(HKEY_CURRENT_USER, nullptr, nullptr, 2), 0);
    EXPECT_EQ(ReadText("HKEY_CURRENT_USER", "a") + ReadText("HKEY_CURRENT_USER", "b"), "1");
    EXPECT_EQ(registry_readNumber(HKEY_CURRENT_USER, nullptr, Wide(""), 0, nullptr), 2U);
    EXPECT_EQ(WriteText("Nowhere\\App", "a", "1"), -1);
    EXPECT_EQ(WriteNumber(nullptr, 1), -1);

    HKEY key = CreateKey(Wide("App"));
    EXPECT_EQ(WriteNumber("Deep\\Deeper", 3, key) + WriteNumber("", 4, key), 0);
    EXPECT_EQ(registry_readNumber(key, Wide("deep\\deeper"), Wide("N"), 0, nullptr), 3U);
    EXPECT_EQ(registry_readNumber(key, nullptr, Wide("N"), 0, nullptr), 4U);
    EXPECT_EQ(RegCloseKey(key), 0);
    EXPECT_EQ(WriteNumber("", 5, key), 6);
}

TEST_F(Registry, DeletesOneKeyAndClosesTheHandleThatItDeletesUnder) {
    ASSERT_EQ(WriteNumber("\\App\\Inner", 1), 0);
    using Row = std::pair<const char*, int>;
    for (const auto& [path, status] :
         {Row(nullptr, 32768), Row("", 32768), Row("Nowhere\\App", 32768), Row("HKEY_CURRENT_USER", 32768),
          Row("HKEY_CURRENT_USER\\", differences::anEmptySubkeyIsTheKey ? 5 : 87), Row("\\App", 5),
          Row("\\APP\\inner", 0), Row("\\App\\Inner", 2), Row("\\App", 0), Row("\\App", 2),
          Row("\\None\\None", 2)})
        EXPECT_EQ(registry_deleteKey(nullptr, Wide(path)), status) << (path ? path : "null");
    EXPECT_EQ(registry_loadSubSectionNames(HKEY_CURRENT_USER, nullptr, ';'), nullptr);

    HKEY key = CreateKey(Wide("App"));
    EXPECT_EQ(registry_deleteKey(key, nullptr), 32768);
    EXPECT_EQ(WriteNumber("Inner", 1, key), 0);
    EXPECT_EQ(registry_deleteKey(key, Wide("None")), 2);
    EXPECT_EQ(RegCloseKey(key), 6);
    HKEY same = CreateKey(Wide("App"));
    for (const auto& [subKey, status] : {std::pair("", 5), {"Inner", 0}, {"", 0}}) { // "": the key itself
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, Wide("App"), 0, KEY_READ, &key), 0);
        EXPECT_EQ(registry_deleteKey(key, Wide(subKey)), status) << subKey;
    }
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, Wide("App"), 0, KEY_READ, &key), 2);
    EXPECT_EQ(registry_deleteKey(same, Wide("")), 1018);
}

TEST_F(Registry, ListsSubkeys) {
    for (const char* path : {"\\Two\\b", "\\Two\\A;", "\\One\\x", "\\None"})
        ASSERT_EQ(WriteNumber(path, 1), 0);
    using namespace std::string_literals;
    static const struct {
        const char* path;
        wchar delimiter;
        std::string names;
    } rows[] = {{"\\Two", ';', "A;;b\0\0"s}, {"\\Two", 0, "A;\0b\0\0"s}, {"\\One", ';', "x\0\0"s},
                {"\\None", ';', ""},         {"\\Missing", ';', ""},     {"Nowhere", ';', ""}};
    for (const auto& row : rows) {
        wchar* const block = registry_loadSubSectionNames(nullptr, Wide(row.path), row.delimiter);
        EXPECT_EQ(block ? ToUtf8({block, row.names.size()}) : "", row.names) << row.path;
        EXPECT_EQ(block == nullptr, row.names.empty());
        std::free(block);
    }
}

} // namespace
} // namespace corvane

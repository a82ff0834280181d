#include "TemporaryRegistry.h"

#include <corvane/platform/posix/PosixRegistry.h>
#include <corvane/registry/registry.h>

#include <memory>

namespace corvane {
namespace {

using namespace platform;

class Registry : public TemporaryRegistry {
protected:
    static wstring ReadText(const wchar* path, const wchar* name, const wchar* fallback = u"-") {
        wchar buffer[64] = u"before";
        registry_readString(nullptr, path, name, fallback, buffer, 64);
        return buffer;
    }
};

TEST_F(Registry, FindsAKeyByEveryFormOfItsPath) {
    ASSERT_EQ(registry_writeString(nullptr, u"HKEY_LOCAL_MACHINE\\Software\\App", u"Name", u"machine"), 0);
    ASSERT_EQ(registry_writeString(nullptr, u"\\Software\\App", u"Name", u"user"), 0);
    ASSERT_EQ(registry_writeString(nullptr, u"HKEY_USERS", u"Name", u"users"), 0);
    ASSERT_EQ(registry_writeString(nullptr, u"HKEY_CLASSES_ROOT\\.txt", u"", u"text"), 0);
    static const struct {
        const wchar* path;
        const wchar* name;
        const wchar* expected;
    } rows[] = {
        {u"HKEY_LOCAL_MACHINE\\Software\\App", u"Name", u"machine"},
        {u"hkey_local_machine\\SOFTWARE\\aPP", u"nAME", u"machine"},
        {u"HKEY_L\\Software\\App\\", u"Name", u"machine"},
        {u"HKEY_L\\Software\\\\App", u"Name", u"machine"},
        {u"HKEY_CURRENT\\Software\\App", u"Name", u"user"},
        {u"H\\Software\\App", u"Name", u"user"},
        {u"\\Software\\App", u"Name", u"user"},
        {u"HKEY_USERS", u"Name", u"users"},
        {u"HKEY_USERS\\", u"Name", u"users"},
        {u"HKEY_L\\software\\CLASSES\\.txt", u"", u"text"},
        {u"HKEY_LOCAL_MACHINES\\Software\\App", u"Name", u"-"},
        {u"Software\\App", u"Name", u"-"},
        {u"HKEY_LOCAL_MACHINE\\\\Software\\App", u"Name", u"-"},
        {u"HKEY_LOCAL_MACHINE\\Software", u"Name", u"-"},
        {u"HKEY_DYN_DATA", u"Name", u"-"},
        {u"", u"Name", u"-"},
        {nullptr, u"Name", u"-"},
        {u"HKEY_LOCAL_MACHINE\\Software\\App", nullptr, u"-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReadText(row.path, row.name), row.expected) << (row.path ? ToUtf8(row.path) : "null");
}

TEST_F(Registry, CutsATextThatDoesNotFit) {
    ASSERT_EQ(registry_writeString(nullptr, u"\\App", u"Name", u"twelve chars"), 0);
    for (const wchar* name : {u"Name", u"Missing"}) {
        for (const ulong size : {1U, 2U, 11U, 12U, 13U, 20U}) {
            wchar buffer[20];
            std::fill(std::begin(buffer), std::end(buffer), u'#');
            EXPECT_EQ(registry_readString(nullptr, u"\\App", name, u"twelve chars", buffer, size), 12U);
            EXPECT_EQ(wstring_view(buffer), wstring(u"twelve chars", std::min(size - 1, 12U)));
            EXPECT_TRUE(size == 20 || buffer[size] == '#') << "beyond the buffer";
        }
        wchar untouched = '#';
        EXPECT_EQ(registry_readString(nullptr, u"\\App", name, u"twelve chars", nullptr, 5), 12U);
        EXPECT_EQ(registry_readString(nullptr, u"\\App", name, u"twelve chars", &untouched, 0), 12U);
        EXPECT_EQ(untouched, '#');
    }
}

TEST_F(Registry, TouchesTheBufferOnlyOnceARootWasFound) {
    EXPECT_EQ(ReadText(u"\\Missing", u"Name", nullptr), u"");
    EXPECT_EQ(ReadText(u"Nowhere\\App", u"Name", nullptr), u"before");
    EXPECT_EQ(ReadText(u"\\Missing", nullptr, nullptr), u"before");
    EXPECT_EQ(registry_readString(nullptr, u"Nowhere", u"Name", nullptr, nullptr, 0), 0U);
}

TEST_F(Registry, PassesOverOtherTypesAndShortData) {
    Write(User() / "App" / ".values", "\"Binary\"=hex:41,00\n"
                                      "\"Number\"=dword:0000002a\n"
                                      "\"Big\"=hex(5):00,00,00,2a\n"
                                      "\"Short\"=hex(4):2a,00\n"
                                      "\"Text\"=\"42\"\n"
                                      "\"Path\"=hex(2):25,00,41,00,25,00\n"
                                      "\"Odd\"=hex(1):41,00,42\n");
    static const struct {
        const wchar* name;
        ulong number;
        const wchar* text;
    } rows[] = {
        {u"Binary", 7, u"-"}, {u"Number", 42, u"-"}, {u"Big", 42, u"-"}, {u"Short", 7, u"-"},
        {u"Text", 7, u"42"},  {u"Path", 7, u"%A%"},  {u"Odd", 7, u"A"},
    };
    for (const auto& row : rows) {
        int found = -1;
        EXPECT_EQ(registry_readNumber(nullptr, u"\\App", row.name, 7, &found), row.number)
            << ToUtf8(row.name);
        EXPECT_EQ(found, row.number == 42 ? 1 : 0) << ToUtf8(row.name);
        EXPECT_EQ(ReadText(u"\\App", row.name), row.text);
    }
    EXPECT_EQ(registry_readNumber(nullptr, u"\\App", u"Number", 7, nullptr), 42U);
}

TEST_F(Registry, PrefersTheMachinesNumber) {
    ulong value = 99;
    EXPECT_FALSE(registry_readUserNumericValue(u"App", u"N", &value));
    EXPECT_EQ(value, 99U);
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_CURRENT_USER\\App", u"N", 1), 0);
    EXPECT_TRUE(registry_readUserNumericValue(u"\\App", u"N", &value));
    EXPECT_EQ(value, 1U);
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App", u"N", 0xFFFFFFFF), 0);
    EXPECT_TRUE(registry_readUserNumericValue(u"App", u"N", &value));
    EXPECT_EQ(value, 0xFFFFFFFF);
}

TEST_F(Registry, WritesAtARootAndThroughAHandle) {
    EXPECT_EQ(registry_writeString(nullptr, u"HKEY_CURRENT_USER", u"a", u"1"), 0);
    EXPECT_EQ(registry_writeString(nullptr, u"HKEY_CURRENT_USER\\", u"b", u""), 0);
    EXPECT_EQ(registry_writeNumber(HKEY_CURRENT_USER, nullptr, nullptr, 2), 0);
    EXPECT_EQ(Read(User() / ".values"), "\"a\"=\"1\"\n\"b\"=\"\"\n@=dword:00000002\n");
    EXPECT_EQ(registry_writeString(nullptr, u"Nowhere\\App", u"a", u"1"), -1);
    EXPECT_EQ(registry_writeNumber(nullptr, nullptr, u"a", 1), -1);

    HKEY key = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, u"App", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
    EXPECT_EQ(registry_writeNumber(key, u"Deep\\Deeper", u"n", 3), 0);
    EXPECT_EQ(registry_writeNumber(key, u"", u"n", 4), 0);
    EXPECT_EQ(registry_readNumber(key, u"deep\\deeper", u"N", 0, nullptr), 3U);
    EXPECT_EQ(registry_readNumber(key, nullptr, u"N", 0, nullptr), 4U);
    EXPECT_EQ(RegCloseKey(key), 0);
    EXPECT_EQ(registry_writeNumber(key, u"", u"n", 5), 6);
}

TEST_F(Registry, DeletesOneKey) {
    ASSERT_EQ(registry_writeNumber(nullptr, u"\\App\\Inner", u"n", 1), 0);
    static const struct {
        const wchar* path;
        int status;
    } rows[] = {
        {nullptr, 32768},
        {u"", 32768},
        {u"Nowhere\\App", 32768},
        {u"HKEY_CURRENT_USER", 32768},
        {u"HKEY_CURRENT_USER\\", 87},
        {u"\\App", 5},
        {u"\\APP\\inner", 0},
        {u"\\App\\Inner", 2},
        {u"\\App", 0},
        {u"\\App", 2},
        {u"\\None\\None", 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(registry_deleteKey(nullptr, row.path), row.status)
            << (row.path ? ToUtf8(row.path) : "null");
    EXPECT_TRUE(std::filesystem::is_empty(User()));
}

TEST_F(Registry, ClosesTheHandleThatItDeletesUnder) {
    HKEY key = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, u"App", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
    EXPECT_EQ(registry_deleteKey(key, nullptr), 32768);
    EXPECT_EQ(registry_writeNumber(key, u"Inner", u"n", 1), 0);
    EXPECT_EQ(registry_deleteKey(key, u"None"), 2);
    EXPECT_EQ(RegCloseKey(key), 6);
}

TEST_F(Registry, ListsSubkeys) {
    const auto list = [](const wchar* path, wchar delimiter, std::size_t size) {
        const std::unique_ptr<wchar, decltype(&std::free)> block(
            registry_loadSubSectionNames(nullptr, path, delimiter), &std::free);
        return block ? wstring(block.get(), size) : wstring(u"null");
    };
    for (const wchar* path : {u"\\Two\\b", u"\\Two\\A;", u"\\One\\x", u"\\None"})
        ASSERT_EQ(registry_writeNumber(nullptr, path, u"n", 1), 0);
    EXPECT_EQ(list(u"\\Two", ';', 6), wstring_view(u"A;;b\0\0", 6));
    EXPECT_EQ(list(u"\\Two", 0, 6), wstring_view(u"A;\0b\0\0", 6));
    EXPECT_EQ(list(u"\\One", ';', 3), wstring_view(u"x\0\0", 3));
    EXPECT_EQ(list(u"\\None", ';', 0), u"null");
    EXPECT_EQ(list(u"\\Missing", ';', 0), u"null");
    EXPECT_EQ(list(u"Nowhere", ';', 0), u"null");
}

} // namespace
} // namespace corvane

#include "TemporaryRegistry.h"
#include "support/Differences.h"

#include <corvane/platform/Platform.h>
#include <corvane/registry/registry.h>

#include <memory>

namespace corvane {
namespace {

using namespace platform;

class Registry : public TemporaryRegistry {
protected:
    static wstring ReadText(const wchar* path, const wchar* name, const wchar* fallback = CORVANE_TEXT("-")) {
        wchar buffer[64] = CORVANE_TEXT("before");
        registry_readString(nullptr, path, name, fallback, buffer, 64);
        return buffer;
    }
};

TEST_F(Registry, FindsAKeyByEveryFormOfItsPath) {
    ASSERT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_LOCAL_MACHINE\\Software\\App"),
                                   CORVANE_TEXT("Name"), CORVANE_TEXT("machine")),
              0);
    ASSERT_EQ(registry_writeString(nullptr, CORVANE_TEXT("\\Software\\App"), CORVANE_TEXT("Name"),
                                   CORVANE_TEXT("user")),
              0);
    ASSERT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_USERS"), CORVANE_TEXT("Name"),
                                   CORVANE_TEXT("users")),
              0);
    ASSERT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_CLASSES_ROOT\\.txt"), CORVANE_TEXT(""),
                                   CORVANE_TEXT("text")),
              0);
    static const struct {
        const wchar* path;
        const wchar* name;
        const wchar* expected;
    } rows[] = {
        {CORVANE_TEXT("HKEY_LOCAL_MACHINE\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("machine")},
        {CORVANE_TEXT("hkey_local_machine\\SOFTWARE\\aPP"), CORVANE_TEXT("nAME"), CORVANE_TEXT("machine")},
        {CORVANE_TEXT("HKEY_L\\Software\\App\\"), CORVANE_TEXT("Name"), CORVANE_TEXT("machine")},
        {CORVANE_TEXT("HKEY_L\\Software\\\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("machine")},
        {CORVANE_TEXT("HKEY_CURRENT\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("user")},
        {CORVANE_TEXT("H\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("user")},
        {CORVANE_TEXT("\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("user")},
        {CORVANE_TEXT("HKEY_USERS"), CORVANE_TEXT("Name"), CORVANE_TEXT("users")},
        {CORVANE_TEXT("HKEY_USERS\\"), CORVANE_TEXT("Name"), CORVANE_TEXT("users")},
        {CORVANE_TEXT("HKEY_L\\software\\CLASSES\\.txt"), CORVANE_TEXT(""), CORVANE_TEXT("text")},
        {CORVANE_TEXT("HKEY_LOCAL_MACHINES\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT("Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT("HKEY_LOCAL_MACHINE\\\\Software\\App"), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT("HKEY_LOCAL_MACHINE\\Software"), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT("HKEY_DYN_DATA"), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT(""), CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {nullptr, CORVANE_TEXT("Name"), CORVANE_TEXT("-")},
        {CORVANE_TEXT("HKEY_LOCAL_MACHINE\\Software\\App"), nullptr, CORVANE_TEXT("-")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReadText(row.path, row.name), row.expected) << (row.path ? ToUtf8(row.path) : "null");
}

TEST_F(Registry, CutsATextThatDoesNotFit) {
    ASSERT_EQ(registry_writeString(nullptr, CORVANE_TEXT("\\App"), CORVANE_TEXT("Name"),
                                   CORVANE_TEXT("twelve chars")),
              0);
    for (const wchar* name : {CORVANE_TEXT("Name"), CORVANE_TEXT("Missing")}) {
        for (const ulong size : {1U, 2U, 11U, 12U, 13U, 20U}) {
            wchar buffer[20];
            std::fill(std::begin(buffer), std::end(buffer), CORVANE_TEXT('#'));
            EXPECT_EQ(registry_readString(nullptr, CORVANE_TEXT("\\App"), name, CORVANE_TEXT("twelve chars"),
                                          buffer, size),
                      12U);
            EXPECT_EQ(wstring_view(buffer),
                      wstring(CORVANE_TEXT("twelve chars"), std::min(size - 1, ulong{12})));
            EXPECT_TRUE(size == 20 || buffer[size] == '#') << "beyond the buffer";
        }
        wchar untouched = '#';
        EXPECT_EQ(registry_readString(nullptr, CORVANE_TEXT("\\App"), name, CORVANE_TEXT("twelve chars"),
                                      nullptr, 5),
                  12U);
        EXPECT_EQ(registry_readString(nullptr, CORVANE_TEXT("\\App"), name, CORVANE_TEXT("twelve chars"),
                                      &untouched, 0),
                  12U);
        EXPECT_EQ(untouched, '#');
    }
}

TEST_F(Registry, TouchesTheBufferOnlyOnceARootWasFound) {
    EXPECT_EQ(ReadText(CORVANE_TEXT("\\Missing"), CORVANE_TEXT("Name"), nullptr), CORVANE_TEXT(""));
    EXPECT_EQ(ReadText(CORVANE_TEXT("Nowhere\\App"), CORVANE_TEXT("Name"), nullptr), CORVANE_TEXT("before"));
    EXPECT_EQ(ReadText(CORVANE_TEXT("\\Missing"), nullptr, nullptr), CORVANE_TEXT("before"));
    EXPECT_EQ(
        registry_readString(nullptr, CORVANE_TEXT("Nowhere"), CORVANE_TEXT("Name"), nullptr, nullptr, 0), 0U);
}

TEST_F(Registry, PassesOverOtherTypes) {
    HKEY app = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, CORVANE_TEXT("App"), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &app, nullptr),
              0);
    const auto set = [app](const wchar* name, ulong type, std::string_view data) {
        EXPECT_EQ(RegSetValueExW(app, name, 0, type, reinterpret_cast<const unsigned char*>(data.data()),
                                 static_cast<ulong>(data.size())),
                  0);
    };
    using namespace std::string_view_literals;
    set(CORVANE_TEXT("Binary"), REG_BINARY, "A\0"sv);
    set(CORVANE_TEXT("Number"), REG_DWORD, "\x2a\0\0\0"sv);
    set(CORVANE_TEXT("Big"), REG_DWORD_BIG_ENDIAN, "\0\0\0\x2a"sv);
    set(CORVANE_TEXT("Short"), REG_DWORD, "\x2a\0"sv);
    set(CORVANE_TEXT("Text"), REG_SZ, "4\0002\0\0\0"sv);
    set(CORVANE_TEXT("Path"), REG_EXPAND_SZ, "%\0A\0%\0"sv);
    set(CORVANE_TEXT("Odd"), REG_SZ, "A\0B"sv);
    RegCloseKey(app);
    static const struct {
        const wchar* name;
        ulong number;
        const wchar* text;
    } rows[] = {
        {CORVANE_TEXT("Binary"), 7, CORVANE_TEXT("-")}, {CORVANE_TEXT("Number"), 42, CORVANE_TEXT("-")},
        {CORVANE_TEXT("Big"), 42, CORVANE_TEXT("-")},   {CORVANE_TEXT("Short"), 42, CORVANE_TEXT("-")},
        {CORVANE_TEXT("Text"), 7, CORVANE_TEXT("42")},  {CORVANE_TEXT("Path"), 7, CORVANE_TEXT("%A%")},
        {CORVANE_TEXT("Odd"), 7, CORVANE_TEXT("A")},
    };
    for (const auto& row : rows) {
        int found = -1;
        EXPECT_EQ(registry_readNumber(nullptr, CORVANE_TEXT("\\App"), row.name, 7, &found), row.number)
            << ToUtf8(row.name);
        EXPECT_EQ(found, row.number == 42 ? 1 : 0) << ToUtf8(row.name);
        EXPECT_EQ(ReadText(CORVANE_TEXT("\\App"), row.name), row.text);
    }
    EXPECT_EQ(registry_readNumber(nullptr, CORVANE_TEXT("\\App"), CORVANE_TEXT("Number"), 7, nullptr), 42U);
}

TEST_F(Registry, PrefersTheMachinesNumber) {
    ulong value = 99;
    EXPECT_FALSE(registry_readUserNumericValue(CORVANE_TEXT("App"), CORVANE_TEXT("N"), &value));
    EXPECT_EQ(value, 99U);
    ASSERT_EQ(registry_writeNumber(nullptr, CORVANE_TEXT("HKEY_CURRENT_USER\\App"), CORVANE_TEXT("N"), 1), 0);
    EXPECT_TRUE(registry_readUserNumericValue(CORVANE_TEXT("\\App"), CORVANE_TEXT("N"), &value));
    EXPECT_EQ(value, 1U);
    ASSERT_EQ(
        registry_writeNumber(nullptr, CORVANE_TEXT("HKEY_LOCAL_MACHINE\\App"), CORVANE_TEXT("N"), 0xFFFFFFFF),
        0);
    EXPECT_TRUE(registry_readUserNumericValue(CORVANE_TEXT("App"), CORVANE_TEXT("N"), &value));
    EXPECT_EQ(value, 0xFFFFFFFF);
}

TEST_F(Registry, WritesAtARootAndThroughAHandle) {
    EXPECT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_CURRENT_USER"), CORVANE_TEXT("a"),
                                   CORVANE_TEXT("1")),
              0);
    EXPECT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_CURRENT_USER\\"), CORVANE_TEXT("b"),
                                   CORVANE_TEXT("")),
              0);
    EXPECT_EQ(registry_writeNumber(HKEY_CURRENT_USER, nullptr, nullptr, 2), 0);
    EXPECT_EQ(ReadText(CORVANE_TEXT("HKEY_CURRENT_USER"), CORVANE_TEXT("a")), CORVANE_TEXT("1"));
    EXPECT_EQ(ReadText(CORVANE_TEXT("HKEY_CURRENT_USER"), CORVANE_TEXT("b")), wstring());
    EXPECT_EQ(registry_readNumber(HKEY_CURRENT_USER, nullptr, CORVANE_TEXT(""), 0, nullptr), 2U);
    EXPECT_EQ(
        registry_writeString(nullptr, CORVANE_TEXT("Nowhere\\App"), CORVANE_TEXT("a"), CORVANE_TEXT("1")),
        -1);
    EXPECT_EQ(registry_writeNumber(nullptr, nullptr, CORVANE_TEXT("a"), 1), -1);

    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, CORVANE_TEXT("App"), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &key, nullptr),
              0);
    EXPECT_EQ(registry_writeNumber(key, CORVANE_TEXT("Deep\\Deeper"), CORVANE_TEXT("n"), 3), 0);
    EXPECT_EQ(registry_writeNumber(key, CORVANE_TEXT(""), CORVANE_TEXT("n"), 4), 0);
    EXPECT_EQ(registry_readNumber(key, CORVANE_TEXT("deep\\deeper"), CORVANE_TEXT("N"), 0, nullptr), 3U);
    EXPECT_EQ(registry_readNumber(key, nullptr, CORVANE_TEXT("N"), 0, nullptr), 4U);
    EXPECT_EQ(RegCloseKey(key), 0);
    EXPECT_EQ(registry_writeNumber(key, CORVANE_TEXT(""), CORVANE_TEXT("n"), 5), 6);
}

TEST_F(Registry, DeletesOneKey) {
    ASSERT_EQ(registry_writeNumber(nullptr, CORVANE_TEXT("\\App\\Inner"), CORVANE_TEXT("n"), 1), 0);
    static const struct {
        const wchar* path;
        int status;
    } rows[] = {
        {nullptr, 32768},
        {CORVANE_TEXT(""), 32768},
        {CORVANE_TEXT("Nowhere\\App"), 32768},
        {CORVANE_TEXT("HKEY_CURRENT_USER"), 32768},
        {CORVANE_TEXT("HKEY_CURRENT_USER\\"), differences::anEmptySubkeyIsTheKey ? 5 : 87},
        {CORVANE_TEXT("\\App"), 5},
        {CORVANE_TEXT("\\APP\\inner"), 0},
        {CORVANE_TEXT("\\App\\Inner"), 2},
        {CORVANE_TEXT("\\App"), 0},
        {CORVANE_TEXT("\\App"), 2},
        {CORVANE_TEXT("\\None\\None"), 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(registry_deleteKey(nullptr, row.path), row.status)
            << (row.path ? ToUtf8(row.path) : "null");
    EXPECT_EQ(registry_loadSubSectionNames(HKEY_CURRENT_USER, nullptr, ';'), nullptr);
}

TEST_F(Registry, ClosesTheHandleThatItDeletesUnder) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, CORVANE_TEXT("App"), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &key, nullptr),
              0);
    EXPECT_EQ(registry_deleteKey(key, nullptr), 32768);
    EXPECT_EQ(registry_writeNumber(key, CORVANE_TEXT("Inner"), CORVANE_TEXT("n"), 1), 0);
    EXPECT_EQ(registry_deleteKey(key, CORVANE_TEXT("None")), 2);
    EXPECT_EQ(RegCloseKey(key), 6);
}

TEST_F(Registry, ListsSubkeys) {
    const auto list = [](const wchar* path, wchar delimiter, std::size_t size) {
        const std::unique_ptr<wchar, decltype(&std::free)> block(
            registry_loadSubSectionNames(nullptr, path, delimiter), &std::free);
        return block ? wstring(block.get(), size) : wstring(CORVANE_TEXT("null"));
    };
    for (const wchar* path : {CORVANE_TEXT("\\Two\\b"), CORVANE_TEXT("\\Two\\A;"), CORVANE_TEXT("\\One\\x"),
                              CORVANE_TEXT("\\None")})
        ASSERT_EQ(registry_writeNumber(nullptr, path, CORVANE_TEXT("n"), 1), 0);
    EXPECT_EQ(list(CORVANE_TEXT("\\Two"), ';', 6), wstring_view(CORVANE_TEXT("A;;b\0\0"), 6));
    EXPECT_EQ(list(CORVANE_TEXT("\\Two"), 0, 6), wstring_view(CORVANE_TEXT("A;\0b\0\0"), 6));
    EXPECT_EQ(list(CORVANE_TEXT("\\One"), ';', 3), wstring_view(CORVANE_TEXT("x\0\0"), 3));
    EXPECT_EQ(list(CORVANE_TEXT("\\None"), ';', 0), CORVANE_TEXT("null"));
    EXPECT_EQ(list(CORVANE_TEXT("\\Missing"), ';', 0), CORVANE_TEXT("null"));
    EXPECT_EQ(list(CORVANE_TEXT("Nowhere"), ';', 0), CORVANE_TEXT("null"));
}

} // namespace
} // namespace corvane

// The platform calls of the registry functions, one by one: a recording platform stands under the library.
#include <corvane/foundations/CaseFolding.h>
#include <corvane/platform/Platform.h>
#include <corvane/registry/registry.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <vector>

namespace corvane {
namespace {

using namespace platform;

struct Script {
    std::ostringstream calls;
    LSTATUS openStatus = 0;
    LSTATUS createStatus = 0;
    LSTATUS setStatus = 0;
    LSTATUS deleteStatus = 0;
    bool givesHandle = true;
    bool hasModule = true;
    ulong failingIndex = 99;
};
Script script;
int openedKey;

const std::vector<std::pair<wstring, ulong>> values = {{CORVANE_TEXT("a"), REG_DWORD},
                                                       {CORVANE_TEXT("b"), REG_SZ},
                                                       {CORVANE_TEXT("b"), REG_DWORD},
                                                       {CORVANE_TEXT("c"), REG_DWORD}};

std::string Name(HKEY key) {
    if (key == reinterpret_cast<HKEY>(&openedKey))
        return "opened";
    return key == HKEY_LOCAL_MACHINE ? "machine" : key == HKEY_CURRENT_USER ? "user" : "given";
}

std::string Text(const wchar* text) {
    return text ? ToUtf8(text) : "null";
}

LSTATUS Give(LSTATUS status, HKEY* key) {
    *key = status == 0 && script.givesHandle ? reinterpret_cast<HKEY>(&openedKey) : nullptr;
    return status;
}

class ScriptedRegistry : public ::testing::Test {
protected:
    ScriptedRegistry() { script = Script(); }

    static std::string TakeCalls() {
        std::string calls = script.calls.str();
        script.calls.str("");
        return calls;
    }

    int m_given = 0;
};

TEST_F(ScriptedRegistry, AReadWalksToTheValueAndNoFurther) {
    int found = 0;
    EXPECT_EQ(registry_readNumber(nullptr, CORVANE_TEXT("HKEY_L\\x"), CORVANE_TEXT("B"), 7, &found, 0x100),
              2U);
    EXPECT_EQ(TakeCalls(), "open machine x 20119;query;value 0 9;value 1 9;value 2 9;close opened;");
    script.failingIndex = 2;
    EXPECT_EQ(registry_readNumber(&m_given, CORVANE_TEXT(""), CORVANE_TEXT("b"), 7, &found), 7U);
    EXPECT_EQ(TakeCalls(),
              "open given null 20019;query;value 0 9;value 1 9;value 2 9;value 3 9;close opened;");
    EXPECT_EQ(registry_readString(&m_given, nullptr, CORVANE_TEXT("b"), nullptr, nullptr, 0), 1U);
    EXPECT_EQ(TakeCalls(), "open given null 20019;query;value 0 9;value 1 9;close opened;");
    script.openStatus = 5;
    EXPECT_EQ(registry_readNumber(nullptr, CORVANE_TEXT("\\x"), CORVANE_TEXT("b"), 7, &found), 7U);
    EXPECT_EQ(TakeCalls(), "open user x 20019;");
    script.openStatus = 0;
    script.givesHandle = false;
    EXPECT_EQ(registry_readNumber(nullptr, CORVANE_TEXT("\\x"), CORVANE_TEXT("b"), 7, &found), 7U);
    EXPECT_EQ(TakeCalls(), "open user x 20019;");
    EXPECT_EQ(registry_readString(nullptr, CORVANE_TEXT("\\x"), nullptr, CORVANE_TEXT("abc"), nullptr, 0),
              3U);
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(ScriptedRegistry, TheUsersPlaceIsReadWithoutTheCallersFlags) {
    script.openStatus = 2;
    ulong value = 0;
    EXPECT_FALSE(registry_readUserNumericValue(CORVANE_TEXT("x"), CORVANE_TEXT("b"), &value, 0x200));
    EXPECT_EQ(TakeCalls(), "open machine x 20219;open user x 20019;");
}

TEST_F(ScriptedRegistry, AWriteCreatesSetsAndCloses) {
    EXPECT_EQ(registry_writeString(nullptr, CORVANE_TEXT("\\x"), CORVANE_TEXT("n"), CORVANE_TEXT("abc")), 0);
    EXPECT_EQ(TakeCalls(), "create user x f003f;set opened n 1 8;close opened;");
    EXPECT_EQ(registry_writeString(nullptr, CORVANE_TEXT("HKEY_L\\"), CORVANE_TEXT("n"), CORVANE_TEXT("")),
              0);
    EXPECT_EQ(TakeCalls(), "set machine n 1 2;");
    script.setStatus = 5;
    EXPECT_EQ(registry_writeNumber(&m_given, CORVANE_TEXT("x"), nullptr, 1), 5);
    EXPECT_EQ(TakeCalls(), "create given x f003f;set opened null 4 4;close opened;");
    script.createStatus = 1018;
    EXPECT_EQ(registry_writeNumber(&m_given, CORVANE_TEXT("x"), CORVANE_TEXT("n"), 1), 1018);
    EXPECT_EQ(TakeCalls(), "create given x f003f;");
    script.createStatus = 0;
    script.givesHandle = false;
    EXPECT_EQ(registry_writeNumber(&m_given, CORVANE_TEXT("x"), CORVANE_TEXT("n"), 1), -1);
    EXPECT_EQ(TakeCalls(), "create given x f003f;");
}

// In a process of its own, which has looked nothing up yet; stands before the test that does.
TEST_F(ScriptedRegistry, AMissingDeleteOperationIsNotLookedForAgain) {
    const auto deleteTwice = [this] {
        script.hasModule = false;
        registry_deleteKey(&m_given, CORVANE_TEXT("x"));
        registry_deleteKey(&m_given, CORVANE_TEXT("y"));
        std::cerr << TakeCalls();
        std::_Exit(0);
    };
    EXPECT_EXIT(deleteTwice(), testing::ExitedWithCode(0),
                "^module Advapi32.dll;delete x;close given;delete y;close given;$");
}

TEST_F(ScriptedRegistry, TheDeleteOperationIsLookedUpOnce) {
    script.deleteStatus = 5;
    EXPECT_EQ(registry_deleteKey(&m_given, CORVANE_TEXT("x")), 5);
    EXPECT_EQ(TakeCalls(), "module Advapi32.dll;address RegDeleteKeyExW;deleteEx given x 0;close given;");
    EXPECT_EQ(registry_deleteKey(nullptr, CORVANE_TEXT("HKEY_L\\")), 5);
    EXPECT_EQ(TakeCalls(), "deleteEx machine  0;close machine;");
    EXPECT_EQ(registry_deleteKey(&m_given, nullptr), 32768);
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(ScriptedRegistry, AnEnumerationSkipsWhatIsGone) {
    script.failingIndex = 1;
    wchar* const names = registry_loadSubSectionNames(nullptr, CORVANE_TEXT("\\x"), ';', 0x100);
    EXPECT_EQ(wstring_view(names, 7), wstring_view(CORVANE_TEXT("k0;k2\0\0"), 7));
    std::free(names);
    EXPECT_EQ(TakeCalls(),
              "open user x 20119;query;subkey 0 3;subkey 1 3;subkey 2 3;subkey 3 3;close opened;");
}

} // namespace

LSTATUS platform::RegOpenKeyExW(HKEY key, const wchar* subKey, ulong, ulong access, HKEY* opened) noexcept {
    script.calls << "open " << Name(key) << ' ' << Text(subKey) << ' ' << std::hex << access << ';';
    return Give(script.openStatus, opened);
}

LSTATUS platform::RegCreateKeyExW(HKEY key, const wchar* subKey, ulong, wchar*, ulong, ulong access,
                                  const void*, HKEY* opened, ulong*) noexcept {
    script.calls << "create " << Name(key) << ' ' << Text(subKey) << ' ' << std::hex << access << ';';
    return Give(script.createStatus, opened);
}

LSTATUS platform::RegCloseKey(HKEY key) noexcept {
    script.calls << "close " << Name(key) << ';';
    return 0;
}

LSTATUS platform::RegQueryInfoKeyW(HKEY, wchar*, ulong*, ulong*, ulong* subKeys, ulong* longestSubKey, ulong*,
                                   ulong* count, ulong* longestName, ulong* largest, ulong*,
                                   FILETIME*) noexcept {
    script.calls << "query;";
    *count = static_cast<ulong>(values.size());
    if (subKeys) {
        *subKeys = 4;
        *longestSubKey = 2;
    } else {
        *longestName = 8;
        *largest = 4;
    }
    return 0;
}

// The data is the index as a number, or the text "b" without a terminator.
LSTATUS platform::RegEnumValueW(HKEY, ulong index, wchar* name, ulong* nameLength, ulong*, ulong* type,
                                unsigned char* data, ulong* size) noexcept {
    script.calls << "value " << index << ' ' << *nameLength << ';';
    if (index == script.failingIndex)
        return 234;
    const auto& [valueName, valueType] = values.at(index);
    std::copy_n(valueName.c_str(), valueName.size() + 1, name);
    *type = valueType;
    *size = valueType == REG_SZ ? 2 : 4;
    std::memcpy(data, valueType == REG_SZ ? static_cast<const void*>(CORVANE_TEXT("b")) : &index, *size);
    return 0;
}

LSTATUS platform::RegEnumKeyExW(HKEY, ulong index, wchar* name, ulong* nameLength, ulong*, wchar*, ulong*,
                                FILETIME*) noexcept {
    script.calls << "subkey " << index << ' ' << *nameLength << ';';
    name[0] = 'k';
    name[1] = static_cast<wchar>('0' + index);
    *nameLength = index == 3 ? 0 : 2;
    return index == script.failingIndex ? 234 : 0;
}

LSTATUS platform::RegSetValueExW(HKEY key, const wchar* name, ulong, ulong type, const unsigned char*,
                                 ulong size) noexcept {
    script.calls << "set " << Name(key) << ' ' << Text(name) << ' ' << type << ' ' << size << ';';
    return script.setStatus;
}

LSTATUS platform::RegDeleteKeyW(HKEY, const wchar* subKey) noexcept {
    script.calls << "delete " << Text(subKey) << ';';
    return 0;
}

LSTATUS platform::RegDeleteKeyExW(HKEY key, const wchar* subKey, ulong access, ulong) noexcept {
    script.calls << "deleteEx " << Name(key) << ' ' << Text(subKey) << ' ' << access << ';';
    return script.deleteStatus;
}

HMODULE platform::GetModuleHandleW(const wchar* name) noexcept {
    script.calls << "module " << Text(name) << ';';
    return script.hasModule ? reinterpret_cast<HMODULE>(&openedKey) : nullptr;
}

FARPROC platform::GetProcAddress(HMODULE, const char* name) noexcept {
    script.calls << "address " << name << ';';
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&platform::RegDeleteKeyExW));
}

int platform::_wcsnicmp(const wchar* a, const wchar* b, std::size_t count) noexcept {
    return CompareIgnoringCase(wstring_view(a).substr(0, count), wstring_view(b).substr(0, count));
}

} // namespace corvane

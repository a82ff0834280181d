// The POSIX registry by its own operations: what is on disk, what other processes do, what goes wrong.
#include "TemporaryRegistry.h"
#include "posix/TestFolder.h"

#include <corvane/platform/posix/PosixRegistry.h>
#include <corvane/registry/registry.h>

#include <csignal>
#include <set>
#include <thread>

namespace corvane {
namespace {

using namespace platform;
using corvane::test::Fork;
using corvane::test::Wait;
namespace fs = std::filesystem;

class RegistryStore : public TemporaryRegistry {
protected:
    static HKEY Create(const wstring& path, ulong access = KEY_ALL_ACCESS) {
        HKEY key = nullptr;
        EXPECT_EQ(
            RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, access, nullptr, &key, nullptr),
            0);
        return key;
    }
    static LSTATUS Open(const wchar* path, HKEY& key, ulong access = KEY_READ) {
        return RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, &key);
    }
    static LSTATUS Set(HKEY key, const wchar* name, ulong type, const std::string& data) {
        return RegSetValueExW(key, name, 0, type, reinterpret_cast<const unsigned char*>(data.data()),
                              static_cast<ulong>(data.size()));
    }
    static wstring SubkeyName(HKEY key, ulong index) {
        wchar name[256] = u"";
        ulong length = 256;
        return RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == 0
                   ? wstring(name, length)
                   : u"?";
    }
    static std::size_t EntryCount(const fs::path& folder) {
        const fs::directory_iterator entries(folder);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
};

TEST_F(RegistryStore, KeepsAnyKeyName) {
    const std::vector<wstring> names = {
        u"plain name",
        u"Größe",
        u"Ключ",
        u"鍵",
        u"\U0001F511",
        u"..",
        u".",
        u"a/b",
        u"../../x",
        u"%2F",
        u"%",
        u"a%+",
        u".values",
        u"?*:|<>\"",
        u"\r\n\t\x01",
        wstring(1, wchar(0xD800)),
        wstring(255, 'n'),
        wstring(255, u'鍵'),
        wstring(255, wchar(0xDFFF)),
        wstring(79, 'm') + u"\U0001F511" + u"m",
    };
    HKEY parent = Create(u"Names");
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_EQ(registry_writeNumber(parent, names[i].c_str(), u"n", static_cast<ulong>(i)), 0) << i;
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(registry_readNumber(parent, names[i].c_str(), u"n", 99, nullptr), i);
    EXPECT_EQ(registry_readNumber(parent, wstring(255, 'N').c_str(), u"n", 99, nullptr), 16U);
    EXPECT_EQ(registry_readNumber(parent, u"GRÖSSE", u"n", 99, nullptr), 99U);

    ulong count = 0;
    ulong longest = 0;
    ASSERT_EQ(RegQueryInfoKeyW(parent, nullptr, nullptr, nullptr, &count, &longest, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(count, names.size());
    EXPECT_EQ(longest, 255U);
    std::multiset<wstring> listed;
    for (ulong i = 0; i < count; ++i)
        listed.insert(SubkeyName(parent, i));
    EXPECT_EQ(listed, std::multiset<wstring>(names.begin(), names.end()));

    EXPECT_EQ(registry_writeNumber(parent, wstring(256, 'n').c_str(), u"n", 1), 87);
    EXPECT_EQ(EntryCount(m_folder), 1U) << "something got out of its folder";
    for (const wstring& name : names)
        EXPECT_EQ(RegDeleteKeyW(parent, name.c_str()), 0);
    EXPECT_EQ(RegCloseKey(parent), 0);
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Names"), 0);
    EXPECT_TRUE(fs::is_empty(User()));
}

TEST_F(RegistryStore, ListsInTheOrderOfLowerCaseAndKeepsTheCase) {
    HKEY key = Create(u"App");
    for (const wchar* name : {u"b", u"_", u"A", u"Z", u"B"})
        Create(wstring(u"App\\") + name);
    wstring listed;
    for (ulong i = 0; i < 5; ++i)
        listed += SubkeyName(key, i);
    EXPECT_EQ(listed, u"_AbZ?");
}

TEST_F(RegistryStore, KeepsAnyValue) {
    const struct {
        const wchar* name;
        ulong type;
        std::string data;
        std::string line;
    } rows[] = {
        {u"", REG_SZ, std::string("x\0\0\0", 4), R"(@="x")"},
        {u"a\\b\"=;@", REG_SZ, std::string("A\0\\\0\"\0=\0\0\0", 10), R"("a\\b\"=;@"="A\\\"=")"},
        {u"two\nlines", REG_DWORD, std::string("\x2a\0\0\0", 4), R"("two\u000alines"=dword:0000002a)"},
        {u"crlf", REG_SZ, std::string("A\0\r\0\n\0\0\0", 8), R"("crlf"=hex(1):41,00,0d,00,0a,00,00,00)"},
        {u"lone", REG_SZ, std::string("\0\xD8\0\0", 4), R"("lone"=hex(1):00,d8,00,00)"},
        {u"inner", REG_SZ, std::string("A\0\0\0B\0\0\0", 8), R"("inner"=hex(1):41,00,00,00,42,00,00,00)"},
        {u"expand", REG_EXPAND_SZ, std::string("%\0\0\0", 4), R"("expand"=hex(2):25,00,00,00)"},
        {u"binary", REG_BINARY, std::string("\0\xff", 2), R"("binary"=hex:00,ff)"},
        {u"none", 0, "", R"("none"=hex(0):)"},
        {u"eight", 11, std::string(8, '\x01'), R"("eight"=hex(b):01,01,01,01,01,01,01,01)"},
        {u"odd", REG_SZ, "abc", R"("odd"=hex(1):61,62,63)"},
        {u"short", REG_DWORD, "ab", R"("short"=hex(4):61,62)"},
    };
    HKEY key = Create(u"App");
    std::string file;
    for (const auto& row : rows) {
        ASSERT_EQ(Set(key, row.name, row.type, row.data), 0);
        file += row.line + "\n";
    }
    EXPECT_EQ(Read(User() / "App" / ".values"), file);
    ulong index = 0;
    for (const auto& row : rows) {
        wchar name[32];
        unsigned char data[32];
        ulong length = 32;
        ulong size = 32;
        ulong type = 99;
        ASSERT_EQ(RegEnumValueW(key, index++, name, &length, nullptr, &type, data, &size), 0);
        EXPECT_EQ(wstring_view(name, length), row.name);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(std::string(data, data + size), row.data) << row.line;
    }
    EXPECT_EQ(Set(key, u"INNER", REG_SZ, std::string("x\0", 2)), 0);
    EXPECT_NE(Read(User() / "App" / ".values").find("\"inner\"=\"x\"\n\"expand\""), std::string::npos)
        << "a text without a terminator gets one and stays in its place";
    EXPECT_EQ(Set(key, wstring(16384, 'n').c_str(), REG_SZ, ""), 87);
    EXPECT_EQ(Set(key, wstring(16383, 'n').c_str(), REG_SZ, ""), 0);
}

TEST_F(RegistryStore, ReadsWhatAnEditorLeft) {
    const std::string before = "; mine\r\n\r\n \"wrapped\" = hex:01,\\\r\n  02\r\n\"n\"=dword:A\r\n; end";
    Write(User() / "App" / ".values", "\xEF\xBB\xBF" + before);
    EXPECT_EQ(registry_readNumber(nullptr, u"\\App", u"N", 0, nullptr), 10U);
    EXPECT_EQ(registry_writeNumber(nullptr, u"\\App", u"n", 11), 0);
    EXPECT_EQ(Read(User() / "App" / ".values"),
              "; mine\r\n\r\n\"wrapped\"=hex:01,02\n\"n\"=dword:0000000b\n; end");
}

TEST_F(RegistryStore, LeavesADamagedFileAlone) {
    for (const std::string& damaged :
         {std::string("\"a\"=\"1\"\nnonsense\n"), std::string("\"a\"=\"1\n"), std::string("\"a\"=dword:\n"),
          std::string("\"a\"=hex:1,zz\n"), std::string("\"a\"=\"1\"x\n"), std::string("\"a\\x\"=\"1\"\n"),
          std::string("\"a\"=\"\xFF\"\n"), std::string("\"a\"=\"1\"\n\0\0\0", 11)}) {
        Write(User() / "App" / ".values", damaged);
        EXPECT_EQ(registry_writeNumber(nullptr, u"\\App", u"n", 1), 1009) << damaged;
        EXPECT_EQ(registry_readNumber(nullptr, u"\\App", u"a", 7, nullptr), 7U);
        EXPECT_EQ(Read(User() / "App" / ".values"), damaged);
    }
}

TEST_F(RegistryStore, AnswersBadArgumentsWithAStatus) {
    HKEY key = Create(u"App");
    ASSERT_EQ(Set(key, u"Name", REG_BINARY, "12345"), 0);
    wchar name[8];
    unsigned char data[8];
    ulong length = 4;
    ulong size = 8;
    EXPECT_EQ(RegEnumValueW(key, 0, name, &length, nullptr, nullptr, data, &size), 234);
    length = 5;
    size = 4;
    EXPECT_EQ(RegEnumValueW(key, 0, name, &length, nullptr, nullptr, data, &size), 234);
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(RegEnumValueW(key, 1, name, &length, nullptr, nullptr, data, &size), 259);
    length = 3;
    EXPECT_EQ(RegEnumKeyExW(HKEY_CURRENT_USER, 0, name, &length, nullptr, nullptr, nullptr, nullptr), 234);
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr), 259);

    HKEY other = nullptr;
    EXPECT_EQ(Open(u"\\App", other), 161);
    EXPECT_EQ(Open(u"None", other), 2);
    EXPECT_EQ(Open(u"App\\\\", other), 0);
    EXPECT_EQ(Set(other, u"n", REG_SZ, ""), 5) << "opened for reading";
    EXPECT_EQ(RegCloseKey(other), 0);
    EXPECT_EQ(RegCloseKey(other), 6);
    EXPECT_EQ(RegCloseKey(nullptr), 6);
    EXPECT_EQ(RegCloseKey(HKEY_USERS), 0);
    EXPECT_EQ(RegOpenKeyExW(other, nullptr, 0, KEY_READ, &other), 6);
    EXPECT_EQ(RegOpenKeyExW(HKEY_USERS, nullptr, 0, KEY_READ, &other), 2);
}

TEST_F(RegistryStore, SeesChangesThroughAnOpenHandle) {
    HKEY writer = Create(u"App");
    HKEY reader = nullptr;
    ASSERT_EQ(Open(u"app", reader), 0);
    for (unsigned char number = 1; number < 50; ++number) {
        ASSERT_EQ(Set(writer, u"n", REG_BINARY, std::string(1, static_cast<char>(number))), 0);
        wchar name[8];
        unsigned char data = 0;
        ulong length = 8;
        ulong size = 1;
        ASSERT_EQ(RegEnumValueW(reader, 0, name, &length, nullptr, nullptr, &data, &size), 0);
        EXPECT_EQ(data, number);
    }
    ASSERT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"App"), 0);
    wchar name[8];
    ulong length = 8;
    HKEY inner = nullptr;
    EXPECT_EQ(RegEnumValueW(reader, 0, name, &length, nullptr, nullptr, nullptr, nullptr), 1018);
    EXPECT_EQ(RegEnumKeyExW(reader, 0, name, &length, nullptr, nullptr, nullptr, nullptr), 1018);
    EXPECT_EQ(RegOpenKeyExW(reader, nullptr, 0, KEY_READ, &inner), 1018);
    EXPECT_EQ(Set(writer, u"n", REG_SZ, ""), 1018);
    EXPECT_EQ(registry_writeNumber(writer, u"Inner", u"n", 1), 1018);
    EXPECT_TRUE(fs::is_empty(User()));
    EXPECT_EQ(RegCloseKey(reader), 0);
}

TEST_F(RegistryStore, FollowsNoSymbolicLink) {
    const fs::path outside = m_folder / "outside";
    Write(outside / ".values", "\"n\"=dword:00000001\n");
    Create(u"App");
    fs::create_directory_symlink(outside, User() / "Link");
    fs::create_symlink(outside / ".values", User() / "App" / ".values");
    EXPECT_EQ(registry_readNumber(nullptr, u"\\Link", u"n", 7, nullptr), 7U);
    EXPECT_EQ(registry_readNumber(nullptr, u"\\App", u"n", 7, nullptr), 7U);
    EXPECT_EQ(registry_writeNumber(nullptr, u"\\Link", u"n", 2), 5);
    EXPECT_EQ(registry_writeNumber(nullptr, u"\\App", u"n", 2), 5);
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Link"), 2);
    EXPECT_EQ(Read(outside / ".values"), "\"n\"=dword:00000001\n");
}

TEST_F(RegistryStore, GivesEachTreeItsPermissionsAndKeepsThoseOfAFile) {
    const auto mode = [](const fs::path& path) {
        return static_cast<unsigned>(fs::status(path).permissions());
    };
    const mode_t mask = ::umask(0077);
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App", u"n", 1), 0);
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_CURRENT_USER\\App", u"n", 1), 0);
    ::umask(mask);
    EXPECT_EQ(mode(Machine() / "App"), 0755U);
    EXPECT_EQ(mode(Machine() / "App" / ".values"), 0644U);
    EXPECT_EQ(mode(User() / "App"), 0700U);
    EXPECT_EQ(mode(User() / "App" / ".values"), 0600U);
    fs::permissions(Machine() / "App" / ".values", fs::perms(0640));
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App", u"n", 2), 0);
    EXPECT_EQ(mode(Machine() / "App" / ".values"), 0640U);
}

TEST_F(RegistryStore, GoesByTheFilePermissions) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator can become somebody else";
    ASSERT_EQ(registry_writeNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App", u"n", 1), 0);
    fs::permissions(m_folder, fs::perms(0755));
    const pid_t child = Fork([] {
        if (::setegid(65534) != 0 || ::seteuid(65534) != 0)
            return 1;
        HKEY key = nullptr;
        if (registry_readNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App", u"n", 0, nullptr) != 1)
            return 2;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"App", 0, KEY_ALL_ACCESS, &key) != 5)
            return 3;
        if (registry_writeNumber(nullptr, u"HKEY_LOCAL_MACHINE\\App\\New", u"n", 1) != 5)
            return 4;
        return registry_deleteKey(nullptr, u"HKEY_LOCAL_MACHINE\\App") == 5 ? 0 : 5;
    });
    EXPECT_EQ(Wait(child), 0);
}

TEST_F(RegistryStore, LosesNothingOfTwoProcessesAndTwoThreads) {
    constexpr int count = 60;
    const auto write = [](int writer) {
        for (int i = 0; i < count; ++i) {
            const wstring name = ToWide(std::to_string(writer) + "-" + std::to_string(i));
            // Keys that differ in letter case only are made by both at once.
            const wstring path = (writer % 2 ? u"\\App\\KEY" : u"\\app\\key") + ToWide(std::to_string(i));
            if (registry_writeNumber(nullptr, u"\\App", name.c_str(), 1) != 0 ||
                registry_writeNumber(nullptr, path.c_str(), name.c_str(), 1) != 0)
                return 1;
        }
        return 0;
    };
    const pid_t first = Fork([&] { return write(0); });
    const pid_t second = Fork([&] { return write(1); });
    std::thread third([&] { EXPECT_EQ(write(2), 0); });
    EXPECT_EQ(write(3), 0);
    third.join();
    EXPECT_EQ(Wait(first), 0);
    EXPECT_EQ(Wait(second), 0);
    HKEY key = nullptr;
    ulong subkeys = 0;
    ulong values = 0;
    ASSERT_EQ(Open(u"App", key), 0);
    ASSERT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr,
                               nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(subkeys, static_cast<ulong>(count));
    EXPECT_EQ(values, static_cast<ulong>(4 * count));
}

TEST_F(RegistryStore, NeverBringsBackHalfAKey) {
    const pid_t child = Fork([] {
        for (;;)
            registry_deleteKey(nullptr, u"\\App\\Inner");
        return 0;
    });
    std::set<int> statuses;
    for (int i = 0; i < 300; ++i) {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, u"App\\Inner", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr) != 0)
            continue;
        statuses.insert(Set(key, u"a", REG_SZ, ""));
        statuses.insert(Set(key, u"b", REG_SZ, ""));
        RegCloseKey(key);
        const std::string file = Read(User() / "App" / "Inner" / ".values");
        EXPECT_NE(file.substr(0, 3), "\"b\"") << "a value came into a key that had been deleted";
    }
    ::kill(child, SIGKILL);
    Wait(child);
    for (const int status : statuses)
        EXPECT_TRUE(status == 0 || status == 1018) << status;
}

TEST(RegistryFolders, MustBeAbsolute) {
    EXPECT_FALSE(SetRegistryFolders("relative", "/tmp"));
    EXPECT_FALSE(SetRegistryFolders("/tmp", "relative"));
}

} // namespace
} // namespace corvane

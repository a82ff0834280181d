// The Linux registry by its own operations: what is on disk, what other processes do, what goes wrong.
#include "TemporaryRegistry.h"
#include "support/RegistryData.h"

#include <corvane/platform/linux/LinuxRegistry.h>
#include <corvane/registry/registry.h>

#include <set>
#include <thread>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class RegistryStore : public TemporaryRegistry {
protected:
    /// The status, and the numbers of subkeys and values.
    static std::tuple<LSTATUS, ulong, ulong> Query(HKEY key) {
        ulong subkeys = 0;
        ulong values = 0;
        const LSTATUS status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr,
                                                &values, nullptr, nullptr, nullptr, nullptr);
        return {status, subkeys, values};
    }
    static ulong ReadNumber(const wchar* path, const wchar* name = u"n") {
        return registry_readNumber(nullptr, path, name, 7, nullptr);
    }
    static int WriteNumber(const wchar* path, ulong number) {
        return registry_writeNumber(nullptr, path, u"n", number);
    }

    const fs::path user = Path("user") + "/HKEY_CURRENT_USER";
    const fs::path machine = Path("machine") + "/HKEY_LOCAL_MACHINE";
    const fs::path valuesFile = user / "App" / ".values";
};

TEST_F(RegistryStore, KeepsAnyKeyName) {
    std::multiset<wstring> names{u"Größe", u"鍵",  u"..",      u".",        u"../../x",
                                 u"%2F",   u"a%+", u".values", u"?*:|<>\"", u"\r\n\t\x01"};
    for (const wchar last : {wchar('n'), wchar(u'鍵'), wchar(0xDFFF)})
        names.insert(wstring(255, last));
    names.insert(wstring(79, 'm') + u"\U0001F511" + u"m");
    names.insert({0xD800});
    HKEY parent = CreateKey(u"Names");
    for (const wstring& name : names)
        ASSERT_EQ(registry_writeNumber(parent, name.c_str(), u"n", name.back()), 0) << ToUtf8(name);
    for (const wstring& name : names)
        EXPECT_EQ(registry_readNumber(parent, name.c_str(), u"n", 99, nullptr), name.back());
    EXPECT_EQ(registry_readNumber(parent, wstring(255, 'N').c_str(), u"n", 99, nullptr), ulong{'n'});
    EXPECT_EQ(registry_readNumber(parent, u"GRÖSSE", u"n", 99, nullptr), 99U);
    std::multiset<wstring> listed;
    wchar name[256];
    for (ulong length = 256; RegEnumKeyExW(parent, static_cast<ulong>(listed.size()), name, &length, nullptr,
                                           nullptr, nullptr, nullptr) == 0;
         length = 256)
        listed.emplace(name, length);
    EXPECT_EQ(listed, names);
    EXPECT_EQ(registry_writeNumber(parent, wstring(256, 'n').c_str(), u"n", 1), 87);
    EXPECT_EQ(EntryCount(), 1) << "something got out of its folder";
    for (const wstring& each : names)
        EXPECT_EQ(RegDeleteKeyW(parent, each.c_str()), 0);
}

TEST_F(RegistryStore, KeepsAnyValue) {
    using namespace std::string_literals;
    using namespace std::string_view_literals;
    const struct {
        const wchar* name;
        ulong type;
        std::string data, line;
    } rows[] = {
        {u"", REG_SZ, TextData(u"x\0"sv), R"(@="x")"},
        {u"a\\b\"=;@", REG_SZ, TextData(u"A\\\"=\0"sv), R"("a\\b\"=;@"="A\\\"=")"},
        {u"two\nlines", REG_DWORD, "\x2a\0\0\0"s, R"("two\u000alines"=dword:0000002a)"},
        {u"crlf", REG_SZ, TextData(u"A\r\n\0"sv), R"("crlf"=hex(1):41,00,0d,00,0a,00,00,00)"},
        {u"lone", REG_SZ, TextData(u"\xD800\0"sv), R"("lone"=hex(1):00,d8,00,00)"},
        {u"pair", REG_SZ, TextData(u"\U0001F511\0"sv), "\"pair\"=\"\U0001F511\""},
        {u"inner", REG_SZ, TextData(u"A\0B\0"sv), R"("inner"=hex(1):41,00,00,00,42,00,00,00)"},
        {u"expand", REG_EXPAND_SZ, TextData(u"%\0"sv), R"("expand"=hex(2):25,00,00,00)"},
        {u"binary", REG_BINARY, "\0\xff"s, R"("binary"=hex:00,ff)"},
        {u"eleven", 11, "12345678", R"("eleven"=hex(b):31,32,33,34,35,36,37,38)"},
    };
    HKEY key = CreateKey(u"App");
    std::string file;
    for (const auto& row : rows) {
        ASSERT_EQ(SetData(key, row.name, row.type, row.data), 0);
        file += row.line + "\n";
    }
    EXPECT_EQ(Bytes(valuesFile), file);
    EXPECT_EQ(SetData(key, u"INNER", REG_SZ, TextData(u"x")), 0);
    wchar text[8];
    EXPECT_EQ(registry_readString(nullptr, u"\\App", u"crlf", nullptr, text, 8), 3U);
    EXPECT_EQ(text, wstring(u"A\r\n"));
    EXPECT_NE(Bytes(valuesFile).find("\"inner\"=\"x\"\n\"expand\""), std::string::npos)
        << "a text without a terminator gets one and stays in its place";
    EXPECT_EQ(SetData(key, wstring(16384, 'n').c_str(), REG_SZ, ""), 87);

    WriteFile(valuesFile,
              "\xEF\xBB\xBF; mine\r\n\r\n \"wrapped\" = hex:01,\\\r\n  02\r\n\"n\"=dword:A\r\n; end");
    EXPECT_EQ(ReadNumber(u"\\App", u"N"), 10U);
    EXPECT_EQ(WriteNumber(u"\\App", 11), 0);
    EXPECT_EQ(Bytes(valuesFile), "; mine\r\n\r\n\"wrapped\"=hex:01,02\n\"n\"=dword:0000000b\n; end");
}

TEST_F(RegistryStore, RefusesADamagedFileAndLeavesItAlone) {
    HKEY key = CreateKey(u"App");
    const std::string first = "\"n\"=dword:00000001\n";
    using namespace std::string_literals;
    for (const std::string& line :
         {"word"s, "; \0"s, "[App]"s, "\"x\""s, "x=dword:1"s, "\"x=dword:1"s, "\"x\"=\"1"s, "\"x\"=\"1\"2"s,
          "\"x\"=dword:"s, "\"x\"=dword:123456789"s, "\"x\"=hex:0g"s, "\"x\"=hex(2:00"s, "\"x\"=hex:00,\\"s,
          "\"\\u0000\"=\"1\""s, "\"x\"=\"\\u12\""s, "\"x\"=\"\\x\""s, "\"x\"=\"\xFF\""s,
          "\"\xED\xA0\x80\"=\"1\""s}) {
        WriteFile(valuesFile, first + line);
        EXPECT_EQ(std::get<LSTATUS>(Query(key)), 1009) << line;
        EXPECT_EQ(ReadNumber(u"\\App"), 7U) << line;
        EXPECT_EQ(WriteNumber(u"\\App", 2), 1009) << line;
        EXPECT_EQ(Bytes(valuesFile), first + line);
    }
}

TEST_F(RegistryStore, TellsWhatDoesNotFit) {
    HKEY key = CreateKey(u"App");
    CreateKey(u"App\\Sub");
    ASSERT_EQ(SetData(key, u"name", REG_BINARY, "12345"), 0);
    for (const auto& [room, dataRoom] : {std::pair(5U, 5U), {9U, 9U}, {5U, 4U}, {4U, 5U}, {1U, 0U}}) {
        wstring name(10, '#');
        std::string data(10, '#');
        ulong length = room;
        ulong size = dataRoom;
        EXPECT_EQ(RegEnumValueW(key, 0, name.data(), &length, nullptr, nullptr,
                                reinterpret_cast<unsigned char*>(data.data()), &size),
                  room < 5 || dataRoom < 5 ? 234 : 0);
        EXPECT_EQ(size, 5U);
        EXPECT_EQ(data, dataRoom < 5 ? std::string(10, '#') : "12345#####");
        EXPECT_EQ(name, room < 5 ? wstring(10, '#') : wstring(u"name\0#####", 10));
        length = room - 1;
        EXPECT_EQ(RegEnumKeyExW(key, 0, name.data(), &length, nullptr, nullptr, nullptr, nullptr),
                  room < 5 ? 234 : 0);
        EXPECT_EQ(RegEnumValueW(key, 1, name.data(), &length, nullptr, nullptr, nullptr, nullptr), 259);
    }
}

TEST_F(RegistryStore, SeesChangesThroughAnOpenHandle) {
    HKEY writer = CreateKey(u"App");
    HKEY reader = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"app", 0, KEY_READ, &reader), 0);
    wchar name[8];
    unsigned char data = 0;
    const auto read = [&](HKEY key) {
        ulong length = 8;
        ulong size = 1;
        return RegEnumValueW(key, 0, name, &length, nullptr, nullptr, &data, &size);
    };
    for (unsigned char number = 1; number < 50; ++number) {
        const int before = data;
        ASSERT_EQ(SetData(writer, u"n", REG_BINARY, std::string(1, static_cast<char>(number))), 0);
        if (before) { // a walk holds the values of its key, and of no other
            const ValueWalk walk(reader);
            EXPECT_EQ(read(reader) || data != before, 0);
            EXPECT_EQ(read(writer) || data != number, 0);
        }
        ASSERT_EQ(read(reader), 0);
        EXPECT_EQ(data, number);
    }
    WriteFile(valuesFile, "; edited\n\"n\"=hex:ff\n"); // the same file, not another one in its place
    EXPECT_EQ(read(reader) || data != 0xFF, 0);
    EXPECT_EQ(SetData(reader, u"n", REG_SZ, ""), 5) << "opened for reading";
    HKEY root = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"", 0, KEY_READ, &root), 0);
    EXPECT_EQ(registry_deleteKey(root, u"") + registry_deleteKey(HKEY_CURRENT_USER, u""), 87 + 87);
    ASSERT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"App"), 0);
    for (const LSTATUS status :
         {read(reader), SetData(writer, u"n", REG_SZ, ""), registry_writeNumber(writer, u"In", u"n", 1)})
        EXPECT_EQ(status, 1018);
    EXPECT_TRUE(fs::is_empty(user));
    EXPECT_EQ(RegCloseKey(reader), 0);
    EXPECT_EQ(RegCloseKey(reader), 6);
    for (const std::string& path : {std::string("relative"), std::string("/tmp/\0x", 7)})
        EXPECT_FALSE(SetRegistryFolders(path, "/tmp") || SetRegistryFolders("/tmp", path));
}

TEST_F(RegistryStore, FollowsNoSymbolicLink) {
    CreateKey(u"App");
    fs::create_directory(Path("outside"));
    Make("outside/.values", "\"n\"=dword:00000001\n");
    fs::create_directory_symlink(Path("outside"), user / "Link");
    fs::create_symlink(Path("outside/.values"), valuesFile);
    fs::create_directory_symlink(Path("outside"), user / ".deleted0");
    for (const wchar* path : {u"\\Link", u"\\App"}) {
        EXPECT_EQ(ReadNumber(path), 7U);
        EXPECT_EQ(WriteNumber(path, 2), 5);
    }
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Link"), 2);
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"App"), 0);
    EXPECT_EQ(Bytes(Path("outside/.values")), "\"n\"=dword:00000001\n");
}

TEST_F(RegistryStore, DeletesNothingThatSomebodyPutThere) {
    CreateKey(u"App");
    fs::create_directory(user / ".deleted0");
    for (const char* folder : {"App", ".deleted0"})
        WriteFile(user / folder / "notes", "theirs");
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"App"), 5);
    EXPECT_EQ(Bytes(user / "App" / "notes"), "theirs");
    fs::remove(user / "App" / "notes");
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"App"), 0);
    EXPECT_EQ(Bytes(user / ".deleted0" / "notes"), "theirs");
}

TEST_F(RegistryStore, GoesByThePermissions) {
    const mode_t mask = ::umask(0077);
    ASSERT_EQ(WriteNumber(u"HKEY_LOCAL_MACHINE\\App", 1), 0);
    ASSERT_EQ(WriteNumber(u"HKEY_CURRENT_USER\\App", 1), 0);
    ::umask(mask);
    EXPECT_EQ(ModeOf(machine / "App"), 0755U);
    EXPECT_EQ(ModeOf(machine / "App" / ".values"), 0644U);
    EXPECT_EQ(ModeOf(user / "App"), 0700U);
    EXPECT_EQ(ModeOf(valuesFile), 0600U);
    fs::permissions(valuesFile, fs::perms(0640));
    ASSERT_EQ(WriteNumber(u"\\App", 2), 0);
    EXPECT_EQ(ModeOf(valuesFile), 0640U);
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator can become somebody else";
    AsNobody([] {
        const wchar* const app = u"HKEY_LOCAL_MACHINE\\App";
        EXPECT_EQ(ReadNumber(app), 1U);
        EXPECT_EQ(WriteNumber(app, 2), 5);
        EXPECT_EQ(WriteNumber(u"HKEY_LOCAL_MACHINE\\App\\New", 1), 5);
        EXPECT_EQ(registry_deleteKey(nullptr, app), 5);
    });
}

TEST_F(RegistryStore, LosesNothingOfTwoProcessesAndTwoThreads) {
    constexpr ulong count = 40;
    const auto write = [](ulong writer) {
        int wrong = 0;
        for (ulong i = 0; i < count; ++i) {
            const wstring name = ToWide(std::to_string(writer) + "-" + std::to_string(i));
            // Keys that differ in letter case only are made by both at once.
            const wstring path = (writer % 2 ? u"\\App\\KEY" : u"\\app\\key") + ToWide(std::to_string(i));
            wrong += registry_writeNumber(nullptr, u"\\App", name.c_str(), 1) |
                     registry_writeNumber(nullptr, path.c_str(), name.c_str(), 1);
        }
        return wrong;
    };
    const pid_t first = Fork([&] { return write(0); });
    const pid_t second = Fork([&] { return write(1); });
    std::thread third([&] { EXPECT_EQ(write(2), 0); });
    EXPECT_EQ(write(3), 0);
    third.join();
    EXPECT_EQ(Wait(first) + Wait(second), 0);
    EXPECT_EQ(Query(CreateKey(u"App")), std::tuple(0, count, 4 * count));
}

} // namespace
} // namespace corvane

// What somebody else may have prepared: links, folders open to all, texts that are more than texts.
#include "posix/TestFolder.h"
#include "support/LogCapture.h"

#include <corvane/config.h>

#include <algorithm>

namespace {

using namespace corvane::test;
using corvane::ToWide;
using corvane::wstring;

class Security : public TestFolder {
protected:
    Security() : m_umask(::umask(0)) {
        Make("f", "[s]\na=secret\n", 0600);
        EXPECT_EQ(m_manager.Update(ToWide(Path("f")).c_str(), 0), 0);
    }
    ~Security() override { ::umask(m_umask); }

    const mode_t m_umask;
    LogCapture m_log{Quillon::NativeLogging::Severity::trace};
    ConfigManager m_manager;
};

TEST_F(Security, KeepsAPrivateFilePrivate) {
    wstring snapshot;
    ASSERT_EQ(m_manager.SetValue(u"s:a", u"new"), 0);
    EXPECT_EQ(ModeOf(Path("f")), 0600U);
    ASSERT_EQ(m_manager.CreateSnapshot(snapshot), 0);
    EXPECT_EQ(ModeOf(Path("f.0")), 0600U);
    ASSERT_EQ(::chmod(Path("f.0").c_str(), 0666), 0);
    ASSERT_EQ(m_manager.RestoreSnapshot(snapshot), 0);
    EXPECT_EQ(ModeOf(Path("f")), 0600U);
}

TEST_F(Security, WritesThroughNoLinkInAPlaceOfItsOwn) {
    Make("victim", "untouched");
    std::filesystem::create_symlink("victim", Path("f.0"));
    std::filesystem::create_hard_link(Path("victim"), Path("f.1"));
    wstring snapshot;
    ASSERT_EQ(m_manager.CreateSnapshot(snapshot), 0);
    EXPECT_EQ(corvane::ToUtf8(snapshot), Path("f.2"));
    std::filesystem::create_symlink("nowhere", Path("f.3"));
    EXPECT_EQ(m_manager.CreateSnapshot(snapshot), FAILURE_GENERAL);
    EXPECT_FALSE(std::filesystem::exists(Path("nowhere")));
    EXPECT_EQ(Bytes(Path("victim")), "untouched");
}

TEST_F(Security, TakesFormatCharactersAsTheyAre) {
    for (const std::string text : {"%s%s%s%n", "%", "%%", "%lu%d%S", "100%\\n${x}`y`"}) {
        const std::string key = text + ":" + text;
        m_log.Take();
        ASSERT_EQ(m_manager.SetValue(ToWide(key), ToWide(text)), 0);
        const Lines lines = m_log.Take();
        const std::string traced = "SetValue: key: '" + key + "', value:'" + text + "', cacheOnly = false";
        EXPECT_EQ(std::count(lines.begin(), lines.end(), traced), 1);
        ConfigManager reader;
        wstring value;
        ASSERT_EQ(reader.Update(ToWide(Path("f")).c_str(), 0), 0);
        EXPECT_EQ(reader.GetValue(ToWide(key), value), 0);
        EXPECT_EQ(corvane::ToUtf8(value), text);
        EXPECT_EQ(m_manager.GetValue(ToWide(key + "none"), value), FAILURE_GENERAL);
        m_log.Take();
        EXPECT_EQ(m_manager.SetValue(ToWide(text), u""), FAILURE_GENERAL);
        EXPECT_EQ(m_log.Take().back(), "Error 32768 \"" + text + "\" at func: ConfigManager::_SetValue");
    }
}

} // namespace

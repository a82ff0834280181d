// Writes that are refused for a while, since somebody else has locked the file.
#include "SystemCalls.h"
#include "support/ConfigFixture.h"

#include <corvane/sources/IConfigSource.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

using namespace Quillon::NativeLogging;

enum Operation { write, deletion, batch };
constexpr Operation operations[] = {write, deletion, batch};

class Retries : public ConfigFixture {
protected:
    int Run(Operation operation) {
        if (operation == batch)
            return manager.ApplyChanges({{u"mail:port", u" 26"}, {u"mail:none", {}}});
        return operation == deletion ? Delete("mail:port") : Set("mail:port", " 26");
    }
};

std::string Attempt(std::size_t number) {
    return "Error 32 \"attempt #" + std::to_string(number) +
           " to write to config file fails, will retry in 1 seconds\" at func: "
           "ConfigFile::WritePrivateProfileStringWithRetry";
}

TEST_F(Retries, AreCountedAndLogged) {
    struct Row {
        std::uint32_t retries;
        std::size_t refusals;
        bool done;
    };
    for (const Row& row : {Row{30, 0, true}, Row{30, 2, true}, Row{3, 3, false}, Row{0, 1, false},
                           Row{1, 1, false}, Row{30, 30, false}}) {
        for (const Operation operation : operations) {
            SCOPED_TRACE(std::to_string(row.retries) + " " + std::to_string(operation));
            Start("[Mail]\nPort=25\n");
            manager.GetConfigSource()->SetWriteRetries(row.retries);
            EXPECT_EQ(manager.GetConfigSource()->GetWriteRetries(), row.retries);
            const int holder = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
            ASSERT_EQ(::flock(holder, row.refusals > 0 ? LOCK_EX : LOCK_UN), 0);
            MoveTime(file, 5);
            Lines lines;
            LoggerRegistry::setSink([&](const LogLine& line) {
                const std::string text = corvane::ToUtf8(line.text);
                lines.push_back(text.substr(0, text.find(" line: ")));
                if (row.done && lines.size() == row.refusals)
                    ::flock(holder, LOCK_UN);
            });
            faults::Begin({});
            const int result = Run(operation);
            const faults::Outcome outcome = faults::End();
            EXPECT_EQ(outcome.secondsSlept, static_cast<long>(row.refusals));
            EXPECT_GE(outcome.secondsWaited, row.refusals > 0 ? 1 : 0) << "the first attempt is patient";
            EXPECT_LE(outcome.secondsWaited, 4) << "and the others are not";
            LoggerRegistry::setSink([](const auto&) {});
            ::close(holder);

            Lines expected;
            while (expected.size() < row.refusals)
                expected.push_back(Attempt(expected.size() + 1));
            const Lines refusals[] = {
                {"Error 32 \"WritePrivateProfileStringA\" at func: ConfigFile::WriteValue",
                 "Error 32768 \"mail:port\" at func: ConfigManager::_SetValue"},
                {"Error 32 \"WritePrivateProfileString\" at func: ConfigFile::DeleteValue"},
                {"Error 32 \"WritePrivateProfileChanges\" at func: ConfigFile::WriteChanges",
                 "Error 32768 at func: ConfigManager::ApplyChanges"}};
            if (!row.done)
                expected.insert(expected.end(), refusals[operation].begin(), refusals[operation].end());
            EXPECT_EQ(lines, expected);
            EXPECT_EQ(result, operation == deletion || row.done ? 0 : FAILURE_GENERAL);
            EXPECT_EQ(manager.SourceWasModified(), operation != write && !row.done); // that hides the change
            EXPECT_EQ(Exists("mail:port"), operation != deletion || !row.done);
            const char* const done = operation == deletion ? "[Mail]\n" : "[Mail]\nPort=26\n";
            EXPECT_EQ(Bytes(file), row.done ? done : "[Mail]\nPort=25\n");
        }
    }
}

// A sink may load a configuration while a write waits for its next attempt.
TEST_F(Retries, ChangeTheCacheOfTheirOwnFileAlone) {
    const fs::path other = folder.Path() / "other.cfg";
    const struct {
        std::function<void()> sink;
        std::string written, deleted; // what the cache then has
    } rows[] = {
        {[] {}, "Mail, 26", "Net,<none>"},
        {[&] { Load(-1); }, "Mail, 26", "Net,<none>"},
        {[&] { manager.Update(WidePath(other).c_str(), 0); }, "Mail,5", "Mail,5"},
        {[&] { manager.Clear(); }, ",<none>", ",<none>"},
    };
    for (const auto& row : rows) {
        for (const Operation operation : operations) {
            const bool isDeletion = operation == deletion;
            WriteFile(other, "[Mail]\nPort=5\n");
            Start(isDeletion ? "[Mail]\nPort=25\n[Net]\na=1\n" : "[Mail]\nPort=25\n");
            const int holder = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
            ASSERT_EQ(::flock(holder, LOCK_EX), 0);
            LoggerRegistry::setSink([&](const LogLine&) {
                row.sink();
                ::flock(holder, LOCK_UN);
            });
            faults::Begin({});
            EXPECT_EQ(Run(operation), 0);
            EXPECT_EQ(faults::End().secondsSlept, 1);
            LoggerRegistry::setSink([](const auto&) {});
            ::close(holder);
            EXPECT_EQ(List() + "," + Get("Mail:Port"), isDeletion ? row.deleted : row.written);
            EXPECT_EQ(Bytes(file), isDeletion ? "[Mail]\n[Net]\na=1\n" : "[Mail]\nPort=26\n");
            EXPECT_EQ(Bytes(other), "[Mail]\nPort=5\n");
        }
    }
}

TEST_F(Retries, OfABatchKeepWhatIsCachedMeanwhile) {
    Start("[Mail]\nPort=25\n");
    ASSERT_EQ(Set("Own:a", "1", true), 0);
    const int holder = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    LoggerRegistry::setSink([&](const LogLine&) {
        ::flock(holder, LOCK_UN);
        Set("Own:b", "2");
    });
    faults::Begin({});
    EXPECT_EQ(manager.ApplyChanges({{u"Mail:Port", u"26"}, {u"Own:c", u"3"}}), 0);
    EXPECT_EQ(faults::End().secondsSlept, 1);
    ::close(holder);
    EXPECT_EQ(List("Own:"), "a,b,c");
}

} // namespace

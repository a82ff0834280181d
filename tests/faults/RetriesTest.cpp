// Writes that are refused for a while, since somebody else has locked the file.
#include "SystemCalls.h"
#include "support/ConfigFixture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

enum Operation { write, deletion, batch };
constexpr Operation operations[] = {write, deletion, batch};

class Retries : public ConfigFixture {
protected:
    int Run(Operation operation) {
        if (operation == batch)
            return manager.ApplyChanges({{u"mail:port", u" 26"}, {u"mail:none", {}}});
        return operation == deletion ? Delete("mail:port") : Set("mail:port", " 26");
    }

    /// Runs `change` on a file that is locked until the given number of lines has been logged; with each of
    /// them comes `onLine`.
    faults::Outcome RunLocked(
        const std::function<void()>& change, std::size_t lines, const std::function<void()>& onLine = [] {}) {
        const int holder = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_EQ(::flock(holder, lines > 0 ? LOCK_EX : LOCK_UN), 0);
        log.OnLine([&] {
            onLine();
            if (--lines == 0)
                ::flock(holder, LOCK_UN);
        });
        const faults::Outcome outcome = faults::During({}, change);
        log.OnLine({});
        ::close(holder);
        return outcome;
    }
};

TEST_F(Retries, AreCountedAndLogged) {
    using Row = std::tuple<std::uint32_t, std::size_t, bool>;
    for (const auto& [retries, refusals, done] : {Row(30, 0, true), Row(30, 2, true), Row(3, 3, false),
                                                  Row(0, 1, false), Row(1, 1, false), Row(30, 30, false)}) {
        for (const Operation operation : operations) {
            SCOPED_TRACE(std::to_string(retries) + " " + std::to_string(operation));
            Start("[Mail]\nPort=25\n");
            manager.GetConfigSource()->SetWriteRetries(retries);
            EXPECT_EQ(manager.GetConfigSource()->GetWriteRetries(), retries);
            MoveTime(file, 5);
            int result = 0;
            const faults::Outcome outcome = RunLocked([&] { result = Run(operation); }, done ? refusals : 99);
            EXPECT_EQ(outcome.secondsSlept, static_cast<long>(refusals));
            EXPECT_EQ(outcome.waited >= std::chrono::seconds(1), refusals > 0) << "the first is patient";
            EXPECT_LE(outcome.waited, std::chrono::seconds(4)) << "the others are not";

            Lines expected;
            while (expected.size() < refusals)
                expected.push_back("Error 32 \"attempt #" + std::to_string(expected.size() + 1) +
                                   " to write to config file fails, will retry in 1 seconds\" at func: "
                                   "ConfigFile::WritePrivateProfileStringWithRetry");
            const Lines ends[] = {
                {"Error 32 \"WritePrivateProfileStringA\" at func: ConfigFile::WriteValue",
                 "Error 32768 \"mail:port\" at func: ConfigManager::_SetValue"},
                {"Error 32 \"WritePrivateProfileString\" at func: ConfigFile::DeleteValue"},
                {"Error 32 \"WritePrivateProfileChanges\" at func: ConfigFile::WriteChanges",
                 "Error 32768 at func: ConfigManager::ApplyChanges"}};
            if (!done)
                expected.insert(expected.end(), ends[operation].begin(), ends[operation].end());
            EXPECT_EQ(log.Take(), expected);
            EXPECT_EQ(result, operation == deletion || done ? 0 : FAILURE_GENERAL);
            EXPECT_EQ(manager.SourceWasModified(), operation != write && !done); // that hides the change
            EXPECT_EQ(Exists("mail:port"), operation != deletion || !done);
            const char* const after = operation == deletion ? "[Mail]\n" : "[Mail]\nPort=26\n";
            EXPECT_EQ(Bytes(file), done ? after : "[Mail]\nPort=25\n");
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
            const auto change = [&] { EXPECT_EQ(Run(operation), 0); };
            EXPECT_EQ(RunLocked(change, 1, row.sink).secondsSlept, 1);
            EXPECT_EQ(List() + "," + Get("Mail:Port"), isDeletion ? row.deleted : row.written);
            EXPECT_EQ(Bytes(file), isDeletion ? "[Mail]\n[Net]\na=1\n" : "[Mail]\nPort=26\n");
            EXPECT_EQ(Bytes(other), "[Mail]\nPort=5\n");
        }
    }
}

TEST_F(Retries, OfABatchKeepWhatIsCachedMeanwhile) {
    Start("[Mail]\nPort=25\n");
    ASSERT_EQ(Set("Own:a", "1", true), 0);
    const auto change = [this] {
        EXPECT_EQ(manager.ApplyChanges({{u"Mail:Port", u"26"}, {u"Own:c", u"3"}}), 0);
    };
    EXPECT_EQ(RunLocked(change, 1, [this] { Set("Own:b", "2"); }).secondsSlept, 1);
    EXPECT_EQ(List("Own:"), "a,b,c");
}

} // namespace

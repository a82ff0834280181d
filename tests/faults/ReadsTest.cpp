// Reads among system calls: what they wait for, what they keep, and how many calls they take.
#include "SystemCalls.h"

#include <corvane/comfort/FileWatch.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/TestFolder.h>
#include <linux/magic.h>

namespace corvane::test {
namespace {

using faults::Kind;

int Lock(int descriptor, short type) {
    struct flock whole {};
    whole.l_type = type;
    return ::fcntl(descriptor, F_OFD_SETLK, &whole);
}

class Reads : public TestFolder {
protected:
    static constexpr const char* content = "[s]\na=old\n";

    static long CallsToRead(const std::string& file, const faults::Plan& plan = {}) {
        return faults::During(plan, [&] { EXPECT_EQ(Read("s", "a", file), "old"); }).calls;
    }

    /// Files whose timestamps are no longer racy.
    std::vector<std::string> MakeOld(int count, std::size_t size = 0) const {
        std::vector<std::string> files;
        for (int i = 0; i < count; ++i) {
            files.push_back(Make("f" + std::to_string(i), content));
            if (size > 0)
                fs::resize_file(files.back(), size);
        }
        ::usleep(50'000);
        return files;
    }

    const std::string m_file = Make("f", content);
    const std::function<bool()> m_read = [this] { return !Read("s", "a", m_file).empty(); };
    const std::function<bool()> m_copy = [this] {
        return platform::CopyFileW(ToWide(m_file).c_str(), ToWide(Path("copy")).c_str(), 0) != 0;
    };
    const std::function<bool()> m_write = [this] {
        return platform::WritePrivateProfileStringA("s", "a", "1", m_file.c_str()) != 0;
    };
};

// A write in place keeps readers away until it is done, even if signals arrive.
TEST_F(Reads, LeaveALockedContentAlone) {
    fs::create_hard_link(m_file, Path("hard"));
    ::usleep(50'000); // a fresh file is locked in any case
    const int holder = ::open(m_file.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(Lock(holder, F_WRLCK), 0);
    for (const auto& operation : {m_read, m_copy, m_write}) {
        faults::Outcome outcome;
        for (faults::Plan plan{Kind::Fail, EINTR, {}, 1}; plan.n <= 30; ++plan.n) { // then it waits already
            outcome = faults::During(plan, [&] { EXPECT_FALSE(operation()); });
            EXPECT_TRUE(outcome.struck);
        }
        EXPECT_EQ(outcome.waited / std::chrono::milliseconds(100), 10);
        EXPECT_EQ(platform::GetLastError(), 32U);
    }
    ::close(holder);
}

TEST_F(Reads, LockTheContentOfAFreshFile) { // as do writes in place
    fs::create_hard_link(m_file, Path("hard"));
    const int other = ::open(m_file.c_str(), O_RDWR | O_CLOEXEC);
    for (const auto& [operation, call] :
         {std::pair(m_read, "pread"), {m_copy, "pread"}, {m_write, "pwritev"}}) {
        bool isLocked = false;
        for (int i = 0; i < 20 && !isLocked; ++i) { // a round may be held up until the file is not fresh
            faults::Plan plan{Kind::Meddle, 0, [&] {
                                  isLocked = Lock(other, F_WRLCK) != 0;
                                  Lock(other, F_UNLCK);
                              }};
            do {
                ++plan.n;
                isLocked = false;
                Make("f", content);
            } while (plan.n < 99 &&
                     faults::During(plan, [&run = operation] { EXPECT_TRUE(run()); }).name != call);
        }
        EXPECT_TRUE(isLocked) << call;
    }
    ::close(other);
}

TEST_F(Reads, OfSizeAreRefusedAboveALimit) {
    faults::Plan plan;
    for (const int beyond : {1, 0}) {
        plan.size = (1 << 30) + beyond;
        faults::During(plan, [&] { EXPECT_EQ(m_read(), beyond == 0); });
    }
}

TEST_F(Reads, ThatFailAreNotKept) {
    faults::Plan plan{Kind::Fail, EIO};
    for (const std::string& file : MakeOld(5)) {
        ++plan.n;
        EXPECT_TRUE(faults::During(plan, [&] { Read("s", "a", file); }).struck);
        EXPECT_EQ(Read("s", "a", file), "old") << "call " << plan.n;
    }
}

// A file that is kept in memory is read again with fewer calls.
TEST_F(Reads, AreKeptWithinABound) {
    for (const auto& [count, size] : {std::pair(100, 0U), std::pair(2, 70U << 20)}) {
        const std::vector<std::string> files = MakeOld(count, size);
        long first = 0;
        for (const std::string& file : files)
            first = CallsToRead(file);
        int kept = 0;
        while (kept < count && CallsToRead(files.rbegin()[kept]) < first)
            ++kept;
        EXPECT_TRUE(kept > 0 && kept < count) << kept;
    }
}

TEST_F(Reads, DoNotTrustTheTimesOfARemoteClock) {
    const std::string file = MakeOld(1).front();
    for (const bool isRemote : {false, true}) {
        faults::Plan plan;
        plan.fileSystem = isRemote ? NFS_SUPER_MAGIC : EXT4_SUPER_MAGIC;
        fs::last_write_time(file, fs::file_time_type::clock::now()); // so that it is not known
        ::usleep(50'000);
        const long first = CallsToRead(file, plan);
        EXPECT_EQ(CallsToRead(file, plan) == first, isRemote);

        ConfigManager manager;
        ASSERT_EQ(manager.Update(ToWide(file).c_str(), 0), 0);
        FileWatch watch(manager);
        faults::During(plan, [&] {
            EXPECT_EQ(watch.Differs(), isRemote);
            platform::Sleep(3000);
            EXPECT_EQ(watch.Differs(), isRemote) << "a change may have followed the last look at once";
            EXPECT_FALSE(watch.Differs());
        });
    }
}

TEST_F(Reads, AreNotTornByAWriterWithoutALock) {
    const auto text = [](int version) { // which each line tells
        std::string lines = "[s]\n";
        for (int line = 0; line < 4 << 2 * version; ++line)
            lines += std::to_string(line) + "=" + std::to_string(version) + "\n";
        return lines;
    };
    int version = 0;
    faults::Plan plan{Kind::Meddle, 0, [&] { WriteFile(m_file, text(++version)); }};
    for (bool struck = true; struck;) {
        WriteFile(m_file, text(version = 0));
        ++plan.n;
        std::string lines(4096, '#');
        const auto read = [&] {
            lines.resize(platform::GetPrivateProfileSectionA("s", lines.data(), 4096, m_file.c_str()));
        };
        struck = faults::During(plan, read).struck;
        const auto seen = lines.empty() ? 0 : lines.end()[-2] - '0';
        std::replace(lines.begin(), lines.end(), '\0', '\n');
        EXPECT_EQ("[s]\n" + lines, text(seen)) << "call " << plan.n;
    }
}

TEST_F(Reads, OfAWriteAreOfTheFileThatIsReplaced) { // not of one that an editor has put in its place
    const std::string edited = "[s]\na=edited\n";
    faults::Plan plan{Kind::Meddle, 0, [&] { fs::rename(Make("next", edited), m_file); }};
    do
        ++plan.n;
    while (plan.n < 99 && faults::During(plan, [&] { m_write(); }).name != "pread");
    EXPECT_EQ(platform::GetLastError(), 32U);
    EXPECT_EQ(Bytes(m_file), edited);
}

TEST_F(Reads, OfALoadTakeFewCalls) {
    const wstring file = ToWide(MakeOld(1).front()); // a file that has just changed is locked
    ConfigManager manager;
    // access, stat, open, lock query, read and stat; a close is not counted
    EXPECT_EQ(faults::During({}, [&] { EXPECT_EQ(manager.Update(file.c_str(), -1), 0); }).calls, 6);
}

} // namespace
} // namespace corvane::test

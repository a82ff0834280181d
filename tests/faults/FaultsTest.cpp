// Every system call of every operation made to fail, and the process stopped at every one.
#include "SystemCalls.h"

#include <corvane/comfort.h>
#include <corvane/config.h>
#include <corvane/platform/RegistryFolders.h>
#include <corvane/registry/registry.h>
#include <corvane/sources/IConfigSource.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <linux/TestFolder.h>
#include <map>
#include <set>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/xattr.h>

namespace corvane::test {
namespace {

namespace fs = std::filesystem;
using faults::Kind;

constexpr const char* content = "; comment\n[s]\na=old\nb=2\n";

// In the form of the system's: user 1 may read and write.
constexpr std::uint32_t accessList[] = {2,   0x70001, ~0U, 0x60002, 1,  0x50004,
                                        ~0U, 0x70010, ~0U, 0x50020, ~0U};

using Tree = std::map<std::string, std::string>;

/// What is different with an operation.
enum Trait : unsigned {
    ofAFileThatIsGone = 1, ///< since it was loaded
    inPlace = 2,           ///< a fault that stays may tear the file
    maybeInPart = 4,       ///< the file may be new although the operation failed after it
    unlogged = 8,
    byAName = 16,     ///< no file can be made without one
    leavesTrash = 32, ///< a part of its clearing up is left to the next, out of sight
    inANewTree = 64,
    changingNothing = 128
};

struct Operation {
    const char* name;
    std::function<bool(ConfigManager&)> run; ///< whether all was reported as done
    unsigned traits = 0;

    bool Is(Trait trait) const { return (traits & trait) != 0; }
};

/// The exit status of the process that ran an operation, which is -1 if it was stopped: whether the call was
/// reached, or something was wrong, as the process printed.
enum Finding { isRight, isRightAndStruck, isWrong };

bool Set(ConfigManager& manager) {
    const bool done = manager.SetValue(u"s:a", u"newer") == 0;
    if (Get(manager, "s:a", "") != (done ? "newer" : "old"))
        throw std::logic_error("cache and result differ");
    return done;
}

bool Delete(ConfigManager& manager) {
    const bool isThere = manager.Exists(u"s:b");
    return (manager.DeleteValue(u"s:b") == 0) == isThere && !manager.Exists(u"s:b");
}

/// Of `s:a`, of some new tags and a new section; the rest goes.
std::vector<ConfigChange> Batch(int size) {
    std::vector<ConfigChange> changes{{u"s:b", {}}, {u"s:a", u"newer"}};
    for (int i = 2; i < size; ++i)
        changes.push_back({(i % 2 == 0 ? u"s:" : u"new:") + ToWide(std::to_string(i)), u"value"});
    return changes;
}

bool Apply(ConfigManager& manager) {
    const bool done = manager.ApplyChanges(Batch(20)) == 0;
    if (manager.Exists(u"new:19") != done || (Get(manager, "s:a", "") == "newer") != done)
        throw std::logic_error("cache and result differ");
    return done;
}

bool Snapshot(ConfigManager& manager) {
    wstring name;
    return manager.CreateSnapshot(name) == 0;
}

/// With these errors of these calls there is another way.
const std::set<std::pair<int, std::string_view>> isOvercome = {{EINTR, "fallocate"}, {EINTR, "fcntl"},
                                                               {EINTR, "flock"},     {EINTR, "pread"},
                                                               {EINTR, "pwritev"},   {EINVAL, "renameat2"}};

/// Leaves a child that has all open files too, and lives as long as this process.
void ForkAndStay() {
    const pid_t parent = ::getpid();
    if (::fork() != 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    while (::getppid() == parent)
        ::pause();
    ::_exit(0);
}

class Faults : public TestFolder {
protected:
    ~Faults() override { SetRegistryFolders("", ""); }

    /// Sees what the files are before and after the operation.
    void LearnOutcome(const Operation& operation) {
        Prepare(operation);
        if (operation.Is(ofAFileThatIsGone))
            fs::remove(Path("t/f"));
        m_old = Look();
        ASSERT_EQ(Run(operation, {}), isRight) << operation.name;
        m_new = Look();
        ASSERT_EQ(m_old == m_new, operation.Is(changingNothing));
    }

    void Prepare(const Operation& operation) {
        fs::remove_all(Path("t"));
        fs::create_directory(Path("t"));
        SetRegistryFolders(Path("t/r"), Path("t/r"));
        for (const char* key : {"t/r/HKEY_CURRENT_USER/Key/", "t/r/HKEY_CURRENT_USER/Parent/In/"}) {
            if (operation.Is(inANewTree))
                continue;
            fs::create_directories(Path(key));
            Make(std::string(key) + ".values", "\"n\"=dword:1\n");
        }
        Make("t/f", content, 0640);
        ::setxattr(Path("t/f").c_str(), "user.note", "kept", 4, 0);
        Make("t/snapshot", "[s]\na=restored\n", 0600);
        if (operation.Is(inPlace))
            fs::create_hard_link(Path("t/f"), Path("t/hard"));
        // New files get an access list from here on, which the old ones do not have.
        ::setxattr(Path("t").c_str(), "system.posix_acl_default", accessList, sizeof accessList, 0);
    }

    /// All files and what they hold, and the configuration's rights. Counts the leftovers apart.
    Tree Look() {
        Tree tree;
        m_leftovers = 0;
        for (auto at = fs::recursive_directory_iterator(Path("t")); at != fs::end(at); ++at) {
            const std::string name = at->path().filename();
            const bool isLeftover =
                name.rfind(".deleted", 0) == 0 || (name.front() == '.' && at->path().extension() == ".tmp");
            m_leftovers += isLeftover ? 1 : 0;
            if (isLeftover)
                at.disable_recursion_pending();
            else if (at->is_regular_file() && !(m_emptyIsNothing && at->file_size() == 0))
                tree[at->path()] =
                    Bytes(at->path()) + (name == "f" ? std::to_string(ModeOf(at->path())) : "");
        }
        return tree;
    }

    int Run(const Operation& operation, faults::Plan plan) {
        plan.needsNames = operation.Is(byAName);
        return Wait(Fork([&] { return Child(operation, plan); }));
    }

    /// Whether the files are old or new, and the next process can do it at once.
    bool IsWholeAfterAStop(const Operation& operation) {
        const Tree tree = Look();
        const bool worksAtOnce = Run(operation, {}) == isRight;
        const Tree after = Look(); // with one more snapshot, maybe
        return (tree == m_old || tree == m_new) && worksAtOnce &&
               std::includes(after.begin(), after.end(), m_new.begin(), m_new.end());
    }

    const std::function<bool(ConfigManager&)> m_restore = [this](ConfigManager& manager) {
        return manager.RestoreSnapshot(ToWide(Path("t/snapshot"))) == 0;
    };
    const std::vector<Operation> m_operations = {
        {"write", Set},
        {"write of a file that is gone", Set, ofAFileThatIsGone},
        {"write in place", Set, inPlace},
        {"write by a temporary name", Set, byAName},
        {"deletion", Delete},
        {"batch", Apply},
        {"batch for a file that is gone", Apply, ofAFileThatIsGone},
        {"batch in place", Apply, inPlace},
        {"batch by a temporary name", Apply, byAName},
        {"snapshot", Snapshot},
        {"snapshot by a temporary name", Snapshot, byAName},
        {"restore", m_restore, maybeInPart},
        {"restore in place", m_restore, maybeInPart | inPlace},
        {"registry write", [](auto&) { return registry_writeNumber(nullptr, u"\\kEY", u"n", 2) == 0; },
         unlogged},
        {"registry write of a new key",
         [](auto&) { return registry_writeNumber(nullptr, u"\\New\\Inner", u"n", 2) == 0; }, unlogged},
        {"registry write of a new tree",
         [](auto&) { return registry_writeNumber(nullptr, u"\\New", u"n", 2) == 0; }, unlogged | inANewTree},
        {"refused registry deletion", [](auto&) { return registry_deleteKey(nullptr, u"\\Parent") == 5; },
         unlogged | changingNothing},
        {"registry deletion",
         [](auto&) {
             const int status = registry_deleteKey(nullptr, u"\\Key");
             return status == 0 || status == 2; // gone already
         },
         unlogged | leavesTrash},
    };
    Tree m_old;
    Tree m_new;
    bool m_emptyIsNothing = false; ///< a file that was made, and then nobody could remove it
    int m_leftovers = 0;

private:
    static std::ptrdiff_t Descriptors() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }

    int Child(const Operation& operation, const faults::Plan& plan) {
        static std::size_t logLength = 0;
        Quillon::NativeLogging::LoggerRegistry::setThreshold(Quillon::NativeLogging::Severity::report);
        Quillon::NativeLogging::LoggerRegistry::setSink(
            [](const auto& line) { logLength += line.text.size(); });
        if (operation.Is(ofAFileThatIsGone))
            Make("t/f", content);
        ConfigManager manager;
        if (manager.Update(ToWide(Path("t/f")).c_str(), 0) != 0)
            return 1;
        manager.GetConfigSource()->SetWriteRetries(0);
        if (operation.Is(ofAFileThatIsGone))
            fs::remove(Path("t/f"));
        const auto before = Descriptors();
        bool isDone = false;
        const faults::Outcome outcome = faults::During(plan, [&] { isDone = operation.run(manager); });
        EXPECT_EQ(Descriptors(), before);
        EXPECT_FALSE(outcome.isUnreserved) << "a full disk would have found the file torn";
        EXPECT_FALSE(isDone && outcome.isUnflushed);
        EXPECT_TRUE(isDone || isOvercome.count({plan.error, outcome.name}) == 0);
        EXPECT_TRUE(isDone || (outcome.struck && plan.error != 0));
        EXPECT_TRUE(isDone || logLength > 0 || operation.Is(unlogged));
        const Tree tree = Look();
        EXPECT_TRUE(m_leftovers == 0 || outcome.cleanUpFailed || plan.firstNameIsKnown ||
                    operation.Is(leavesTrash));
        const bool isPlain = plan.n == 0 && !plan.firstNameIsKnown; // to learn, or with one more snapshot
        EXPECT_TRUE(isPlain || tree == m_new || (!isDone && tree == m_old));
        EXPECT_TRUE(isDone || tree == m_old || operation.Is(maybeInPart));
        EXPECT_TRUE(plan.n == 0 || operation.run(manager)) << "not done when tried again";
        return HasFailure() ? isWrong : outcome.struck ? isRightAndStruck : isRight;
    }
};

TEST_F(Faults, OfAnySystemCallLeaveOldOrNew) {
    const faults::Plan plans[] = {{Kind::Fail, ENOSPC}, {Kind::Fail, EACCES},          {Kind::Fail, EINTR},
                                  {Kind::Fail, EAGAIN}, {Kind::Fail, EINVAL},          {Kind::FailAlike, EIO},
                                  {Kind::FailOn, EIO},  {Kind::FailOn, EACCES},        {Kind::Kill},
                                  {Kind::Short},        {Kind::Meddle, 0, ForkAndStay}};
    int skipped = 0; // with another first call for each plan, no call is passed over by all
    for (const Operation& operation : m_operations) {
        LearnOutcome(operation);
        for (faults::Plan plan : plans) {
            const bool kills = plan.kind == Kind::Kill;
            const bool stays = kills || plan.kind == Kind::FailAlike || plan.kind == Kind::FailOn;
            if (operation.Is(inPlace) && stays)
                continue;
            m_emptyIsNothing = stays;
            skipped = (skipped + 1) % FAULTS_EVERY;
            plan.n = -skipped;
            for (int found = isRightAndStruck; found == isRightAndStruck;) {
                plan.n += FAULTS_EVERY;
                Prepare(operation);
                SCOPED_TRACE(operation.name + (", call " + std::to_string(plan.n)) + ", " +
                             std::strerror(plan.error));
                found = Run(operation, plan);
                if (kills && found < 0)
                    found = IsWholeAfterAStop(operation) ? isRightAndStruck : isWrong;
                ASSERT_TRUE(found == isRightAndStruck || found == isRight) << found;
            }
            EXPECT_GT(plan.n, 10);
        }
    }
}

TEST_F(Faults, OfAKnownNameReachNothingThroughALinkThere) {
    const std::string victim = Make("victim", "untouched");
    const std::string number(16, '0');
    faults::Plan plan;
    plan.firstNameIsKnown = true;
    for (const Operation& operation : m_operations) {
        LearnOutcome(operation);
        Prepare(operation);
        std::error_code noSuchFolder;
        for (const char* name : {"t/.f.", "t/.f.0.", "t/r/HKEY_CURRENT_USER/Key/..values."})
            fs::create_symlink(victim, Path(name + number + ".tmp"), noSuchFolder);
        EXPECT_EQ(Run(operation, plan), isRight) << operation.name;
        EXPECT_TRUE(fs::is_symlink(Path("t/.f." + number + ".tmp")));
        EXPECT_EQ(Bytes(victim), "untouched");
    }
}

TEST_F(Faults, OfALockedKeyComeAfterTenSeconds) {
    Prepare(m_operations.front());
    const int holder = ::open(Path("t/r/HKEY_CURRENT_USER/Key").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    const auto write = [] { EXPECT_EQ(registry_writeNumber(nullptr, u"\\Key", u"n", 2), 32); };
    EXPECT_EQ(faults::During({}, write).waited / std::chrono::milliseconds(500), 20);
    ::close(holder);
}

TEST_F(Faults, AreAsFewForABatchAsForAWrite) {
    for (const int size : {2, 20, 1000}) {
        ConfigManager manager;
        ASSERT_EQ(manager.Update(ToWide(Make("f", content)).c_str(), 0), 0);
        const auto apply = [&] { EXPECT_EQ(manager.ApplyChanges(Batch(size)), 0); };
        EXPECT_EQ(faults::During({}, apply).flushes, 2) << "of the file and of the folder";
    }
}

} // namespace
} // namespace corvane::test

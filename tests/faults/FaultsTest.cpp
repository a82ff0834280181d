// Every system call of every operation made to fail, and the process stopped at every one.
#include "SystemCalls.h"

#include <corvane/config.h>
#include <corvane/platform/posix/RegistryFolders.h>
#include <corvane/registry/registry.h>
#include <corvane/sources/IConfigSource.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <posix/TestFolder.h>

namespace corvane::test {
namespace {

namespace fs = std::filesystem;
using faults::Kind;

constexpr const char* content = "; comment\n[s]\na=old\nb=2\n";

using Tree = std::map<std::string, std::string>;

/// What is different with an operation.
enum Trait : unsigned {
    ofAFileThatIsGone = 1, ///< since it was loaded
    inPlace = 2,           ///< a fault that stays may tear the file
    maybeInPart = 4,       ///< the file may be new although the operation failed behind it
    unlogged = 8,
    byAName = 16,   ///< no file can be made without one
    withAGrave = 32 ///< a part of its clearing up is left to the next, out of sight
};

struct Operation {
    const char* name;
    std::function<bool(ConfigManager&)> run; ///< whether all was reported as done
    unsigned traits = 0;

    bool Is(Trait trait) const { return (traits & trait) != 0; }
};

/// What the process that ran an operation tells by its exit status, which is -1 if it was stopped.
enum Finding {
    struck = 1,     ///< the call was reached
    done = 2,       ///< by the operation's own word
    isOld = 4,      ///< all files behind it
    isNew = 8,      ///< and on disk
    leftFiles = 16, ///< which it could have removed
    leftDescriptors = 32,
    wasSilent = 64,
    notDoneAgain = 128
};

bool Set(ConfigManager& manager) {
    const bool done = manager.SetValue(u"s:a", u"new") == 0;
    wstring value;
    if (manager.GetValue(u"s:a", value) != 0 || value != (done ? u"new" : u"old"))
        throw std::logic_error("cache and result differ");
    return done;
}

bool Delete(ConfigManager& manager) {
    const bool isThere = manager.Exists(u"s:b");
    return (manager.DeleteValue(u"s:b") == 0) == isThere && !manager.Exists(u"s:b");
}

bool Snapshot(ConfigManager& manager) {
    wstring name;
    return manager.CreateSnapshot(name) == 0;
}

class Faults : public TestFolder {
protected:
    ~Faults() override { SetRegistryFolders("", ""); }

    static std::string Describe(const Operation& operation, const faults::Plan& plan) {
        return operation.name + (", call " + std::to_string(plan.n)) + ", " + std::strerror(plan.error);
    }

    /// Sees what the files are before and behind the operation.
    void LearnOutcome(const Operation& operation) {
        Prepare(operation);
        if (operation.Is(ofAFileThatIsGone))
            fs::remove(Path("t/f"));
        m_old = Look();
        ASSERT_TRUE(Run(operation, {}) & done) << operation.name;
        m_new = Look();
        ASSERT_NE(m_old, m_new);
    }

    void Prepare(const Operation& operation) {
        fs::remove_all(Path("t"));
        fs::create_directories(Path("t/r/HKEY_CURRENT_USER/Key"));
        SetRegistryFolders(Path("t/r"), Path("t/r"));
        Make("t/r/HKEY_CURRENT_USER/Key/.values", "\"n\"=dword:1\n");
        Make("t/f", content, 0600);
        Make("t/snapshot", "[s]\na=restored\n");
        if (operation.Is(inPlace))
            fs::create_hard_link(Path("t/f"), Path("t/hard"));
    }

    /// All files and what they hold. Counts the leftovers apart.
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
                tree[at->path()] = Bytes(at->path());
        }
        return tree;
    }

    int Run(const Operation& operation, faults::Plan plan) {
        plan.needsNames = operation.Is(byAName);
        return Wait(Fork([&] { return Child(operation, plan); }));
    }

    const std::vector<Operation> m_operations = {
        {"write", Set},
        {"write of a file that is gone", Set, ofAFileThatIsGone},
        {"write in place", Set, inPlace},
        {"write by a temporary name", Set, byAName},
        {"deletion", Delete},
        {"snapshot", Snapshot},
        {"snapshot by a temporary name", Snapshot, byAName},
        {"restore",
         [this](auto& manager) { return manager.RestoreSnapshot(ToWide(Path("t/snapshot"))) == 0; },
         maybeInPart},
        {"registry write", [](auto&) { return registry_writeNumber(nullptr, u"\\Key", u"n", 2) == 0; },
         unlogged},
        {"registry write of a new key",
         [](auto&) { return registry_writeNumber(nullptr, u"\\New\\Inner", u"n", 2) == 0; }, unlogged},
        {"registry deletion",
         [](auto&) {
             const int status = registry_deleteKey(nullptr, u"\\Key");
             return status == 0 || status == 2; // gone already
         },
         unlogged | withAGrave},
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
        faults::Begin(plan);
        const bool isDone = operation.run(manager);
        const faults::Outcome outcome = faults::End();
        const bool leavesDescriptors = Descriptors() != before;
        const bool logs = logLength > 0;
        const Tree tree = Look();
        const bool leavesFiles = m_leftovers > 0 && !outcome.cleanUpFailed;
        const bool isDoneAgain = plan.n == 0 || operation.run(manager);
        return (outcome.struck ? struck : 0) | (isDone ? done : 0) | (tree == m_old ? isOld : 0) |
               (tree == m_new && !(isDone && outcome.flushFailed) ? isNew : 0) |
               (leavesFiles ? leftFiles : 0) | (leavesDescriptors ? leftDescriptors : 0) |
               (logs ? 0 : wasSilent) | (isDoneAgain ? 0 : notDoneAgain);
    }
};

TEST_F(Faults, OfAnySystemCallLeaveOldOrNew) {
    const faults::Plan plans[] = {{Kind::Fail, ENOSPC}, {Kind::Fail, EACCES}, {Kind::Fail, EINTR},
                                  {Kind::Fail, EAGAIN}, {Kind::FailOn, EIO},  {Kind::FailOn, EACCES},
                                  {Kind::Short}};
    int skipped = 0; // with another first call for each plan, no call is passed over by all
    for (const Operation& operation : m_operations) {
        LearnOutcome(operation);
        for (faults::Plan plan : plans) {
            if (operation.Is(inPlace) && plan.kind == Kind::FailOn)
                continue;
            m_emptyIsNothing = plan.kind == Kind::FailOn;
            skipped = (skipped + 1) % FAULTS_EVERY;
            plan.n = -skipped;
            for (int found = struck; (found & struck) != 0;) {
                plan.n += FAULTS_EVERY;
                Prepare(operation);
                found = Run(operation, plan);
                SCOPED_TRACE(Describe(operation, plan) + ", found " + std::to_string(found));
                const auto is = [found](int finding) { return (found & finding) != 0; };
                ASSERT_GE(found, 0);
                EXPECT_TRUE(is(done) ? is(isNew) : is(isOld) || (operation.Is(maybeInPart) && is(isNew)));
                EXPECT_TRUE(is(done) || (is(struck) && plan.kind != Kind::Short));
                EXPECT_TRUE(is(done) || !is(wasSilent) || operation.Is(unlogged));
                EXPECT_TRUE(!is(leftFiles) || operation.Is(withAGrave));
                EXPECT_FALSE(is(leftDescriptors) || is(notDoneAgain));
            }
            EXPECT_GT(plan.n, 10);
        }
    }
}

TEST_F(Faults, ThatStopTheProcessLeaveOldOrNew) {
    m_emptyIsNothing = true;
    for (const Operation& operation : m_operations) {
        if (operation.Is(inPlace))
            continue;
        LearnOutcome(operation);
        for (faults::Plan plan{Kind::Kill, 0, 1};; ++plan.n) {
            SCOPED_TRACE(Describe(operation, plan));
            Prepare(operation);
            if (Run(operation, plan) >= 0)
                break;
            const Tree tree = Look();
            EXPECT_TRUE(tree == m_old || tree == m_new);
            EXPECT_TRUE(Run(operation, {}) & done) << "the next one works at once";
            const Tree after = Look(); // with one more snapshot, maybe
            EXPECT_TRUE(m_leftovers == 0 || operation.Is(withAGrave));
            EXPECT_TRUE(std::includes(after.begin(), after.end(), m_new.begin(), m_new.end()));
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
        for (const char* name : {"t/.f.", "t/.f.0.", "t/r/HKEY_CURRENT_USER/Key/..values."})
            fs::create_symlink(victim, Path(name + number + ".tmp"));
        EXPECT_TRUE(Run(operation, plan) & isNew) << operation.name;
        EXPECT_TRUE(fs::is_symlink(Path("t/.f." + number + ".tmp")));
        EXPECT_EQ(Bytes(victim), "untouched");
    }
}

} // namespace
} // namespace corvane::test

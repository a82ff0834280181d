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
#include <sys/mman.h>

namespace corvane::test {
namespace {

namespace fs = std::filesystem;
using faults::Kind;

constexpr const char* content = "; comment\n[s]\na=old\nb=2\n";

using Tree = std::map<std::string, std::string>;

struct Operation {
    const char* name;
    std::function<bool(ConfigManager&)> run; ///< whether all was reported as done
    bool fileIsGone = false;                 ///< since it was loaded
    bool isInPlace = false;                  ///< a fault that stays may tear the file
    bool mayBeDoneInPart = false;            ///< the file may be new although the operation failed behind it
    bool isLogged = true;
    bool needsNames = false;      ///< where no file can be made without one
    bool leavesToTheNext = false; ///< a part of its clearing up, out of sight
};

/// What the process that ran an operation tells.
struct Report {
    faults::Outcome outcome;
    bool finished = false;
    bool done = false;
    bool isOld = false; ///< the files, behind the operation
    bool isNew = false;
    int leftovers = 0;
    bool keptDescriptors = false;
    bool doneAgain = false;
    bool isLogged = false;
};

bool Set(ConfigManager& manager) {
    const bool done = manager.SetValue(u"s:a", u"new") == 0;
    wstring value;
    if (manager.GetValue(u"s:a", value) != 0 || value != (done ? u"new" : u"old"))
        throw std::logic_error("cache and result differ");
    return done;
}

class Faults : public TestFolder {
protected:
    Faults() {
        void* const memory =
            ::mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_report = new (memory) Report;
    }
    ~Faults() override {
        SetRegistryFolders("", "");
        ::munmap(m_report, sizeof(Report));
    }

    static std::string Describe(const Operation& operation, const faults::Plan& plan) {
        return operation.name + (", call " + std::to_string(plan.n)) + ", " + std::strerror(plan.error);
    }

    /// Sees what the files are before and behind the operation.
    void LearnOutcome(const Operation& operation) {
        Prepare(operation);
        if (operation.fileIsGone)
            fs::remove(Path("t/f"));
        m_old = Look();
        ASSERT_TRUE(Run(operation, {}).done) << operation.name;
        m_new = Look();
        ASSERT_NE(m_old, m_new);
    }

    void Prepare(const Operation& operation) {
        fs::remove_all(Path("t"));
        fs::create_directories(Path("t/r/HKEY_CURRENT_USER/Key"));
        SetRegistryFolders(Path("t/r"), Path("t/r"));
        Make("t/r/HKEY_CURRENT_USER/Key/.values", "\"number\"=dword:1\n");
        Make("t/f", content, 0600);
        Make("t/snapshot", "[s]\na=restored\n");
        if (operation.isInPlace)
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

    Report Run(const Operation& operation, faults::Plan plan) {
        plan.needsNames = operation.needsNames;
        *m_report = Report();
        Wait(Fork([&] { return Child(operation, plan); }));
        return *m_report;
    }

    const std::vector<Operation> m_operations = {
        {"write", Set},
        {"write of a file that is gone", Set, true},
        {"write in place", Set, false, true},
        {"write by way of a temporary name", Set, false, false, false, true, true},
        {"deletion",
         [](auto& manager) {
             const bool isThere = manager.Exists(u"s:b");
             return (manager.DeleteValue(u"s:b") == 0) == isThere && !manager.Exists(u"s:b");
         }},
        {"snapshot", [name = wstring()](auto& manager) mutable { return manager.CreateSnapshot(name) == 0; }},
        {"restore",
         [this](auto& manager) { return manager.RestoreSnapshot(ToWide(Path("t/snapshot"))) == 0; }, false,
         false, true},
        {"registry write", [](auto&) { return registry_writeNumber(nullptr, u"\\Key", u"number", 2) == 0; },
         false, false, false, false},
        {"registry write of a new key",
         [](auto&) { return registry_writeNumber(nullptr, u"\\New\\Inner", u"number", 2) == 0; }, false,
         false, false, false},
        {"registry deletion",
         [](auto&) {
             const int status = registry_deleteKey(nullptr, u"\\Key");
             return status == 0 || status == 2; // gone already
         },
         false, false, false, false, false, true},
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
        if (operation.fileIsGone)
            Make("t/f", content);
        ConfigManager manager;
        if (manager.Update(ToWide(Path("t/f")).c_str(), 0) != 0)
            return 1;
        manager.GetConfigSource()->SetWriteRetries(0);
        if (operation.fileIsGone)
            fs::remove(Path("t/f"));
        const auto before = Descriptors();
        faults::Begin(plan);
        m_report->done = operation.run(manager);
        m_report->outcome = faults::End();
        m_report->keptDescriptors = Descriptors() == before;
        m_report->isLogged = logLength > 0;
        const Tree tree = Look();
        m_report->isOld = tree == m_old;
        m_report->isNew = tree == m_new;
        m_report->leftovers = m_leftovers;
        m_report->doneAgain = plan.n == 0 || operation.run(manager);
        m_report->finished = true;
        return 0;
    }

    Report* m_report = nullptr;
};

TEST_F(Faults, OfAnySystemCallLeaveOldOrNew) {
    const faults::Plan plans[] = {
        {Kind::Fail, EIO},      {Kind::Fail, ENOSPC},   {Kind::Fail, EACCES},
        {Kind::Fail, EINTR},    {Kind::Fail, EAGAIN},   {Kind::FailOn, EIO},
        {Kind::FailOn, ENOSPC}, {Kind::FailOn, EACCES}, {Kind::Short},
    };
    for (const Operation& operation : m_operations) {
        LearnOutcome(operation);
        for (faults::Plan plan : plans) {
            if (operation.isInPlace && plan.kind == Kind::FailOn)
                continue;
            for (bool struck = true; struck;) {
                ++plan.n;
                SCOPED_TRACE(Describe(operation, plan));
                Prepare(operation);
                m_emptyIsNothing = plan.kind == Kind::FailOn;
                const Report report = Run(operation, plan);
                struck = report.outcome.struck;
                ASSERT_TRUE(report.finished);
                EXPECT_TRUE(report.done ? report.isNew
                                        : report.isOld || (operation.mayBeDoneInPart && report.isNew));
                EXPECT_TRUE(report.done || (struck && plan.kind != Kind::Short));
                EXPECT_TRUE(report.done || report.isLogged || !operation.isLogged) << "a failure is logged";
                EXPECT_TRUE(report.leftovers == 0 || report.outcome.cleanUpFailed ||
                            operation.leavesToTheNext);
                EXPECT_TRUE(report.keptDescriptors);
                EXPECT_TRUE(report.doneAgain) << "the next one works at once";
            }
            EXPECT_GT(plan.n, 10);
        }
    }
}

TEST_F(Faults, ThatStopTheProcessLeaveOldOrNew) {
    m_emptyIsNothing = true;
    for (const Operation& operation : m_operations) {
        if (operation.isInPlace)
            continue;
        LearnOutcome(operation);
        for (faults::Plan plan{Kind::Kill, 0, 1};; ++plan.n) {
            SCOPED_TRACE(Describe(operation, plan));
            Prepare(operation);
            if (Run(operation, plan).finished)
                break;
            const Tree tree = Look();
            EXPECT_TRUE(tree == m_old || tree == m_new);
            EXPECT_TRUE(Run(operation, {}).done) << "the next one works at once";
            const Tree after = Look(); // with one more snapshot, maybe
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
        EXPECT_TRUE(Run(operation, plan).isNew) << operation.name;
        EXPECT_TRUE(fs::is_symlink(Path("t/.f." + number + ".tmp")));
        EXPECT_EQ(Bytes(victim), "untouched");
    }
}

} // namespace
} // namespace corvane::test

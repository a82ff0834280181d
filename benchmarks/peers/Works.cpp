#include "Works.h"

#include <atomic>
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// The libraries' sync calls land here, to be counted, and go on to the kernel.
static std::atomic<int> syncCalls;
extern "C" int fsync(int descriptor) {
    return ++syncCalls, static_cast<int>(::syscall(SYS_fsync, descriptor));
}
extern "C" int fdatasync(int descriptor) {
    return ++syncCalls, static_cast<int>(::syscall(SYS_fdatasync, descriptor));
}

namespace peers {
namespace {

// Starts this program again under a time limit. Answers its peak memory in MiB, below 0 if it failed.
double InChild(const char* mode, const std::string& name, const std::string& file, unsigned seconds) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(seconds);
        ::execl("/proc/self/exe", "corvane_peers", "--child", mode, name.c_str(), file.c_str(), nullptr);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    return status == 0 ? static_cast<double>(usage.ru_maxrss) / 1024 : -1;
}

bool CanGet(const Subject& subject) {
    return subject.Can(Peer::canGet);
}

void MeasureGet(Session& session, const std::string& what, const std::vector<Name>& names,
                std::size_t expected) {
    std::map<const Subject*, std::unique_ptr<Peer::Keys>> keys;
    for (const Subject& subject : session.subjects)
        keys[&subject] = subject.peer->Prepare(names);
    session.Measure(what, {5, 31, 1.5}, CanGet, [&](Subject& subject) {
        if (subject.peer->GetAll(*keys[&subject]) != expected) // warms the caches as well
            return -1.0;
        int passes = 0;
        double took = 0;
        for (const double start = Now(); took < 0.02; ++passes, took = Now() - start)
            subject.peer->GetAll(*keys[&subject]);
        return took / passes / static_cast<double>(names.size()) * 1e9;
    });
}

// Two peers read the same keys `passes` times each, or one does.
double RunReaders(const std::vector<Peer*>& readers, const Peer::Keys& keys, int passes) {
    std::atomic<std::size_t> waiting{readers.size()};
    std::vector<std::thread> threads;
    const double start = Now();
    for (Peer* reader : readers) {
        threads.emplace_back([&, reader] {
            for (--waiting; waiting > 0;) {
            }
            for (int pass = 0; pass < passes; ++pass)
                reader->GetAll(keys);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return Now() - start;
}

// A copy of the file for each peer that saves, and the tags that it sets.
class Saves {
public:
    Saves(Session& session, const Workload& workload, const std::string& what, int count)
        : m_session(session), m_workload(workload), m_what(what), m_count(count),
          m_disk(::open(session.folder.c_str(), O_RDONLY | O_DIRECTORY)) {
        for (Subject& subject : session.subjects) {
            subject.peer->Reset();
            subject.cells[what];
            if (!IsWilling(subject))
                continue;
            std::filesystem::copy_file(session.FileFor(workload, subject), CopyOf(subject));
            subject.peer->Load(CopyOf(subject));
        }
    }
    Saves(const Saves&) = delete;
    Saves& operator=(const Saves&) = delete;
    ~Saves() {
        for (Subject& subject : m_session.subjects) {
            subject.peer->Reset();
            std::filesystem::remove(CopyOf(subject));
        }
        ::close(m_disk);
    }

    bool IsWilling(const Subject& subject) const {
        return subject.Can(Peer::canSave) && subject.cells.at(m_what).note.empty();
    }

    double Sample(Subject& subject) {
        struct stat before {};
        struct stat after {};
        ::stat(CopyOf(subject).c_str(), &before);
        const std::string value = "changed " + std::to_string(++m_number);
        std::vector<Setting> settings;
        for (int i = 0; i < m_count; ++i)
            settings.push_back(
                {m_workload.Section(SectionOf(i)), m_workload.Tag(SectionOf(i), TagOfAll()), value});
        ::syncfs(m_disk); // a quiet disk for everyone
        syncCalls = 0;
        const double start = Now();
        const bool saved = subject.peer->Save(settings);
        const double took = Now() - start;
        ::stat(CopyOf(subject).c_str(), &after);
        subject.cells["new inode"].samples.push_back(before.st_ino != after.st_ino ? 1 : 0);
        subject.cells["syncs"].samples.push_back(syncCalls);
        return saved ? took * 1e3 : -1.0;
    }

    // Whether a fresh object finds in the file what was saved and what was there before.
    bool IsKept(const Subject& subject) const {
        const auto fresh = subject.make();
        const auto holds = [&](int section, int tag, const std::string& start) {
            std::string value;
            return fresh->Get(m_workload.Section(section), m_workload.Tag(section, tag), value) &&
                   value.rfind(start, 0) == 0;
        };
        bool isKept = fresh->Load(CopyOf(subject)) && holds(0, 0, m_workload.Value(0, 0));
        for (int i = 0; i < m_count; ++i)
            isKept = isKept && holds(SectionOf(i), TagOfAll(), "changed ");
        return isKept;
    }

private:
    int SectionOf(int setting) const { return m_workload.Sections() * (setting + 1) / (m_count + 1); }
    int TagOfAll() const { return m_workload.Tags() / 2; }
    std::string CopyOf(const Subject& subject) const {
        return m_session.folder + "/save-" + subject.name + ".ini";
    }

    Session& m_session;
    const Workload& m_workload;
    std::string m_what;
    int m_count;
    int m_disk;
    int m_number = 0;
};

} // namespace

void MeasureMemory(Session& session, const Workload& large, const Workload& larger) {
    const unsigned limit = session.quick ? 2 : 60;
    session.Measure("idle RSS", {3, 3, 1}, Anyone,
                    [&](Subject& subject) { return InChild("idle", subject.name, "", limit); });
    session.Measure("RSS", {3, 3, 1}, Anyone, [&](Subject& subject) {
        return InChild("load", subject.name, session.FileFor(large, subject), limit);
    });
    for (Subject& subject : session.subjects) {
        if (subject.cells["RSS"].samples.empty()) {
            for (const char* what : {"RSS", "load 100k", "save 100k", "save 40 of 100k"})
                subject.cells[what].note = '>' + std::to_string(limit) + " s";
        }
        if (session.quick || InChild("load", subject.name, session.FileFor(larger, subject), 10) < 0)
            subject.cells["load 500k"].note = session.quick ? "-" : ">10 s";
    }
}

void LoadAndCheck(Session& session, const Workload& workload) {
    session.Measure("values right", {1, 1, 0}, CanGet, [&](Subject& subject) {
        subject.peer->Reset();
        if (!subject.peer->Load(session.FileFor(workload, subject)))
            return -1.0;
        int right = 0;
        std::string value;
        for (int section = 0; section < workload.Sections(); ++section) {
            for (int tag = 0; tag < workload.Tags(); ++tag)
                right += subject.peer->Get(workload.Section(section), workload.Tag(section, tag), value) &&
                         value == workload.Value(section, tag);
        }
        return static_cast<double>(right);
    });
}

void MeasureSmallLoads(Session& session, const std::vector<Workload>& workloads, const std::string& what) {
    constexpr int rounds = 50; // one load is too short to time
    session.Measure(what, {5, 100, 1.5}, Anyone, [&](Subject& subject) {
        std::vector<std::string> files;
        for (const Workload& workload : workloads)
            files.push_back(session.FileFor(workload, subject));
        subject.peer->Reset();
        const double start = Now();
        for (int round = 0; round < rounds; ++round) {
            for (const std::string& file : files) {
                if (!subject.peer->Load(file))
                    return -1.0;
                subject.peer->Reset();
            }
        }
        return (Now() - start) / rounds / static_cast<double>(files.size()) * 1e6;
    });
}

void MeasureLoad(Session& session, const Workload& workload, const std::string& what) {
    const int loads =
        std::max(1, static_cast<int>(10'000 / workload.Size())); // a small one is too short to time
    const Plan plan = workload.Size() >= 100'000 ? Plan{3, 40, 4} : Plan{5, 100, 1.5};
    session.Measure(what, plan, Anyone, [&](Subject& subject) {
        subject.peer->Reset();
        ::malloc_trim(0); // everyone starts from a heap without free pages
        double total = 0;
        for (int i = 0; i < loads; ++i) {
            const double start = Now();
            if (!subject.peer->Load(session.FileFor(workload, subject)))
                return -1.0;
            total += Now() - start;
            subject.peer->Reset();
        }
        return total / loads * 1e3;
    });
}

void MeasureLookUps(Session& session, const Workload& workload) {
    MeasureGet(session, "get hit", workload.Hits(), workload.Size());
    MeasureGet(session, "get miss", workload.Misses(), 0);
    const auto canList = [](const Subject& subject) { return subject.Can(Peer::canList); };
    session.Measure("enumerate", {5, 31, 1.5}, canList, [&](Subject& subject) {
        const double start = Now();
        return subject.peer->List() == workload.Size() ? (Now() - start) * 1e3 : -1.0;
    });
}

void MeasureThreads(Session& session, const Workload& workload) {
    const std::vector<Name> names = workload.Hits();
    const auto willing = [](const Subject& subject) {
        return subject.peer->ThreadUse() != Peer::Threads::None;
    };
    session.Measure("2 threads", {5, 15, 4}, willing, [&](Subject& subject) {
        const auto keys = subject.peer->Prepare(names);
        const auto second = subject.make();
        const bool isEach = subject.peer->ThreadUse() == Peer::Threads::ObjectEach;
        if (isEach && !second->Load(session.FileFor(workload, subject)))
            return -1.0;
        const std::vector<Peer*> one = {subject.peer.get()};
        const std::vector<Peer*> two = {subject.peer.get(), isEach ? second.get() : subject.peer.get()};
        RunReaders(two, *keys, 1);
        const int passes = static_cast<int>(std::ceil(0.1 / RunReaders(one, *keys, 1)));
        const double alone = RunReaders(one, *keys, passes);
        return 2 * alone / RunReaders(two, *keys, passes);
    });
}

void MeasureSave(Session& session, const Workload& workload, const std::string& what, int count) {
    Saves saves(session, workload, what, count);
    session.Measure(
        what, {5, 25, 3}, [&](const Subject& subject) { return saves.IsWilling(subject); },
        [&](Subject& subject) { return saves.Sample(subject); });
    for (Subject& subject : session.subjects) {
        if (saves.IsWilling(subject) && !saves.IsKept(subject))
            subject.cells[what] = {{}, "lost"};
    }
}

void RunChild(const std::vector<std::string>& arguments) {
    std::unique_ptr<Peer> peer;
    for (const PeerEntry& entry : KnownPeers()) {
        if (entry.name == arguments[2])
            peer = entry.make();
    }
    if (!peer)
        ::_exit(2);
    const std::string& mode = arguments[1];
    bool done = mode == "idle" || peer->Load(arguments[3]);
    if (mode == "get" && arguments.size() == 6) {
        std::string value;
        done = done && peer->Get(arguments[4], arguments[5], value);
        std::cout << value << std::endl;
    }
    if (mode == "save" && arguments.size() == 7)
        done = done && peer->Save({{arguments[4], arguments[5], arguments[6]}});
    ::_exit(done ? 0 : 1); // the peak is reached; tidying up would only cost time
}

} // namespace peers

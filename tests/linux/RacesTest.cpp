// Everything at once, in threads and in processes, on one file. Each value tells how it has to look.
#include "linux/TestFolder.h"

#include <corvane/config.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <atomic>
#include <csignal>
#include <random>
#include <thread>

namespace {

using namespace corvane::test;
using namespace Quillon::NativeLogging;
using corvane::ToWide;
using corvane::wstring;

class Races : public TestFolder {
protected:
    static constexpr int workers = 4;
    static constexpr int paddings = 100;

    Races() {
        std::string text = "[s]\n[Padding]\n";
        for (int i = 0; i < paddings; ++i)
            text += "line" + std::to_string(i) + "=" + Value(i) + "\n";
        m_file = ToWide(Make("f", text));
        LoggerRegistry::setSink([](const auto&) {});
    }
    ~Races() override { LoggerRegistry::setSink({}); }

    /// A letter as often as the number in front of it says.
    static std::string Value(int i) {
        const auto length = static_cast<unsigned>(1 + i * 37 % 900);
        return std::to_string(length) + ':' + std::string(length, static_cast<char>('a' + i % 26));
    }
    static bool IsWhole(const wstring& wide) {
        const std::string value = corvane::ToUtf8(wide);
        const auto length = static_cast<unsigned>(std::strtoul(value.c_str(), nullptr, 10));
        return value == std::to_string(length) + ':' + std::string(length, value.back());
    }
    static bool IsWhole(ConfigManager& manager) {
        std::vector<wstring> names;
        bool isWhole = manager.EnumerateTags(u"Padding:", names) == paddings;
        for (const wstring& name : names) {
            wstring value;
            isWhole = isWhole && manager.GetValue(u"Padding:" + name, value) == 0 && IsWhole(value);
        }
        return isWhole;
    }

    /// Random operations, some of which may be refused because another one was quicker. Returns how often
    /// something was wrong.
    int Work(ConfigManager& manager, unsigned seed, int rounds) {
        std::minstd_rand random(seed);
        int wrong = manager.Update(m_file.c_str(), 0) == 0 ? 0 : 1;
        wstring snapshot;
        for (int round = 0; round < rounds; ++round) {
            const auto number = static_cast<int>(random() % 5000);
            const wstring key = u"s:t" + ToWide(std::to_string(number % 8));
            wstring value;
            bool right = true;
            switch (random() % 8) {
            case 0:
            case 1: right = manager.SetValue(key, ToWide(Value(number))) == 0; break;
            case 2: right = manager.GetValue(key, value) != 0 || IsWhole(value); break;
            case 3: manager.DeleteValue(key); break;
            case 4: manager.CreateSnapshot(snapshot); break;
            case 5: right = snapshot.empty() || manager.RestoreSnapshot(snapshot) == 0; break;
            case 6: right = manager.Update(m_file.c_str(), -1) == 0 && IsWhole(manager); break;
            default: LoggerRegistry::setSink([](const LogLine& line) { EXPECT_FALSE(line.text.empty()); });
            }
            wrong += right ? 0 : 1;
        }
        return wrong;
    }

    /// Runs `work` for each worker's number in a process of its own; each has to give 0.
    static void InProcesses(const std::function<int(int)>& work) {
        std::vector<pid_t> children;
        for (int worker = 1; worker <= workers; ++worker)
            children.push_back(Fork([&] { return work(worker); }));
        for (const pid_t child : children)
            EXPECT_EQ(Wait(child), 0);
    }

    /// The file is whole and nothing stands beside it but snapshots.
    void CheckEnd() {
        for (const auto& entry : fs::directory_iterator(Path("."))) {
            ConfigManager each;
            EXPECT_EQ(each.Update(ToWide(entry.path().string()).c_str(), 0), 0) << entry.path();
            EXPECT_TRUE(IsWhole(each)) << entry.path();
        }
    }

    wstring m_file;
};

TEST_F(Races, OfThreadsEndWell) {
    ConfigManager shared;
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= workers; ++seed)
        threads.emplace_back([&, seed] {
            ConfigManager own;
            for (ConfigManager* manager :
                 {&own, &shared, static_cast<ConfigManager*>(ApplicationConfigManager::Instance())})
                EXPECT_EQ(Work(*manager, seed, 40), 0);
        });
    for (std::thread& thread : threads)
        thread.join();
    ApplicationConfigManager::Delete();
    CheckEnd();
}

TEST_F(Races, OfProcessesEndWell) {
    InProcesses([&](int seed) {
        ConfigManager manager;
        return Work(manager, static_cast<unsigned>(seed), 120);
    });
    CheckEnd();
}

TEST_F(Races, ShowReadersTheOldOrTheNew) {
    const std::string values[] = {std::string(20'000, 'a'), std::string(9'000, 'b')};
    for (const bool inPlace : {false, true}) {
        const std::string file =
            Make("f", "[s]\n;" + std::string(9'000, ' ') + "\nv=" + values[0] + "\nend=1\n");
        if (inPlace)
            fs::create_hard_link(file, Path("hard"));
        const pid_t writer = Fork([&] {
            for (unsigned i = 1; i <= 200; ++i, ::usleep(1000)) // for the reader to see it
                corvane::platform::WritePrivateProfileStringA("s", "v", values[i % 2].c_str(), file.c_str());
            return 0;
        });
        std::string text(40'000, '#');
        int seen[2] = {};
        do {
            const auto count =
                corvane::platform::GetPrivateProfileSectionA("s", text.data(), 40'000, file.c_str());
            const int which = text[2] == 'b';
            ASSERT_EQ(text.substr(0, count), "v=" + values[which] + std::string("\0end=1\0", 7));
            ++seen[which];
        } while (::waitpid(writer, nullptr, WNOHANG) == 0);
        EXPECT_TRUE(seen[0] > 0 && seen[1] > 0);
    }
}

// Each child has a duplicate of the descriptor that the reader had open at that moment.
TEST_F(Races, OfReadersAndForksLeaveNoLock) {
    const std::string file = Make("f", "[s]\nv=1\n");
    std::atomic<long> reads{0};
    std::atomic<bool> done{false};
    std::thread reader([&] {
        for (char text[8] = ""; !done; ++reads) {
            ::chmod(file.c_str(), 0600); // so that it has just changed, and is locked
            const corvane::platform::LoadScope load;
            corvane::platform::GetPrivateProfileStringA("s", "v", nullptr, text, sizeof text, file.c_str());
        }
    });
    std::vector<pid_t> children;
    for (int i = 0; i < 40; ++i) {
        for (const long before = reads; reads == before;)
            std::this_thread::yield();
        children.push_back(Fork([] { return static_cast<int>(::alarm(60)) + ::pause(); }));
    }
    done = true;
    reader.join();
    fs::create_hard_link(file, Path("hard")); // so that it is written in place
    EXPECT_NE(corvane::platform::WritePrivateProfileStringA("s", "v", "2", file.c_str()), 0);
    for (const pid_t child : children) {
        ::kill(child, SIGKILL);
        Wait(child);
    }
}

TEST_F(Races, OfWritersLoseNothing) {
    constexpr int tags = 100;
    InProcesses([&](int worker) {
        ConfigManager manager;
        int wrong = manager.Update(m_file.c_str(), 0);
        for (int tag = worker; tag < tags; tag += workers)
            wrong += manager.SetValue(u"s:" + ToWide(std::to_string(tag)), ToWide(Value(tag)));
        return wrong;
    });
    const std::string text = Bytes(Path("f"));
    for (int tag = 1; tag < tags; ++tag)
        EXPECT_NE(text.find("\n" + std::to_string(tag) + "=" + Value(tag) + "\n"), std::string::npos) << tag;
}

// Each batch sets all values of its group and their sum, and a tag of its own; all groups share one section.
TEST_F(Races, OfBatchesShowNoHalfOfOne) {
    constexpr int groups = 2; // each for two of the workers
    constexpr int tags = 10;
    constexpr int rounds = 40;
    const auto name = [](int group, int tag) {
        return u"s:g" + ToWide(std::to_string(group)) + u"." + ToWide(std::to_string(tag));
    };
    const auto number = [](ConfigManager& manager, const wstring& key) {
        wstring value;
        return manager.GetValue(key, value) == 0 ? std::stoi(corvane::ToUtf8(value)) : 0;
    };
    const auto isWhole = [&](ConfigManager& manager, int group) {
        int sum = 0;
        for (int tag = 0; tag < tags; ++tag)
            sum += number(manager, name(group, tag));
        return sum == number(manager, name(group, tags));
    };
    InProcesses([&](int worker) {
        ConfigManager manager;
        std::minstd_rand random(static_cast<unsigned>(worker));
        int wrong = manager.Update(m_file.c_str(), 0);
        for (int round = 1; round <= rounds; ++round) {
            std::vector<corvane::ConfigChange> changes;
            int sum = 0;
            for (int tag = 0; tag < tags; ++tag) {
                const auto value = static_cast<int>(random() % 1000);
                sum += value;
                changes.push_back({name(worker % groups, tag), ToWide(std::to_string(value))});
            }
            changes.push_back({name(worker % groups, tags), ToWide(std::to_string(sum))});
            const wstring own = ToWide(std::to_string(worker) + "." + std::to_string(round));
            changes.push_back({u"s:batch" + own, u"1"});
            wrong += manager.ApplyChanges(changes) + manager.SetValue(u"s:single" + own, u"1");
            wrong += manager.Update(m_file.c_str(), -1);
            for (int group = 0; group < groups; ++group)
                wrong += isWhole(manager, group) ? 0 : 1;
        }
        return wrong;
    });
    ConfigManager manager;
    ASSERT_EQ(manager.Update(m_file.c_str(), 0), 0);
    std::vector<wstring> names;
    EXPECT_EQ(manager.EnumerateTags(u"s:", names), std::size_t{groups * (tags + 1) + workers * rounds * 2})
        << "something was lost";
    CheckEnd();
}

} // namespace

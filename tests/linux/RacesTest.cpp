// Everything at once, in threads and in processes, on one file. Each value tells how it has to look.
#include "linux/TestFolder.h"

#include <corvane/comfort.h>
#include <corvane/config.h>
#include <corvane/sources/ConfigFile.h>

#include <random>
#include <set>
#include <thread>

namespace corvane::test {
namespace {

using namespace Quillon::NativeLogging;
using std::to_string;

class Races : public TestFolder {
protected:
    static constexpr int workers = 4;
    static constexpr int paddings = 100;

    Races() {
        LoggerRegistry::setSink([](const auto&) {});
    }
    ~Races() override { LoggerRegistry::setSink({}); }

    static std::string Padding() {
        std::string text = "[s]\n[Padding]\n";
        for (int i = 0; i < paddings; ++i)
            text += "line" + to_string(i) + "=" + Value(i) + "\n";
        return text;
    }
    /// The number in front tells what follows.
    static std::string Value(int number) {
        const auto length = static_cast<unsigned>(number * 37 % 900);
        return to_string(number) + ':' + std::string(length, static_cast<char>('a' + number % 26));
    }
    static bool IsWhole(const std::string& value) { return value == Value(std::atoi(value.c_str())); }
    static bool IsWhole(const ConfigManager& manager) {
        bool isWhole = true;
        for (int i = 0; i < paddings; ++i)
            isWhole = isWhole && IsWhole(Get(manager, "Padding:line" + to_string(i), "none"));
        return isWhole;
    }

    /// Random operations, some of which may be refused because another one was quicker. Returns how often
    /// something was wrong.
    int Work(ConfigManager& manager, unsigned seed, int rounds) {
        std::minstd_rand random(seed);
        int wrong = Load(manager, m_file) ? 0 : 1;
        wstring snapshot, text;
        for (int round = 0; round < rounds; ++round) {
            const auto number = static_cast<int>(random() % 5000);
            const std::string key = "s:t" + to_string(number % 8);
            bool right = true;
            switch (random() % 8) {
            case 0: right = Set(manager, key, Value(number)); break;
            case 1: right = m_source.ReadValue(u"Padding:line1", text) > 0 && IsWhole(ToUtf8(text)); break;
            case 2: right = IsWhole(Get(manager, key, Value(number))); break;
            case 3: static_cast<void>(Delete(manager, key)); break;
            case 4: manager.CreateSnapshot(snapshot); break;
            case 5: right = snapshot.empty() || manager.RestoreSnapshot(snapshot) == 0; break;
            case 6: right = Reload(manager) && IsWhole(manager); break;
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
            EXPECT_TRUE(Load(each, entry.path().string()) && IsWhole(each)) << entry.path();
        }
    }

    const std::string m_file = Make("f", Padding());
    ConfigFile m_source{ToWide(m_file).c_str()};
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

// Each batch gives all tags of its group one value, and sets a tag of its own; all groups share one section.
TEST_F(Races, OfBatchesShowNoHalfOfOne) {
    constexpr int groups = 2; // each for two of the workers
    constexpr int tags = 10, rounds = 40;
    const auto name = [](int group, int tag) { return "s:" + to_string(group) + "." + to_string(tag); };
    const auto isWhole = [&](const ConfigManager& manager, int group) {
        std::set<std::string> values;
        for (int tag = 0; tag < tags; ++tag)
            values.insert(Get(manager, name(group, tag), "")); // none before the first batch
        return values.size() == 1;
    };
    for (const bool inPlace : {false, true}) {
        Make("f", Padding());
        if (inPlace)
            fs::create_hard_link(Path("f"), Path("hard"));
        InProcesses([&](int worker) {
            ConfigManager manager;
            int wrong = Load(manager, m_file) ? 0 : 1;
            for (int round = 1; round <= rounds; ++round) {
                const std::string own = to_string(worker) + "." + to_string(round);
                WriteBatch batch;
                batch.Set("s:batch" + own, 1);
                for (int tag = 0; tag < tags; ++tag)
                    batch.Set(name(worker % groups, tag), own);
                const bool done = Write(manager, batch) && Set(manager, "s:single" + own, 1);
                wrong += done && Reload(manager) ? 0 : 1;
                for (int group = 0; group < groups; ++group)
                    wrong += isWhole(manager, group) ? 0 : 1;
            }
            return wrong;
        });
        ConfigManager manager;
        ASSERT_TRUE(Load(manager, m_file));
        EXPECT_EQ(Tags(manager, "s").size(), std::size_t{groups * tags + workers * rounds * 2})
            << "something was lost";
        CheckEnd();
    }
}

} // namespace
} // namespace corvane::test

// Everything at once, in threads and in processes, on one file. Each value tells how it has to look.
#include "linux/TestFolder.h"

#include <corvane/config.h>

#include <random>
#include <set>
#include <thread>

namespace {

using namespace corvane::test;
using namespace Quillon::NativeLogging;
using corvane::ToWide;
using corvane::wstring;

wstring Number(int number) {
    return ToWide(std::to_string(number));
}

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
            text += "line" + std::to_string(i) + "=" + Value(i) + "\n";
        return text;
    }
    /// The number in front tells what follows.
    static std::string Value(int number) {
        const auto length = static_cast<unsigned>(number * 37 % 900);
        return std::to_string(number) + ':' + std::string(length, static_cast<char>('a' + number % 26));
    }
    static bool IsWhole(const wstring& wide) {
        const std::string value = corvane::ToUtf8(wide);
        return value == Value(std::atoi(value.c_str()));
    }
    static bool IsWhole(ConfigManager& manager) {
        bool isWhole = true;
        for (int i = 0; i < paddings; ++i) {
            wstring value;
            isWhole = isWhole && manager.GetValue(u"Padding:line" + Number(i), value) == 0 && IsWhole(value);
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
            const wstring key = u"s:t" + Number(number % 8);
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

    const wstring m_file = ToWide(Make("f", Padding()));
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
    constexpr int tags = 10;
    constexpr int rounds = 40;
    const auto name = [](int group, int tag) { return u"s:" + Number(group) + u"." + Number(tag); };
    const auto isWhole = [&](ConfigManager& manager, int group) {
        std::set<wstring> values;
        for (int tag = 0; tag < tags; ++tag) {
            wstring value;
            manager.GetValue(name(group, tag), value); // none before the first batch
            values.insert(value);
        }
        return values.size() == 1;
    };
    for (const bool inPlace : {false, true}) {
        Make("f", Padding());
        if (inPlace)
            fs::create_hard_link(Path("f"), Path("hard"));
        InProcesses([&](int worker) {
            ConfigManager manager;
            int wrong = manager.Update(m_file.c_str(), 0);
            for (int round = 1; round <= rounds; ++round) {
                const wstring own = Number(worker) + u"." + Number(round);
                std::vector<corvane::ConfigChange> changes{{u"s:batch" + own, u"1"}};
                for (int tag = 0; tag < tags; ++tag)
                    changes.push_back({name(worker % groups, tag), own});
                wrong += manager.ApplyChanges(changes) + manager.SetValue(u"s:single" + own, u"1");
                wrong += manager.Update(m_file.c_str(), -1);
                for (int group = 0; group < groups; ++group)
                    wrong += isWhole(manager, group) ? 0 : 1;
            }
            return wrong;
        });
        ConfigManager manager;
        std::vector<wstring> names;
        ASSERT_EQ(manager.Update(m_file.c_str(), 0), 0);
        EXPECT_EQ(manager.EnumerateTags(u"s:", names), std::size_t{groups * tags + workers * rounds * 2})
            << "something was lost";
        CheckEnd();
    }
}

} // namespace

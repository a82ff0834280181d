// Everything at once, in threads and in processes, on one file. Each value tells how it has to look.
#include "posix/TestFolder.h"

#include <corvane/config.h>
#include <corvane/foundations/ApplicationConfigManager.h>

#include <iostream>
#include <random>
#include <thread>

namespace {

using namespace corvane::test;
using namespace Quillon::NativeLogging;
using corvane::wstring;

class Races : public TestFolder {
protected:
    static constexpr int workers = 4;

    Races() {
        std::string text = "[Padding]\n";
        for (int i = 0; i < 100; ++i)
            text += "line" + std::to_string(i) + "=" + Value(i) + "\n";
        for (int i = 0; i < tags; ++i)
            text += (i == 0 ? "[s]\nt" : "t") + std::to_string(i) + "=" + Value(i) + "\n";
        m_file = corvane::ToWide(Make("f", text));
        LoggerRegistry::setSink([](const auto&) {});
    }
    ~Races() override { LoggerRegistry::setSink({}); }

    /// A letter as often as the number in front of it says.
    static std::string Value(int i) {
        const auto length = static_cast<unsigned>(1 + i * 37 % 900);
        return std::to_string(length) + ':' + std::string(length, static_cast<char>('a' + i % 26));
    }
    static bool IsWhole(const std::string& value) {
        const std::size_t colon = value.find(':');
        const unsigned long length = std::strtoul(value.c_str(), nullptr, 10);
        return colon != std::string::npos && value.size() == colon + 1 + length &&
               value.find_first_not_of(value.back(), colon + 1) == std::string::npos;
    }
    static bool IsWhole(ConfigManager& manager) {
        std::vector<wstring> names;
        bool isWhole = manager.EnumerateTags(u"Padding:", names) == 100;
        for (const wstring& name : names) {
            wstring value;
            isWhole = isWhole && manager.GetValue(u"Padding:" + name, value) == 0 &&
                      IsWhole(corvane::ToUtf8(value));
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
            const wstring key = u"s:t" + corvane::ToWide(std::to_string(number % tags));
            wstring value;
            switch (random() % 8) {
            case 0:
            case 1: wrong += manager.SetValue(key, corvane::ToWide(Value(number))) == 0 ? 0 : 1; break;
            case 2:
                wrong += manager.GetValue(key, value) != 0 || IsWhole(corvane::ToUtf8(value)) ? 0 : 1;
                break;
            case 3: manager.DeleteValue(key); break;
            case 4: manager.CreateSnapshot(snapshot); break;
            case 5: wrong += snapshot.empty() || manager.RestoreSnapshot(snapshot) == 0 ? 0 : 1; break;
            case 6: wrong += manager.Update(m_file.c_str(), -1) == 0 && IsWhole(manager) ? 0 : 1; break;
            default:
                LoggerRegistry::setSink(
                    [number](const LogLine& line) { EXPECT_FALSE(line.text.empty()) << number; });
            }
        }
        return wrong;
    }

    /// The file is whole and nothing stands beside it but snapshots.
    void CheckEnd() {
        ConfigManager manager;
        ASSERT_EQ(manager.Update(m_file.c_str(), 0), 0);
        EXPECT_TRUE(IsWhole(manager));
        EXPECT_EQ(manager.SetValue(u"s:last", u"1"), 0);
        for (const auto& entry : std::filesystem::directory_iterator(Path("."))) {
            ConfigManager each;
            EXPECT_EQ(each.Update(corvane::ToWide(entry.path().string()).c_str(), 0), 0) << entry.path();
            EXPECT_TRUE(IsWhole(each)) << entry.path();
        }
    }

    static constexpr int tags = 8;
    wstring m_file;
};

TEST_F(Races, OfThreadsEndWell) {
    ConfigManager shared;
    std::vector<int> wrong(workers);
    std::vector<std::thread> threads;
    threads.reserve(workers);
    for (int i = 0; i < workers; ++i)
        threads.emplace_back([&, i] {
            const auto seed = static_cast<unsigned>(i + 1);
            ConfigManager own;
            for (ConfigManager* manager :
                 {&own, &shared, static_cast<ConfigManager*>(ApplicationConfigManager::Instance())})
                wrong[static_cast<std::size_t>(i)] += Work(*manager, seed, 80);
        });
    for (std::thread& thread : threads)
        thread.join();
    ApplicationConfigManager::Delete();
    EXPECT_EQ(wrong, std::vector<int>(workers));
    CheckEnd();
}

TEST_F(Races, OfProcessesEndWell) {
    std::vector<pid_t> children;
    for (unsigned seed = 1; seed <= workers; ++seed) {
        children.push_back(Fork([&] {
            ConfigManager manager;
            return Work(manager, seed, 200);
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(Wait(child), 0);
    CheckEnd();
}

} // namespace

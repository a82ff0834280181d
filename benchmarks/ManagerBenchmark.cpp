// What a program pays: loads, reads, listings, writes and snapshots through ConfigManager.
#include "ProfileText.h"

#include <corvane/config.h>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace corvane {
namespace {

constexpr int reload = -1;

/// A settings file of `tags` tags and a manager that has loaded it, made once for each size.
class Loaded {
public:
    explicit Loaded(int tags)
        : m_file(std::filesystem::temp_directory_path() /
                 ("corvane-" + std::to_string(tags) + "-" + std::to_string(std::random_device()()))) {
        std::ofstream(m_file, std::ios::binary) << ProfileText(tags);
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // no more a fresh file
        manager.Update(Name().c_str(), reload);
        for (int tag = 0; tag < tags; ++tag)
            keys.push_back(ToWide(SectionName(tag) + ':' + TagName(tag)));
        std::shuffle(keys.begin(), keys.end(), std::minstd_rand());
    }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
    ~Loaded() { std::filesystem::remove(m_file); }

    wstring Name() const { return ToWide(m_file.string()); }

    static Loaded& Of(const benchmark::State& state) {
        static std::map<std::int64_t, std::unique_ptr<Loaded>> made;
        auto& loaded = made[state.range(0)];
        if (!loaded)
            loaded = std::make_unique<Loaded>(static_cast<int>(state.range(0)));
        return *loaded;
    }

    ConfigManager manager;
    std::vector<wstring> keys; // shuffled

private:
    std::filesystem::path m_file;
};

void Load(benchmark::State& state) {
    const wstring name = Loaded::Of(state).Name();
    for (auto _ : state) {
        ConfigManager manager;
        if (manager.Update(name.c_str(), reload) != 0)
            state.SkipWithError("not loaded");
    }
    state.counters["per_tag"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(Load)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void GetHit(benchmark::State& state) {
    static Loaded& loaded = Loaded::Of(state);
    wstring value;
    std::size_t at = static_cast<std::size_t>(state.thread_index()) * 7919;
    for (auto _ : state) {
        if (loaded.manager.GetValue(loaded.keys[at++ % loaded.keys.size()], value) != 0)
            state.SkipWithError("not found");
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(GetHit)->Arg(10'000)->Threads(1)->Threads(2)->UseRealTime();

void GetMiss(benchmark::State& state) {
    Loaded& loaded = Loaded::Of(state);
    std::vector<wstring> keys = loaded.keys;
    for (wstring& key : keys)
        key += 'x';
    wstring value;
    std::size_t at = 0;
    for (auto _ : state) {
        if (loaded.manager.GetValue(keys[at++ % keys.size()], value) == 0)
            state.SkipWithError("found");
    }
}
BENCHMARK(GetMiss)->Arg(10'000);

void List(benchmark::State& state) {
    Loaded& loaded = Loaded::Of(state);
    for (auto _ : state) {
        std::vector<wstring> sections;
        loaded.manager.EnumerateSubKeys(sections);
        for (const wstring& section : sections) {
            std::vector<wstring> tags;
            benchmark::DoNotOptimize(loaded.manager.EnumerateTags(section + CORVANE_TEXT(":"), tags));
        }
    }
}
BENCHMARK(List)->Arg(10'000)->Unit(benchmark::kMicrosecond);

// What makes such a file durable and nothing else: the same bytes into a new file, flushed and put in place.
void ReplaceFile(const std::filesystem::path& file, const std::string& content) {
    const std::string next = file.string() + ".next";
    const int made = ::open(next.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (::write(made, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
        throw std::runtime_error("not written");
    ::fsync(made);
    ::close(made);
    ::rename(next.c_str(), file.c_str());
    const int folder = ::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::fsync(folder);
    ::close(folder);
}

// On a disk that is made quiet before.
template <typename Work>
double Seconds(Work work) {
    const int folder = ::open(std::filesystem::temp_directory_path().c_str(), O_RDONLY | O_CLOEXEC);
    ::syncfs(folder);
    ::close(folder);
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

// A durable write, and in turns with it the flush alone. `own_share` is what the write takes besides.
void WriteThrough(benchmark::State& state) {
    Loaded& loaded = Loaded::Of(state);
    const std::string content = ProfileText(static_cast<int>(state.range(0)));
    const std::filesystem::path bare = ToUtf8(loaded.Name()) + "-bare";
    std::vector<double> writes;
    std::vector<double> flushes;
    for (auto _ : state) {
        const wstring value = ToWide(std::to_string(writes.size()));
        int status = 0;
        writes.push_back(Seconds([&] { status = loaded.manager.SetValue(loaded.keys[0], value); }));
        flushes.push_back(Seconds([&] { ReplaceFile(bare, content); }));
        state.SetIterationTime(writes.back());
        if (status != 0)
            state.SkipWithError("not written");
    }
    std::filesystem::remove(bare);
    state.counters["flush_ms"] = Median(flushes) * 1e3;
    state.counters["own_share"] = 1 - Median(flushes) / Median(writes);
}
BENCHMARK(WriteThrough)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(25)
    ->UseManualTime();

void WriteAndDelete(benchmark::State& state) {
    Loaded& loaded = Loaded::Of(state);
    const wstring key = loaded.keys[0] + CORVANE_TEXT("-new");
    for (auto _ : state) {
        if (loaded.manager.SetValue(key, CORVANE_TEXT("x")) != 0 || loaded.manager.DeleteValue(key) != 0)
            state.SkipWithError("not written");
    }
}
BENCHMARK(WriteAndDelete)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void SnapshotAndRestore(benchmark::State& state) {
    Loaded& loaded = Loaded::Of(state);
    for (auto _ : state) {
        wstring snapshot;
        if (loaded.manager.CreateSnapshot(snapshot) != 0 || loaded.manager.RestoreSnapshot(snapshot) != 0)
            state.SkipWithError("not restored");
        state.PauseTiming();
        std::filesystem::remove(ToUtf8(snapshot));
        state.ResumeTiming();
    }
}
BENCHMARK(SnapshotAndRestore)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace corvane

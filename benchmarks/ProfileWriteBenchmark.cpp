#include "ProfileText.h"

#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/profile/EditProfile.h>

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace corvane {
namespace {

// The last tag, which the edit has to look for longest.
struct LastTag {
    explicit LastTag(int tags) : section(SectionName(tags - 1)), tag(TagName(tags - 1)) {}
    std::string section;
    std::string tag;
};

void SetTagInText(benchmark::State& state) {
    const std::string text = ProfileText(static_cast<int>(state.range(0)));
    const LastTag last(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(os::Edited(text, {{last.section, last.tag, "another value"}}));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(SetTagInText)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// With all that makes it durable; `folder` says on what kind of disk.
void WriteOneTag(benchmark::State& state, const std::string& folder) {
    std::string path = folder + "/corvane-benchmark-XXXXXX";
    if (!::mkdtemp(path.data()))
        return state.SkipWithError("no temporary folder");
    const std::string file = path + "/f";
    std::ofstream(file, std::ios::binary) << ProfileText(static_cast<int>(state.range(0)));
    const LastTag last(static_cast<int>(state.range(0)));
    int value = 0;
    for (auto _ : state) {
        const std::string text = std::to_string(++value);
        if (!platform::WritePrivateProfileStringA(last.section.c_str(), last.tag.c_str(), text.c_str(),
                                                  file.c_str()))
            state.SkipWithError("a write was refused");
    }
    std::filesystem::remove_all(path);
}
BENCHMARK_CAPTURE(WriteOneTag, OnDisk, "/tmp")->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(WriteOneTag, InMemory, "/dev/shm")->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace corvane

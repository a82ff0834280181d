#include "ProfileText.h"

#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/profile/ProfileIndex.h>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

class ProfileOnDisk {
public:
    explicit ProfileOnDisk(int tags) {
        const int descriptor = ::mkstemp(m_path.data());
        if (descriptor < 0)
            throw std::runtime_error("no temporary file");
        ::close(descriptor);
        std::ofstream(m_path, std::ios::binary) << ProfileText(tags);
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // no more a fresh file
    }
    ProfileOnDisk(const ProfileOnDisk&) = delete;
    ProfileOnDisk& operator=(const ProfileOnDisk&) = delete;
    ~ProfileOnDisk() { std::remove(m_path.c_str()); }

    const char* Path() const noexcept { return m_path.c_str(); }

private:
    std::string m_path = "/tmp/corvane-benchmark-XXXXXX";
};

void ReportTags(benchmark::State& state) {
    const auto tags = static_cast<double>(state.iterations() * state.range(0));
    state.counters["per_tag"] =
        benchmark::Counter(tags, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

os::FileText FileTextOf(const std::string& text) {
    os::FileText copy;
    copy.Resize(text.size());
    text.copy(copy.Data(), text.size());
    return copy;
}

void ParseProfile(benchmark::State& state) {
    const std::string text = ProfileText(static_cast<int>(state.range(0)));
    std::size_t bytes = 0;
    while (state.KeepRunning()) {
        const os::ProfileIndex index(FileTextOf(text));
        bytes = index.Footprint();
    }
    ReportTags(state);
    state.counters["bytes_of_index_per_tag"] =
        static_cast<double>(bytes - text.size()) / static_cast<double>(state.range(0));
}
BENCHMARK(ParseProfile)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// Every value of the file by a call of its own, as a load does.
void ReadAllTags(benchmark::State& state) {
    const auto tags = static_cast<int>(state.range(0));
    const ProfileOnDisk profile(tags);
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(tags));
    for (int tag = 0; tag < tags; ++tag)
        names.push_back(TagName(tag));
    char buffer[1024];
    while (state.KeepRunning()) {
        for (int tag = 0; tag < tags; ++tag) {
            const std::string section = SectionName(tag);
            const ulong count = platform::GetPrivateProfileStringA(
                section.c_str(), names[static_cast<std::size_t>(tag)].c_str(), nullptr, buffer, sizeof buffer,
                profile.Path());
            if (count == 0)
                return state.SkipWithError("a tag is missing");
        }
    }
    ReportTags(state);
}
BENCHMARK(ReadAllTags)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// What each of those calls cannot do without.
void StatOnly(benchmark::State& state) {
    const ProfileOnDisk profile(1);
    struct stat status {};
    while (state.KeepRunning())
        benchmark::DoNotOptimize(::stat(profile.Path(), &status));
}
BENCHMARK(StatOnly);

void ConvertToWide(benchmark::State& state, const std::string& piece) {
    std::string text;
    while (text.size() < 4096)
        text += piece;
    std::vector<wchar> wide(text.size());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(utf::ToWide(text, wide.data()));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK_CAPTURE(ConvertToWide, Ascii, "the value of a tag ");
BENCHMARK_CAPTURE(ConvertToWide, German,
                  "Gr\xC3\xB6\xC3\x9F"
                  "e der Ausgabe ");
BENCHMARK_CAPTURE(ConvertToWide, Chinese, "\xE4\xB8\xAD\xE6\x96\x87\xE5\xAD\x97");

} // namespace
} // namespace corvane

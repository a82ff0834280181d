// Registry reads by path, writes and enumeration, over a registry in a temporary folder.
#include <corvane/platform/RegistryFolders.h>
#include <corvane/registry/registry.h>

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using corvane::ToWide;
using corvane::wstring;

class RegistryBenchmark : public benchmark::Fixture {
public:
    void SetUp(benchmark::State&) override {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvane-registry-XXXXXX").string();
        m_folder = ::mkdtemp(pattern.data());
        corvane::SetRegistryFolders(m_folder / "user", m_folder / "machine");
    }
    void TearDown(benchmark::State&) override {
        corvane::SetRegistryFolders("", "");
        std::filesystem::remove_all(m_folder);
    }

protected:
    // A key with `count` values, of which the last is wanted.
    wstring MakeKey(const benchmark::State& state, bool isText) const {
        const std::filesystem::path key = m_folder / "user" / "HKEY_CURRENT_USER" / "Software" / "App";
        std::filesystem::create_directories(key);
        std::ofstream file(key / ".values");
        for (int64_t i = 0; i < state.range(0); ++i)
            file << "\"Value" << i << (isText ? "\"=\"some text\"\n" : "\"=dword:0000002a\n");
        return ToWide("Value" + std::to_string(state.range(0) - 1));
    }

    static constexpr const corvane::wchar* path = CORVANE_TEXT("HKEY_CURRENT_USER\\Software\\App");
    std::filesystem::path m_folder;
};

BENCHMARK_DEFINE_F(RegistryBenchmark, ReadNumber)(benchmark::State& state) {
    const wstring name = MakeKey(state, false);
    int found = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(registry_readNumber(nullptr, path, name.c_str(), 0, &found));
    if (!found)
        state.SkipWithError("not found");
}
BENCHMARK_REGISTER_F(RegistryBenchmark, ReadNumber)->Arg(1)->Arg(20)->Arg(500);

// The system calls that such a read cannot do without: a folder for each level, and the file of the values.
BENCHMARK_DEFINE_F(RegistryBenchmark, BareCalls)(benchmark::State& state) {
    MakeKey(state, false);
    const std::string tree = (m_folder / "user").string();
    std::vector<char> text(1 << 16);
    struct stat status {};
    ssize_t size = 0;
    for (auto _ : state) {
        constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
        int folder = ::open(tree.c_str(), flags);
        for (const char* name : {"HKEY_CURRENT_USER", "Software", "App"}) {
            const int next = ::openat(folder, name, flags);
            ::close(folder);
            folder = next;
        }
        const int file = ::openat(folder, ".values", O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
        ::fstat(file, &status);
        size = ::read(file, text.data(), text.size());
        ::close(file);
        ::close(folder);
    }
    if (size != status.st_size)
        state.SkipWithError("not read");
}
BENCHMARK_REGISTER_F(RegistryBenchmark, BareCalls)->Arg(1)->Arg(20)->Arg(500);

BENCHMARK_DEFINE_F(RegistryBenchmark, ReadString)(benchmark::State& state) {
    const wstring name = MakeKey(state, true);
    corvane::wchar buffer[64];
    corvane::ulong length = 0;
    for (auto _ : state)
        length = registry_readString(nullptr, path, name.c_str(), nullptr, buffer, 64);
    if (length != 9)
        state.SkipWithError("not found");
}
BENCHMARK_REGISTER_F(RegistryBenchmark, ReadString)->Arg(1)->Arg(20)->Arg(500);

BENCHMARK_DEFINE_F(RegistryBenchmark, WriteNumber)(benchmark::State& state) {
    const wstring name = MakeKey(state, false);
    corvane::ulong number = 0;
    int status = 0;
    for (auto _ : state)
        status |= registry_writeNumber(nullptr, path, name.c_str(), ++number);
    if (status != 0)
        state.SkipWithError("refused");
}
BENCHMARK_REGISTER_F(RegistryBenchmark, WriteNumber)->Arg(1)->Arg(500)->UseRealTime();

BENCHMARK_DEFINE_F(RegistryBenchmark, ListSubkeys)(benchmark::State& state) {
    MakeKey(state, false);
    for (int64_t i = 0; i < state.range(0); ++i)
        std::filesystem::create_directory(m_folder / "user/HKEY_CURRENT_USER/Software/App" /
                                          std::to_string(i));
    for (auto _ : state) {
        corvane::wchar* const names = registry_loadSubSectionNames(nullptr, path, ';');
        if (!names)
            state.SkipWithError("no names");
        std::free(names);
    }
}
BENCHMARK_REGISTER_F(RegistryBenchmark, ListSubkeys)->Arg(1000);

} // namespace

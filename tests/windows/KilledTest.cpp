// Processes that are killed while they write batches.
#include "support/ConfigFixture.h"

#include <cstdlib>
#include <memory>
#include <process.h>
#include <windows.h>

namespace {

constexpr const char* variable = "CORVANE_KILLED_WRITER"; // the file that such a process writes
constexpr int tags = 20;

std::string Tag(int number) {
    return "S:t" + std::to_string(number);
}

corvane::WriteBatch Batch(int value) {
    corvane::WriteBatch batch;
    for (int tag = 0; tag < tags; ++tag)
        batch.Set(Tag(tag), value);
    return batch;
}

[[noreturn]] void WriteUntilKilled(const char* path) {
    ConfigManager manager;
    bool isDone = static_cast<bool>(corvane::Load(manager, path));
    for (int value = 1; isDone && value < 10'000; ++value) // in case the test itself is killed
        isDone = corvane::Write(manager, Batch(value));
    std::_Exit(1);
}

class Killed : public ConfigFixture {
protected:
    using Process = std::unique_ptr<void, decltype(&::CloseHandle)>;

    /// This program again, which writes the file.
    Process Writer() const {
        char program[MAX_PATH] = "";
        ::GetModuleFileNameA(nullptr, program, MAX_PATH);
        ::_putenv_s(variable, file.u8string().c_str());
        const auto handle = ::_spawnl(_P_NOWAIT, program, "writer", "--gtest_filter=Killed.*", nullptr);
        ::_putenv_s(variable, "");
        return {reinterpret_cast<HANDLE>(handle), &::CloseHandle};
    }
};

TEST_F(Killed, WritersLeaveAllOrNoneOfABatch) {
    if (const char* const path = std::getenv(variable))
        WriteUntilKilled(path);
    int inTheMiddle = 0;
    for (DWORD delay = 0; delay < 25; ++delay) {
        Start("[S]\r\nother=kept\r\n");
        EXPECT_TRUE(corvane::Write(manager, Batch(0)));
        const auto before = fs::last_write_time(file);
        const Process writers[] = {Writer(), Writer()};
        std::error_code isMissing; // for a moment, while it is replaced
        while (::WaitForSingleObject(writers[0].get(), delay) == WAIT_TIMEOUT &&
               fs::last_write_time(file, isMissing) == before) {
        }
        for (const Process& writer : writers) {
            EXPECT_TRUE(::TerminateProcess(writer.get(), 0)) << "it runs until it is killed";
            ::WaitForSingleObject(writer.get(), INFINITE);
        }
        inTheMiddle += FilesInFolder() != 1 || !fs::exists(file) ? 1 : 0;

        ASSERT_TRUE(corvane::Reload(manager));
        EXPECT_EQ(Get("S:other"), "kept");
        for (int tag = 1; tag < tags; ++tag)
            EXPECT_EQ(Get(Tag(tag)), Get(Tag(0)));
        EXPECT_TRUE(corvane::Write(manager, Batch(-1)));
        EXPECT_EQ(FilesInFolder(), 1) << "nothing is left behind";
    }
    EXPECT_GT(inTheMiddle, 0);
}

} // namespace

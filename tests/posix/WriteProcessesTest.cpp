// Several processes at one file.
#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/files/FileHandle.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/ReadFile.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <posix/TestFolder.h>
#include <sys/file.h>
#include <vector>

namespace corvane {
namespace {

using namespace platform;
using namespace test;

class WriteProcesses : public TestFolder {};

bool Write(const std::string& tag, const std::string& value, const std::string& file) {
    return WritePrivateProfileStringA("s", tag.c_str(), value.c_str(), file.c_str()) != 0;
}

std::string Padding() {
    std::string text = "[padding]\n";
    for (int i = 0; i < 400; ++i)
        text += "line" + std::to_string(i) + "=0123456789\n";
    return text;
}

TEST_F(WriteProcesses, LoseNoTagOfEachOther) {
    constexpr int processes = 8;
    constexpr int tags = 50;
    const std::string file = Path("f");
    const auto start = std::chrono::steady_clock::now();
    std::vector<pid_t> children;
    children.reserve(processes);
    for (int process = 0; process < processes; ++process) {
        children.push_back(Fork([&file, process] {
            int refusals = 0;
            for (int tag = 0; tag < tags; ++tag) {
                while (!Write("p" + std::to_string(process) + "t" + std::to_string(tag), "v", file)) {
                    if (GetLastError() != ERROR_SHARING_VIOLATION || ++refusals > 100)
                        return 255;
                }
            }
            return refusals;
        }));
    }
    int refusals = 0;
    for (const pid_t child : children) {
        const int result = Wait(child);
        EXPECT_TRUE(result >= 0 && result <= 100);
        refusals += result;
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::cout << processes * tags << " writes by " << processes << " processes: " << seconds.count() << " s, "
              << refusals << " refused and repeated\n";
    const std::string text = Bytes(file);
    for (int process = 0; process < processes; ++process) {
        for (int tag = 0; tag < tags; ++tag) {
            const std::string line = "\np" + std::to_string(process) + "t" + std::to_string(tag) + "=v\n";
            EXPECT_NE(text.find(line), std::string::npos) << line;
        }
    }
    EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(WriteProcesses, ShowReadersTheOldOrTheNew) {
    const std::string file = Path("f");
    const std::string head = Padding() + "[s]\nv=";
    const std::array<std::string, 2> values = {std::string(20'000, 'a'), std::string(9'000, 'b')};
    for (const bool inPlace : {false, true}) {
        Make("f", head + values[0] + "\n");
        ASSERT_TRUE(!inPlace || ::link(file.c_str(), Path("hard").c_str()) == 0);
        const pid_t writer = Fork([&] {
            for (unsigned i = 1; i <= 200; ++i) {
                while (!Write("v", values[i % 2], file)) {
                    if (GetLastError() != ERROR_SHARING_VIOLATION)
                        return 1; // the test has failed, and its folder is gone
                }
                ::usleep(1000); // for the reader to see it
            }
            return 0;
        });
        std::array<int, 2> seen = {};
        do {
            const posix::FileHandle open(::open(file.c_str(), O_RDONLY));
            posix::ContentLock lock;
            std::string text;
            ASSERT_EQ(lock.Take(open.Get(), posix::ContentLock::Kind::Shared), ERROR_SUCCESS);
            ASSERT_EQ(posix::ReadWholeFile(open.Get(), text), ERROR_SUCCESS);
            const bool isFirst = text == head + values[0] + "\n";
            ASSERT_TRUE(isFirst || text == head + values[1] + "\n");
            ++seen[isFirst ? 0 : 1];
        } while (::waitpid(writer, nullptr, WNOHANG) == 0);
        EXPECT_GT(seen[0], 0);
        EXPECT_GT(seen[1], 0);
    }
}

TEST_F(WriteProcesses, AreRefusedWhileAStoppedOneHoldsTheFile) {
    const std::string file = Make("f", "[s]\n");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t holder = Fork([&] {
        const int descriptor = ::open(file.c_str(), O_RDWR);
        if (::flock(descriptor, LOCK_EX) != 0 || ::write(ready[1], "x", 1) != 1)
            return 1;
        return ::pause();
    });
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_FALSE(Write("a", "1", file));
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(Bytes(file), "[s]\n");
    ::kill(holder, SIGKILL);
    Wait(holder);
    EXPECT_TRUE(Write("a", "1", file)) << "a process that died leaves nothing locked";
    ::close(ready[0]);
    ::close(ready[1]);
}

} // namespace
} // namespace corvane

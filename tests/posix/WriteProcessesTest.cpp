// Several processes at one file.
#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>

#include <csignal>
#include <fcntl.h>
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

TEST_F(WriteProcesses, LoseNoTagOfEachOther) {
    constexpr int processes = 8;
    constexpr int tags = 50;
    const std::string file = Path("f");
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        children.push_back(Fork([&] {
            for (int tag = 0, refusals = 0; tag < tags; ++tag) {
                while (!Write(std::to_string(process * tags + tag), "v", file)) {
                    if (GetLastError() != ERROR_SHARING_VIOLATION || ++refusals > 100)
                        return 1;
                }
            }
            return 0;
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(Wait(child), 0);
    const std::string text = Bytes(file);
    for (int tag = 0; tag < processes * tags; ++tag)
        EXPECT_NE(text.find("\n" + std::to_string(tag) + "=v\n"), std::string::npos) << tag;
    EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(WriteProcesses, ShowReadersTheOldOrTheNew) {
    const std::string file = Path("f");
    const std::string values[] = {std::string(20'000, 'a'), std::string(9'000, 'b')};
    for (const bool inPlace : {false, true}) {
        Make("f", "[s]\n;" + std::string(9'000, ' ') + "\nv=" + values[0] + "\nend=1\n");
        if (inPlace)
            fs::create_hard_link(file, Path("hard"));
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
        std::string text(40'000, '#');
        int seen[2] = {};
        do {
            const auto size = static_cast<ulong>(text.size());
            const ulong count = GetPrivateProfileSectionA("s", text.data(), size, file.c_str());
            const std::string read = text.substr(0, count);
            const int which = read.size() > 2 && read[2] == 'b';
            ASSERT_EQ(read, "v=" + values[which] + std::string("\0end=1\0", 7));
            ++seen[which];
        } while (::waitpid(writer, nullptr, WNOHANG) == 0);
        EXPECT_TRUE(seen[0] > 0 && seen[1] > 0);
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

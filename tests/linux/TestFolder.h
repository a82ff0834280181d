// A test with a folder of its own, and the few looks at files and processes that the tests of writing share.
#pragma once

#include "support/TemporaryFolder.h"

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane::test {

class TestFolder : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return m_folder.Path(name); }

    std::string Make(const std::string& name, const std::string& content, mode_t mode = 0644) const {
        std::string path = m_folder.Write(name, content);
        ::chmod(path.c_str(), mode);
        return path;
    }

    auto EntryCount(const std::string& folder = ".") const {
        return std::distance(fs::directory_iterator(Path(folder)), {});
    }

private:
    TemporaryFolder m_folder;
};

inline struct stat StatusOf(const std::string& path) {
    struct stat status {};
    ::stat(path.c_str(), &status);
    return status;
}

inline mode_t ModeOf(const std::string& path) {
    return StatusOf(path).st_mode & 07777;
}

/// What a read gives, with '|' in the place of each NUL.
inline std::string Read(const char* section, const char* tag, const std::string& file,
                        const char* other = nullptr) {
    std::string text(4096, '#');
    text.resize(platform::GetPrivateProfileStringA(section, tag, other, text.data(), 4096, file.c_str()));
    std::replace(text.begin(), text.end(), '\0', '|');
    return text;
}

/// The error of a write to the section `s`, 0 when it succeeded.
inline ulong WriteError(const char* tag, const char* value, const std::string& file) {
    platform::SetLastError(platform::ERROR_SUCCESS);
    const int done = platform::WritePrivateProfileStringA("s", tag, value, file.c_str());
    EXPECT_EQ(done != 0, platform::GetLastError() == platform::ERROR_SUCCESS);
    return platform::GetLastError();
}

/// One of 65,536 names that a quick hash takes for one.
inline std::string CollidingName(std::size_t number) {
    std::string name;
    for (int bit = 0; bit < 16; ++bit)
        name += (number >> bit & 1) != 0 ? '@' : '`';
    return name;
}

/// Runs `work` in a process of its own, whose exit status is its result.
inline pid_t Fork(const std::function<int()>& work) {
    std::fflush(nullptr); // or the child would print it once more
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    return child;
}

/// The exit status of the child, or -1 when a signal ended it.
inline int Wait(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline constexpr unsigned nobody = 65534;

/// Runs `work`, which checks by itself, in a process of a user without privileges. Root alone may.
inline void AsNobody(const std::function<void()>& work) {
    const pid_t child = Fork([&work] {
        EXPECT_EQ(::setgroups(0, nullptr) + ::setgid(nobody) + ::setuid(nobody), 0);
        work();
        return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(Wait(child), 0);
}

} // namespace corvane::test

#pragma once

#include <unistd.h>
#include <utility>

namespace corvane::os {

/// Owns one file descriptor, or none (-1), and closes it.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) noexcept : m_descriptor(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    int Get() const noexcept { return m_descriptor; }

private:
    int m_descriptor = -1;
};

} // namespace corvane::os

#pragma once

#include <corvane/platform/windows/WindowsPlatform.h>

#include <memory>

namespace corvane::windows {

struct FileDeleter {
    void operator()(HANDLE file) const noexcept { ::CloseHandle(file); }
};

/// Owns an open file, or none.
using FileHandle = std::unique_ptr<void, FileDeleter>;

/// Takes the result of an operation that opens a file.
inline FileHandle Owned(HANDLE file) noexcept {
    return FileHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

} // namespace corvane::windows

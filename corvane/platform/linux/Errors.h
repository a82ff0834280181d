// Platform error numbers of the Linux layer, and the one translation of `errno` and exceptions into them.
#pragma once

#include <corvane/foundations/WideString.h>

#include <exception>

namespace corvane::platform {

inline constexpr ulong ERROR_SUCCESS = 0;
inline constexpr ulong ERROR_FILE_NOT_FOUND = 2;
inline constexpr ulong ERROR_PATH_NOT_FOUND = 3;
inline constexpr ulong ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr ulong ERROR_ACCESS_DENIED = 5;
inline constexpr ulong ERROR_INVALID_HANDLE = 6;
inline constexpr ulong ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr ulong ERROR_INVALID_DATA = 13;
inline constexpr ulong ERROR_WRITE_PROTECT = 19;
inline constexpr ulong ERROR_GEN_FAILURE = 31;
inline constexpr ulong ERROR_SHARING_VIOLATION = 32;
inline constexpr ulong ERROR_FILE_EXISTS = 80;
inline constexpr ulong ERROR_INVALID_PARAMETER = 87;
inline constexpr ulong ERROR_DISK_FULL = 112;
inline constexpr ulong ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr ulong ERROR_MOD_NOT_FOUND = 126;
inline constexpr ulong ERROR_PROC_NOT_FOUND = 127;
inline constexpr ulong ERROR_BAD_PATHNAME = 161;
inline constexpr ulong ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr ulong ERROR_FILE_TOO_LARGE = 223;
inline constexpr ulong ERROR_MORE_DATA = 234;
inline constexpr ulong ERROR_NO_MORE_ITEMS = 259;
inline constexpr ulong ERROR_BADDB = 1009;
inline constexpr ulong ERROR_KEY_DELETED = 1018;
inline constexpr ulong ERROR_IO_DEVICE = 1117;

} // namespace corvane::platform

namespace corvane::os {

/// The platform's number for an `errno` value. ENOENT becomes ERROR_FILE_NOT_FOUND; callers that know that
/// the folder is missing use ERROR_PATH_NOT_FOUND.
ulong ErrorFromErrno(int error) noexcept;

/// Returns the error number of `operation`, or ERROR_NOT_ENOUGH_MEMORY if it throws: the only exception here
/// is std::bad_alloc.
template <typename Operation>
std::int32_t Guarded(Operation operation) noexcept {
    try {
        return static_cast<std::int32_t>(operation());
    } catch (const std::exception&) {
        return platform::ERROR_NOT_ENOUGH_MEMORY;
    }
}

} // namespace corvane::os

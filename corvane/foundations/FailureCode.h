#pragma once

#include <cstdint>

/// The result of every failure of the library's own making. 0 is success; RestoreSnapshot can also give an
/// `errno`.
inline constexpr std::int32_t FAILURE_GENERAL = 32768;

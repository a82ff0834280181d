#pragma once

#include <cstdint>

/// The general failure result. 0 is success; RestoreSnapshot can also return an `errno` value.
inline constexpr std::int32_t FAILURE_GENERAL = 32768;

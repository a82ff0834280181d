// The boundary of the registry's operations, which return a status and never throw.
#pragma once

#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxRegistry.h>

#include <exception>

namespace corvane::os {

/// Returns the status of `operation`, or ERROR_NOT_ENOUGH_MEMORY if it throws: the only exception here is
/// std::bad_alloc.
template <typename Operation>
platform::LSTATUS Guarded(Operation operation) noexcept {
    try {
        return static_cast<platform::LSTATUS>(operation());
    } catch (const std::exception&) {
        return static_cast<platform::LSTATUS>(platform::ERROR_NOT_ENOUGH_MEMORY);
    }
}

} // namespace corvane::os

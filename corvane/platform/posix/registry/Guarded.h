// The boundary of the registry's operations: a status goes out, and never an exception.
#pragma once

#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixRegistry.h>

#include <exception>

namespace corvane::posix {

/// The status that `operation` returns, or ERROR_NOT_ENOUGH_MEMORY: nothing else is thrown in here.
template <typename Operation>
platform::LSTATUS Guarded(Operation operation) noexcept {
    try {
        return static_cast<platform::LSTATUS>(operation());
    } catch (const std::exception&) {
        return static_cast<platform::LSTATUS>(platform::ERROR_NOT_ENOUGH_MEMORY);
    }
}

} // namespace corvane::posix

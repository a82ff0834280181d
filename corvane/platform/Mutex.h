// std::mutex with annotations for clang's thread safety analysis.
#pragma once

#include <corvane/detail/ThreadSafety.h>

#include <mutex>

namespace corvane::platform {

class CORVANE_LOCK Mutex : public std::mutex {};

class CORVANE_LOCK_GUARD MutexGuard {
public:
    explicit MutexGuard(Mutex& mutex) CORVANE_ACQUIRES(mutex) : m_guard(mutex) {}
    ~MutexGuard() CORVANE_RELEASES() {}
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

private:
    std::lock_guard<std::mutex> m_guard;
};

} // namespace corvane::platform

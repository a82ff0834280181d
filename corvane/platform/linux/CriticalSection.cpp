#include <corvane/detail/CriticalSection.h>

#include <sched.h>

namespace corvane {

namespace {

// Tries rarely, yielding the processor in between: each try takes the cache line away from the processor
// whose thread holds the lock.
void Lock(std::mutex& mutex) noexcept {
    constexpr int tries = 16;
    constexpr int pauses = 16;
    for (int i = 0; i < tries * pauses; ++i) {
        if (i % pauses == 0 && mutex.try_lock())
            return;
        ::sched_yield();
    }
    mutex.lock();
}

} // namespace

void platform::EnterCriticalSection(CRITICAL_SECTION* section) noexcept {
    const pthread_t self = ::pthread_self();
    if (section->owner.load(std::memory_order_relaxed) != self) {
        Lock(section->mutex);
        section->owner.store(self, std::memory_order_relaxed);
    }
    ++section->depth;
}

void platform::LeaveCriticalSection(CRITICAL_SECTION* section) noexcept {
    if (--section->depth > 0)
        return;
    section->owner.store(pthread_t{}, std::memory_order_relaxed);
    section->mutex.unlock();
}

} // namespace corvane

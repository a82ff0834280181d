#include <corvane/platform/posix/CriticalSection.h>

#include <linux/futex.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace corvane {

using platform::CRITICAL_SECTION;

namespace {

enum State : std::uint32_t {
    Free,
    Held,
    Awaited, // held, and a thread may sleep that waits for it
};

bool TakeIfFree(CRITICAL_SECTION& section) noexcept {
    std::uint32_t expected = Free;
    return section.state.load(std::memory_order_relaxed) == Free &&
           section.state.compare_exchange_strong(expected, Held, std::memory_order_acquire,
                                                 std::memory_order_relaxed);
}

void Futex(CRITICAL_SECTION& section, int operation, std::uint32_t value) noexcept {
    static_assert(sizeof section.state == sizeof(std::uint32_t));
    ::syscall(SYS_futex, &section.state, operation | FUTEX_PRIVATE_FLAG, value, nullptr, nullptr, 0);
}

// Looks rarely, with some calls of the system in between: at each look the thread that has the lock loses it
// from its processor's cache.
void Wait(CRITICAL_SECTION& section) noexcept {
    constexpr int looks = 16;
    constexpr int pauses = 16;
    for (int i = 0; i < looks * pauses; ++i) {
        ::sched_yield();
        if (i % pauses == 0 && TakeIfFree(section))
            return;
    }
    while (section.state.exchange(Awaited, std::memory_order_acquire) != Free)
        Futex(section, FUTEX_WAIT, Awaited);
}

} // namespace

void platform::EnterCriticalSection(CRITICAL_SECTION* section) noexcept {
    const pthread_t self = ::pthread_self();
    if (section->owner.load(std::memory_order_relaxed) != self) {
        if (!TakeIfFree(*section))
            Wait(*section);
        section->owner.store(self, std::memory_order_relaxed);
    }
    ++section->depth;
}

void platform::LeaveCriticalSection(CRITICAL_SECTION* section) noexcept {
    if (--section->depth > 0)
        return;
    section->owner.store(pthread_t{}, std::memory_order_relaxed);
    if (section->state.exchange(Free, std::memory_order_release) == Awaited)
        Futex(*section, FUTEX_WAKE, 1);
}

} // namespace corvane

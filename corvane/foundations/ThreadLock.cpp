#include <corvane/foundations/ThreadLock.h>

ThreadLock::~ThreadLock() {
    corvane::platform::DeleteCriticalSection(&m_section);
}

void ThreadLock::Obtain() noexcept CORVANE_TAKES_NO_LOCK {
    corvane::platform::EnterCriticalSection(&m_section);
}

void ThreadLock::Release() noexcept CORVANE_TAKES_NO_LOCK {
    corvane::platform::LeaveCriticalSection(&m_section);
}

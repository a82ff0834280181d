#include <corvane/foundations/ThreadLock.h>

ThreadLock::~ThreadLock() {
    corvane::platform::DeleteCriticalSection(&m_section);
}

void ThreadLock::Obtain() noexcept {
    corvane::platform::EnterCriticalSection(&m_section);
}

void ThreadLock::Release() noexcept {
    corvane::platform::LeaveCriticalSection(&m_section);
}

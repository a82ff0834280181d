// The platform's critical section for a public header, without <windows.h>. It is constant-initialised, so
// that a static lock can be taken before any constructor has run and after every destructor has, in whatever
// order a static build links them.
#pragma once

namespace corvane::platform {

/// The memory of one critical section, which the first to enter it makes; CriticalSection.cpp checks the
/// sizes against the real ones.
struct CRITICAL_SECTION {
    alignas(void*) unsigned char memory[8 + 4 * sizeof(void*)] = {};
    void* once = nullptr;
};

constexpr void InitializeCriticalSection(CRITICAL_SECTION*) noexcept {}

void EnterCriticalSection(CRITICAL_SECTION* section) noexcept;
void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept;

/// Who enters it once more makes it anew.
void DeleteCriticalSection(CRITICAL_SECTION* section) noexcept;

} // namespace corvane::platform

// The platform's critical section for a public header: its memory and its four operations, without
// <windows.h>.
#pragma once

struct _RTL_CRITICAL_SECTION;

extern "C" {
__declspec(dllimport) void __stdcall InitializeCriticalSection(_RTL_CRITICAL_SECTION*);
__declspec(dllimport) void __stdcall EnterCriticalSection(_RTL_CRITICAL_SECTION*);
__declspec(dllimport) void __stdcall LeaveCriticalSection(_RTL_CRITICAL_SECTION*);
__declspec(dllimport) void __stdcall DeleteCriticalSection(_RTL_CRITICAL_SECTION*);
}

/// Where the lock needs no code to come up, its owner's constructor is constexpr.
#define CORVANE_LOCK_CONSTEXPR

namespace corvane::platform {

/// The memory of one critical section; CriticalSection.cpp checks its size against the real one.
struct CRITICAL_SECTION {
    alignas(void*) unsigned char memory[16 + 3 * sizeof(void*)];

    _RTL_CRITICAL_SECTION* Real() noexcept { return reinterpret_cast<_RTL_CRITICAL_SECTION*>(memory); }
};

inline void InitializeCriticalSection(CRITICAL_SECTION* section) noexcept {
    ::InitializeCriticalSection(section->Real());
}

inline void EnterCriticalSection(CRITICAL_SECTION* section) noexcept {
    ::EnterCriticalSection(section->Real());
}

inline void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept {
    ::LeaveCriticalSection(section->Real());
}

inline void DeleteCriticalSection(CRITICAL_SECTION* section) noexcept {
    ::DeleteCriticalSection(section->Real());
}

} // namespace corvane::platform

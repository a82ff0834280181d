#include <corvane/platform/windows/CriticalSection.h>
#include <corvane/platform/windows/WindowsPlatform.h>

static_assert(sizeof(corvane::platform::CRITICAL_SECTION) == sizeof(::CRITICAL_SECTION) &&
              alignof(corvane::platform::CRITICAL_SECTION) >= alignof(::CRITICAL_SECTION));

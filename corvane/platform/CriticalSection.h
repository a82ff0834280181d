// The lock under ThreadLock. It is part of a public class, so this header is installed with the library.
#pragma once

#ifdef _WIN32
#include <corvane/platform/windows/CriticalSection.h>
#else
#include <corvane/platform/linux/CriticalSection.h>
#endif

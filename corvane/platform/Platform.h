// The operations of the operating system that the library calls, in `corvane::platform` under their Windows
// names: the real ones on Windows, our own layer on Linux. Functions are called qualified
// (`platform::CopyFileW`); constants, which are macros on Windows, are used unqualified.
#pragma once

#ifdef _WIN32
#include <corvane/platform/windows/WindowsPlatform.h>
#else
#include <corvane/platform/linux/LinuxPlatform.h>
#endif

namespace platform = corvane::platform;

// Everything that the library asks of the operating system, under the platform's own names, in
// `corvane::platform`: the real operations on Windows, a layer of our own elsewhere. Functions are called
// qualified (`platform::CopyFileW`); constants, which are macros on Windows, are used unqualified.
#pragma once

#ifdef _WIN32
#include <corvane/platform/windows/WindowsPlatform.h>
#else
#include <corvane/platform/linux/LinuxPlatform.h>
#endif

namespace platform = corvane::platform;

# Windows from a Debian machine, for the toolchain files that set CMAKE_SYSTEM_PROCESSOR first.
set(CMAKE_SYSTEM_NAME Windows)
set(triple ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)

# Programs and the library need no DLL of the compiler.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")

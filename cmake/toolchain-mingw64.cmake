# 64-bit Windows from a Debian machine: packages g++-mingw-w64-x86-64-posix and, to run what was built, wine64.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-under-wine ${CMAKE_BINARY_DIR}/wine)

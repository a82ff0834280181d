# 32-bit Windows from a Debian machine: package g++-mingw-w64-i686-posix. What was built runs under a 32-bit wine, which
# scripts/test puts into the build folder with mmdebstrap and starts with bubblewrap.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-under-wine32
  ${CMAKE_CURRENT_LIST_DIR}/../build/wine32 ${CMAKE_BINARY_DIR}/wine)

# 32-bit x86 from a 64-bit Debian machine, which runs what was built: package g++-i686-linux-gnu. CMAKE_CXX_COMPILER may
# be clang++, which finds that package's libraries.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(triple i686-linux-gnu)
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_C_COMPILER ${triple}-gcc)
  set(CMAKE_CXX_COMPILER ${triple}-g++)
endif()
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_CXX_COMPILER_TARGET ${triple})
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)

# The package's libraries do not lie where the system looks for 32-bit ones, nor for those that they need in turn.
set(runtime "-Wl,--dynamic-linker=/usr/${triple}/lib/ld-linux.so.2 -Wl,--disable-new-dtags,-rpath,/usr/${triple}/lib")
set(CMAKE_EXE_LINKER_FLAGS_INIT ${runtime})
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${runtime})

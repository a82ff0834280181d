# 64-bit ARM from a Debian machine: packages g++-aarch64-linux-gnu and, to run what was built, qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triple aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/${triple})

# A big-endian machine from a Debian one: packages g++-s390x-linux-gnu and, to run what was built, qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(triple s390x-linux-gnu)
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x -L /usr/${triple})

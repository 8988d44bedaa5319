# Cross-compiling for 64-bit Arm Linux with Debian's g++-aarch64-linux-gnu;
# the binaries run under qemu-aarch64 (Debian's qemu-user), which CMake
# then uses to run them (test discovery, ctest). scripts/cross_check.sh uses it:
#   cmake -S . -B build/aarch64 --toolchain cmake/aarch64-linux-gnu.cmake
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(MIVORA_QEMU_AARCH64 qemu-aarch64)
if(MIVORA_QEMU_AARCH64)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${MIVORA_QEMU_AARCH64} -L /usr/aarch64-linux-gnu)
endif()
